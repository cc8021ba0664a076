#include "platform/UserFolders.h"

#include <string>
#include <windows.h>

namespace
{
std::filesystem::path folderIn (const wchar_t* variable)
{
    std::wstring text (GetEnvironmentVariableW (variable, nullptr, 0), L'\0');
    text.resize (GetEnvironmentVariableW (variable, text.data (), static_cast<DWORD> (text.size ())));
    const std::filesystem::path path (text);
    return path.is_absolute () ? path : std::filesystem::path ();
}
}

namespace platform
{
std::filesystem::path settingsFolder ()
{
    const auto data = folderIn (L"APPDATA");
    return data.empty () ? data : data / L"Corvanex";
}

std::filesystem::path homeFolder ()
{
    return folderIn (L"USERPROFILE");
}
}
