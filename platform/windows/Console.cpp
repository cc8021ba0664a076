#include "platform/Console.h"

#include <cstdio>
#include <fcntl.h>
#include <filesystem>
#include <io.h>
#include <windows.h>

#include <shellapi.h>

namespace platform
{
// main() gets its arguments in the system's code page, which cannot hold every file name.
std::vector<std::string> utf8Arguments (int, const char* const*)
{
    int count = 0;
    wchar_t** wide = CommandLineToArgvW (GetCommandLineW (), &count);
    std::vector<std::string> arguments;
    for (int i = 0; i < count; ++i)
    {
        const std::u8string text = std::filesystem::path (wide[i]).u8string ();
        arguments.emplace_back (text.begin (), text.end ());
    }
    LocalFree (wide);
    return arguments;
}

bool errorStreamIsTerminal ()
{
    return _isatty (_fileno (stderr)) != 0;
}

void keepLineEnds ()
{
    _setmode (_fileno (stdout), _O_BINARY);
    _setmode (_fileno (stderr), _O_BINARY);
}

bool attachConsole ()
{
    const HANDLE errors = GetStdHandle (STD_ERROR_HANDLE);
    if (errors != nullptr && errors != INVALID_HANDLE_VALUE)
        return true;
    return AttachConsole (ATTACH_PARENT_PROCESS) != 0 && std::freopen ("CONOUT$", "w", stdout) != nullptr &&
           std::freopen ("CONOUT$", "w", stderr) != nullptr;
}

// A program without a console has no number for its error stream.
QuietErrors::QuietErrors () : kept (_fileno (stderr) < 0 ? -1 : _dup (_fileno (stderr)))
{
    std::fflush (stderr);
    const int nowhere = _open ("NUL", _O_WRONLY);
    if (nowhere < 0)
        return;
    if (kept >= 0)
        _dup2 (nowhere, _fileno (stderr));
    _close (nowhere);
}

QuietErrors::~QuietErrors ()
{
    std::fflush (stderr);
    if (kept < 0)
        return;
    _dup2 (kept, _fileno (stderr));
    _close (kept);
}
}
