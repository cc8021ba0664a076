#include "tests/library/Surroundings.h"

#include "tests/host/TemporaryFolder.h"

#include <cstdio>
#include <stdexcept>
#include <windows.h>

namespace
{
constexpr char key[] = "Software\\Corvanex\\Brimvale";

std::string textOf (HWND window)
{
    char text[256] = {};
    GetWindowTextA (window, text, sizeof text);
    return text;
}

std::string classOf (HWND window)
{
    char text[64] = {};
    GetClassNameA (window, text, sizeof text);
    return text;
}

std::vector<HWND> childrenOf (HWND window, const std::string& wantedClass)
{
    std::vector<HWND> children;
    for (HWND child = GetWindow (window, GW_CHILD); child != nullptr; child = GetWindow (child, GW_HWNDNEXT))
    {
        if (classOf (child) == wantedClass && IsWindowVisible (child))
            children.push_back (child);
    }
    return children;
}
}

void keepAwayFromTheUsersSettings ()
{
    HKEY opened = nullptr;
    if (RegOpenKeyExA (HKEY_CURRENT_USER, key, 0, KEY_READ, &opened) == ERROR_SUCCESS)
    {
        RegCloseKey (opened);
        throw std::runtime_error ("this registry holds somebody's settings; run the tests in a fresh one");
    }
    static const TemporaryFolder data;
    SetEnvironmentVariableW (L"APPDATA", data.folder ().c_str ());
}

void clearStoredSettings ()
{
    RegDeleteTreeA (HKEY_CURRENT_USER, key);
}

std::map<std::string, std::uint32_t> storedNumbers ()
{
    // The system's own reader prints: four blanks, name, "    REG_DWORD    0x" and the number.
    std::map<std::string, std::uint32_t> numbers;
    FILE* query = _popen ("reg query HKCU\\Software\\Corvanex\\Brimvale 2>nul", "r");
    if (query == nullptr)
        throw std::runtime_error ("reg query cannot be run");
    char buffer[512];
    while (std::fgets (buffer, sizeof buffer, query) != nullptr)
    {
        const std::string line = buffer;
        const std::size_t type = line.find ("    REG_DWORD    0x");
        if (line.rfind ("    ", 0) == 0 && type != std::string::npos)
            numbers[line.substr (4, type - 4)] =
                static_cast<std::uint32_t> (std::stoul (line.substr (type + 17), nullptr, 16));
    }
    _pclose (query);
    return numbers;
}

Box shownBox ()
{
    Box found;
    const auto look = [] (HWND window, LPARAM result) -> BOOL
    {
        DWORD process = 0;
        GetWindowThreadProcessId (window, &process);
        if (process != GetCurrentProcessId () || !IsWindowVisible (window) || classOf (window) != "#32770")
            return TRUE;
        std::string text; // comes a moment after the window
        for (HWND child : childrenOf (window, "Static"))
            text += textOf (child); // a picture, if there is one, has none
        *reinterpret_cast<Box*> (result) = { textOf (window), text,
                                             reinterpret_cast<std::uintptr_t> (window) };
        return FALSE;
    };
    EnumWindows (look, reinterpret_cast<LPARAM> (&found));
    return found;
}

void press (const Box& box, Press button)
{
    HWND window = reinterpret_cast<HWND> (box.window);
    const std::vector<HWND> buttons = childrenOf (window, "Button");
    if (button == Press::close || buttons.empty ())
        PostMessageA (window, WM_CLOSE, 0, 0);
    else
        PostMessageA (button == Press::firstButton ? buttons.front () : buttons.back (), BM_CLICK, 0, 0);
}
