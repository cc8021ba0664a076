#include "platform/SharedLibrary.h"

#include <dlfcn.h>
#include <stdexcept>

namespace platform
{
SharedLibrary::SharedLibrary (const std::filesystem::path& file)
{
    // Without a slash the loader would search its own folders instead of the current one.
    handle = dlopen (std::filesystem::absolute (file).c_str (), RTLD_NOW | RTLD_LOCAL);
    if (handle == nullptr)
        throw std::runtime_error (dlerror ());
}

SharedLibrary::~SharedLibrary ()
{
    dlclose (handle);
}

void* SharedLibrary::symbol (const char* name) const
{
    return dlsym (handle, name);
}
}
