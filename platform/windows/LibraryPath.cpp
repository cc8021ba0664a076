#include "platform/LibraryPath.h"

#include "platform/windows/OwnModule.h"

namespace
{
// An address within this module.
char anchor = 0;

constexpr DWORD longestPath = 1024; // characters
}

namespace platform
{
HMODULE ownModule ()
{
    HMODULE module = nullptr;
    GetModuleHandleExA (GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                        &anchor, &module);
    return module;
}

std::filesystem::path ownLibraryPath ()
{
    wchar_t text[longestPath];
    const DWORD length = GetModuleFileNameW (ownModule (), text, longestPath);
    return length > 0 && length < longestPath ? std::filesystem::path (text) : std::filesystem::path ();
}
}
