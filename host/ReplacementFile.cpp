#include "host/ReplacementFile.h"

#include "platform/NewFile.h"

#include <cerrno>
#include <chrono>
#include <stdexcept>
#include <string>
#include <system_error>
#include <utility>

namespace host
{
namespace
{
constexpr int mostLinks = 40;  // as many as Linux itself follows
constexpr int mostNames = 100; // that others may have taken

std::filesystem::path withoutLinks (std::filesystem::path path)
{
    std::error_code none;
    for (int link = 0; link < mostLinks && std::filesystem::is_symlink (path, none); ++link)
        path = path.parent_path () / std::filesystem::read_symlink (path, none);
    return path;
}

void checkPlace (const std::filesystem::path& target)
{
    std::error_code error;
    const std::filesystem::path folder = std::filesystem::absolute (target).parent_path ();
    if (!std::filesystem::is_directory (folder, error))
        throw std::runtime_error ("its folder does not exist");
    const std::filesystem::file_status status = std::filesystem::status (target, error);
    if (std::filesystem::is_directory (status))
        throw std::runtime_error ("a folder has that name");
    if (std::filesystem::exists (status) && !std::filesystem::is_regular_file (status))
        throw std::runtime_error ("what has that name is no ordinary file");
    if (!std::filesystem::status_known (status))
        throw std::runtime_error (error.message ());
}

// Short, so that it fits wherever the target's own name does. Of two at the same moment one finds the name
// taken and asks for another.
std::string anyName ()
{
    return "brimvale-" + std::to_string (std::chrono::steady_clock::now ().time_since_epoch ().count ()) +
           ".part";
}
}

ReplacementFile::ReplacementFile (const std::filesystem::path& newTarget) : target (withoutLinks (newTarget))
{
    checkPlace (target);
    errno = EEXIST;
    for (int name = 0; name < mostNames && file == nullptr && errno == EEXIST; ++name)
    {
        partial = target.parent_path () / anyName ();
        file = platform::createNewFile (partial);
    }
    if (!check (file != nullptr))
        fail ();
}

ReplacementFile::~ReplacementFile ()
{
    if (file != nullptr)
        std::fclose (file);
    std::error_code ignored;
    if (!partial.empty ())
        std::filesystem::remove (partial, ignored);
}

bool ReplacementFile::check (bool succeeded)
{
    if (!succeeded && failure == 0)
        failure = errno;
    return succeeded;
}

void ReplacementFile::fail () const
{
    throw std::runtime_error (std::generic_category ().message (failure));
}

bool ReplacementFile::write (std::span<const std::byte> bytes)
{
    return check (std::fwrite (bytes.data (), 1, bytes.size (), file) == bytes.size ());
}

bool ReplacementFile::seek (long offset, int origin)
{
    return check (std::fseek (file, offset, origin) == 0);
}

void ReplacementFile::keep ()
{
    check (std::fclose (std::exchange (file, nullptr)) == 0);
    if (failure != 0)
        fail ();
    std::error_code error;
    const auto older = std::filesystem::status (target, error).permissions ();
    if (!error)
        std::filesystem::permissions (partial, older, error);
    std::filesystem::rename (partial, target, error);
    if (error)
        throw std::runtime_error (error.message ());
    partial.clear ();
}
}
