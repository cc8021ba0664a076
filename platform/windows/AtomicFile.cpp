#include "platform/AtomicFile.h"

#include <string>
#include <windows.h>

namespace
{
constexpr int mostNames = 100; // left-over temporary files of crashed processes that are passed over

// A new file beside `path`, whoever else is writing there; INVALID_HANDLE_VALUE on failure. Answers its name
// in `name`.
HANDLE createTemporary (const std::filesystem::path& path, std::wstring& name)
{
    HANDLE file = INVALID_HANDLE_VALUE;
    for (int number = 0; number < mostNames && file == INVALID_HANDLE_VALUE; ++number)
    {
        name = path.wstring () + L'.' + std::to_wstring (GetCurrentProcessId ()) + L'-' +
               std::to_wstring (number) + L".tmp";
        file = CreateFileW (name.c_str (), GENERIC_WRITE, 0, nullptr, CREATE_NEW, FILE_ATTRIBUTE_NORMAL,
                            nullptr);
        if (file == INVALID_HANDLE_VALUE && GetLastError () != ERROR_FILE_EXISTS)
            break;
    }
    return file;
}

// A file that somebody has open (another instance that loads it, a virus scanner) cannot be replaced at that
// moment. Most are done soon, so it is tried again for a while.
bool moveOver (const std::wstring& from, const std::filesystem::path& to)
{
    constexpr int tries = 50;
    constexpr DWORD pause = 20; // milliseconds
    for (int n = 0; n < tries; ++n)
    {
        if (MoveFileExW (from.c_str (), to.c_str (), MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH))
            return true;
        const DWORD error = GetLastError ();
        if (error != ERROR_SHARING_VIOLATION && error != ERROR_ACCESS_DENIED)
            return false;
        Sleep (pause);
    }
    return false;
}
}

namespace platform
{
bool replaceFile (const std::filesystem::path& path, std::span<const std::byte> content)
{
    std::wstring temporary;
    HANDLE file = createTemporary (path, temporary);
    if (file == INVALID_HANDLE_VALUE)
        return false;
    DWORD written = 0;
    const bool complete =
        WriteFile (file, content.data (), static_cast<DWORD> (content.size ()), &written, nullptr) &&
        written == content.size () && FlushFileBuffers (file);
    CloseHandle (file);
    if (complete && moveOver (temporary, path))
        return true;
    DeleteFileW (temporary.c_str ());
    return false;
}
}
