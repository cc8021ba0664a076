#include "platform/AtomicFile.h"

#include <cstdio>
#include <fcntl.h>
#include <string>
#include <unistd.h>

namespace
{
bool writeAll (int file, std::span<const std::byte> content)
{
    while (!content.empty ())
    {
        const ssize_t written = ::write (file, content.data (), content.size ());
        if (written <= 0)
            return false;
        content = content.subspan (static_cast<std::size_t> (written));
    }
    return ::fsync (file) == 0;
}
}

namespace platform
{
bool replaceFile (const std::filesystem::path& path, std::span<const std::byte> content)
{
    const std::string temporary = path.string () + "." + std::to_string (::getpid ()) + ".tmp";
    const int file = ::open (temporary.c_str (), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
    if (file < 0)
        return false;
    const bool written = writeAll (file, content);
    const bool closed = ::close (file) == 0;
    if (written && closed && ::rename (temporary.c_str (), path.c_str ()) == 0)
        return true;
    ::unlink (temporary.c_str ());
    return false;
}
}
