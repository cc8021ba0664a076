#include "tests/library/Surroundings.h"

#include <chrono>
#include <cstdio>
#include <stdexcept>
#include <utility>
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

// The first visible message box of this process.
HWND findBox ()
{
    HWND found = nullptr;
    EnumWindows (
        [] (HWND window, LPARAM result) -> BOOL
        {
            DWORD process = 0;
            GetWindowThreadProcessId (window, &process);
            if (process != GetCurrentProcessId () || !IsWindowVisible (window) ||
                classOf (window) != "#32770")
                return TRUE;
            *reinterpret_cast<HWND*> (result) = window;
            return FALSE;
        },
        reinterpret_cast<LPARAM> (&found));
    return found;
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

std::string messageOf (HWND box)
{
    std::string text;
    for (HWND child : childrenOf (box, "Static"))
        text += textOf (child); // a picture, if there is one, has none
    return text;
}

void answerBox (HWND box, Press answer)
{
    const std::vector<HWND> buttons = childrenOf (box, "Button");
    if (answer == Press::close || buttons.empty ())
        PostMessageA (box, WM_CLOSE, 0, 0);
    else
        PostMessageA (answer == Press::firstButton ? buttons.front () : buttons.back (), BM_CLICK, 0, 0);
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

BoxWatcher::BoxWatcher (Press answer)
    : watch (
          [this, answer] (const std::stop_token& stop)
          {
              std::pair<HWND, std::string> last; // answered, perhaps not gone yet
              while (!stop.stop_requested ())
              {
                  HWND box = findBox ();
                  const std::string text = box != nullptr ? messageOf (box) : "";
                  // The text comes a moment after the window.
                  if (!text.empty () && last != std::pair (box, text))
                  {
                      seen.push_back ({ textOf (box), text });
                      answerBox (box, answer);
                  }
                  last = { box, text };
                  std::this_thread::sleep_for (std::chrono::milliseconds (2));
              }
          })
{
}
