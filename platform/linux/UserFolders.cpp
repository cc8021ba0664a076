#include "platform/UserFolders.h"

#include <cstdlib>

namespace
{
// Relative paths count as not set, for they would mean another folder in every host.
std::filesystem::path folderIn (const char* variable)
{
    const char* path = std::getenv (variable);
    return path != nullptr && *path == '/' ? std::filesystem::path (path) : std::filesystem::path ();
}
}

namespace platform
{
std::filesystem::path settingsFolder ()
{
    constexpr const char* ours = "corvanex";
    if (const auto config = folderIn ("XDG_CONFIG_HOME"); !config.empty ())
        return config / ours;
    const auto home = homeFolder ();
    return home.empty () ? home : home / ".config" / ours;
}

std::filesystem::path homeFolder ()
{
    return folderIn ("HOME");
}
}
