#include "tests/library/Surroundings.h"

#include <chrono>
#include <cstdlib>
#include <fstream>

#include "tests/host/TemporaryFolder.h"
#include "tests/library/linux/Screen.h"

namespace
{
std::filesystem::path settingsFolder ()
{
    return std::filesystem::path (std::getenv ("XDG_CONFIG_HOME")) / "corvanex";
}

void answerBox (Screen& screen, xcb_window_t box, Press answer)
{
    const auto size = screen.geometry (box);
    switch (answer)
    {
    case Press::firstButton:
        userDoes ("key Return");
        break;
    case Press::lastButton: // it lies in the lower right corner
        userDoes ("mousemove " + std::to_string (size.x + size.width - 60) + " " +
                  std::to_string (size.y + size.height - 28) + " click 1");
        break;
    case Press::close:
        screen.close (box);
        break;
    }
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
    const std::string group = "Brimvale\\";
    std::map<std::string, std::uint32_t> numbers;
    std::ifstream file (settingsFolder () / "settings");
    for (std::string line; std::getline (file, line);)
    {
        const std::size_t tab = line.find ('\t');
        if (tab != std::string::npos && line.compare (tab + 1, group.size (), group) == 0)
            numbers[line.substr (tab + 1 + group.size ())] = static_cast<std::uint32_t> (std::stoul (line));
    }
    return numbers;
}

BoxWatcher::BoxWatcher (Press answer)
    : watch (
          [this, answer] (const std::stop_token& stop)
          {
              Screen screen;
              std::pair<xcb_window_t, std::string> last; // answered, perhaps not gone yet
              while (screen.isThere () && !stop.stop_requested ())
              {
                  const xcb_window_t box = screen.box ();
                  const std::string text = box != 0 ? screen.text (box) : "";
                  if (!text.empty () && last != std::pair (box, text))
                  {
                      seen.push_back ({ screen.title (box), text });
                      answerBox (screen, box, answer);
                  }
                  last = { box, text };
                  std::this_thread::sleep_for (std::chrono::milliseconds (2));
              }
          })
{
}
