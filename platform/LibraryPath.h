#pragma once

#include <filesystem>

namespace platform
{
// Full path of the file that this code was loaded from; empty when the system does not tell.
std::filesystem::path ownLibraryPath ();

// Handle of the same module for toolkits that want one: an HMODULE, or what dlopen gave.
void* ownModuleHandle ();
}
