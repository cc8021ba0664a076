#include "platform/Resources.h"

#include <cstring>

#include "platform/windows/OwnModule.h"

namespace platform
{
std::span<const std::byte> findResource (const char* type, int id)
{
    HMODULE module = ownModule ();
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
