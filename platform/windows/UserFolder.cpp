#include "platform/UserFolder.h"

#include <shlobj.h>
#include <windows.h>

namespace platform
{
std::filesystem::path userFolder ()
{
    wchar_t folder[MAX_PATH];
    if (SHGetFolderPathW (nullptr, CSIDL_APPDATA, nullptr, SHGFP_TYPE_CURRENT, folder) != S_OK)
        return {};
    return std::filesystem::path (folder) / L"Corvanex";
}
}
