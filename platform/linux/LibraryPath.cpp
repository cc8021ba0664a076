#include "platform/LibraryPath.h"

#include <dlfcn.h>

namespace
{
// An address within this module.
char anchor = 0;
}

namespace platform
{
std::filesystem::path ownLibraryPath ()
{
    Dl_info info = {};
    if (dladdr (&anchor, &info) == 0 || info.dli_fname == nullptr)
        return {};
    std::error_code failed;
    const std::filesystem::path path = std::filesystem::absolute (info.dli_fname, failed);
    return failed ? std::filesystem::path () : path;
}

void* ownModuleHandle ()
{
    const std::filesystem::path path = ownLibraryPath ();
    void* handle = dlopen (path.c_str (), RTLD_LAZY | RTLD_NOLOAD);
    if (handle == nullptr) // the main program itself, in tests
        return dlopen (nullptr, RTLD_LAZY);
    dlclose (handle); // the look-up's own reference; the module stays loaded while its code runs
    return handle;
}
}
