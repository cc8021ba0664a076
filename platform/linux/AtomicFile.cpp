#include "platform/AtomicFile.h"

#include <cerrno>
#include <fcntl.h>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

namespace
{
constexpr int mostNames = 100; // left-over temporary files of crashed processes that are passed over
constexpr mode_t usualPermissions = 0666; // less what the process's umask takes away
constexpr mode_t permissionBits = 0777;

// A new file beside `path`, whoever else is writing there; -1 on failure. Answers its name in `name`.
int createTemporary (const std::filesystem::path& path, std::string& name)
{
    int file = -1;
    for (int number = 0; number < mostNames && file < 0; ++number)
    {
        name = path.string () + '.' + std::to_string (::getpid ()) + '-' + std::to_string (number) + ".tmp";
        file = ::open (name.c_str (), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, usualPermissions);
        if (file < 0 && errno != EEXIST)
            break;
    }
    return file;
}

bool writeAll (int file, std::span<const std::byte> content)
{
    while (!content.empty ())
    {
        const ssize_t written = ::write (file, content.data (), content.size ());
        if (written > 0)
            content = content.subspan (static_cast<std::size_t> (written));
        else if (written == 0 || errno != EINTR)
            return false;
    }
    return ::fsync (file) == 0;
}
}

namespace platform
{
bool replaceFile (const std::filesystem::path& path, std::span<const std::byte> content)
{
    // A link stays a link; the file that it names is replaced.
    std::error_code isNew;
    std::filesystem::path target = std::filesystem::canonical (path, isNew);
    if (isNew)
        target = path;

    std::string temporary;
    const int file = createTemporary (target, temporary);
    if (file < 0)
        return false;
    struct stat older = {};
    if (::stat (target.c_str (), &older) == 0)
        (void)::fchmod (file, older.st_mode & permissionBits);
    const bool written = writeAll (file, content);
    const bool closed = ::close (file) == 0;
    if (written && closed && ::rename (temporary.c_str (), target.c_str ()) == 0)
        return true;
    ::unlink (temporary.c_str ());
    return false;
}
}
