#include "platform/AtomicFile.h"

#include <string>
#include <windows.h>

namespace platform
{
bool replaceFile (const std::filesystem::path& path, std::span<const std::byte> content)
{
    const std::wstring temporary =
        path.wstring () + L"." + std::to_wstring (GetCurrentProcessId ()) + L".tmp";
    HANDLE file = CreateFileW (temporary.c_str (), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS,
                               FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file == INVALID_HANDLE_VALUE)
        return false;
    DWORD written = 0;
    const bool complete =
        WriteFile (file, content.data (), static_cast<DWORD> (content.size ()), &written, nullptr) &&
        written == content.size () && FlushFileBuffers (file);
    CloseHandle (file);
    if (complete &&
        MoveFileExW (temporary.c_str (), path.c_str (), MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH))
        return true;
    DeleteFileW (temporary.c_str ());
    return false;
}
}
