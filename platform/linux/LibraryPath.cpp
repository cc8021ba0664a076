#include "platform/LibraryPath.h"

#include <dlfcn.h>

namespace
{
// An address within this module.
char anchor = 0;

std::filesystem::path findOwnPath ()
{
    Dl_info info = {};
    if (dladdr (&anchor, &info) == 0 || info.dli_fname == nullptr)
        return {};
    std::error_code failed;
    const std::filesystem::path path = std::filesystem::absolute (info.dli_fname, failed);
    return failed ? std::filesystem::path () : path;
}

// The loader knows the name that the host gave it, which may be relative to the folder that was current then.
// So the path is found while the library is being loaded.
const std::filesystem::path pathAtLoad = findOwnPath ();
}

namespace platform
{
std::filesystem::path ownLibraryPath ()
{
    return pathAtLoad;
}
}
