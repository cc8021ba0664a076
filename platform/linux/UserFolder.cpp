#include "platform/UserFolder.h"

#include <cstdlib>

namespace platform
{
// Relative paths count as not set, for they would mean another folder in every host.
std::filesystem::path userFolder ()
{
    if (const char* config = std::getenv ("XDG_CONFIG_HOME"); config != nullptr && *config == '/')
        return std::filesystem::path (config) / "corvanex";
    if (const char* home = std::getenv ("HOME"); home != nullptr && *home == '/')
        return std::filesystem::path (home) / ".config" / "corvanex";
    return {};
}
}
