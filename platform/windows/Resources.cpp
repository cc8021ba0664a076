#include "platform/Resources.h"

#include <cstring>
#include <windows.h>

#include "platform/LibraryPath.h"

namespace platform
{
std::span<const std::byte> findResource (const char* type, int id)
{
    const auto module = static_cast<HMODULE> (ownModuleHandle ());
    const bool isBitmap = std::strcmp (type, "BITMAP") == 0;
    HRSRC found =
        FindResourceA (module, MAKEINTRESOURCEA (id), isBitmap ? MAKEINTRESOURCEA (2) : type); // RT_BITMAP
    if (found == nullptr)
        return {};
    HGLOBAL loaded = LoadResource (module, found);
    const void* data = loaded != nullptr ? LockResource (loaded) : nullptr;
    const DWORD size = SizeofResource (module, found);
    if (loaded != nullptr)
        FreeResource (loaded); // ends the handle only; the bytes are the module's own image
    return data != nullptr ? std::span (static_cast<const std::byte*> (data), size)
                           : std::span<const std::byte> ();
}
}
