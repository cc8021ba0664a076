#include "tests/library/Surroundings.h"

#include <cstdlib>
#include <fstream>

#include "tests/host/TemporaryFolder.h"
#include "tests/library/linux/Screen.h"

namespace
{
std::filesystem::path settingsFolder ()
{
    return std::filesystem::path (environment ("XDG_CONFIG_HOME")) / "corvanex";
}
}

void keepAwayFromTheUsersSettings ()
{
    static const TemporaryFolder home;
    ::setenv ("HOME", home.folder ().c_str (), 1);
    ::setenv ("XDG_CONFIG_HOME", (home / "config").c_str (), 1);
}

void clearStoredSettings ()
{
    std::filesystem::remove_all (settingsFolder ());
}

std::map<std::string, std::uint32_t> storedNumbers ()
{
    const std::string group = "\tBrimvale\\";
    std::map<std::string, std::uint32_t> numbers;
    std::ifstream file (settingsFolder () / "settings");
    for (std::string line; std::getline (file, line);)
    {
        if (const std::size_t tab = line.find (group); tab != std::string::npos)
            numbers[line.substr (tab + group.size ())] = static_cast<std::uint32_t> (std::stoul (line));
    }
    return numbers;
}

Box shownBox ()
{
    Screen screen;
    const xcb_window_t window = screen.box ();
    return window != 0
               ? Box{ screen.property (window, "WM_NAME"), screen.property (window, "WM_ICON_NAME"), window }
               : Box ();
}

void press (const Box& box, Press button)
{
    Screen screen;
    const auto window = static_cast<xcb_window_t> (box.window);
    const auto area = screen.geometry (window);
    if (button == Press::close)
        screen.close (window);
    else if (button == Press::firstButton)
        userDoes ("key Return");
    else // in the lower right corner
        userDoes ("mousemove " + std::to_string (area.x + area.width - 60) + " " +
                  std::to_string (area.y + area.height - 28) + " click 1");
}
