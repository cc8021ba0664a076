// The system around the library as these tests need it; one source per system.
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <thread>
#include <vector>

// Throws unless the settings that this program can reach are nobody's. Called once, before the first test.
void keepAwayFromTheUsersSettings ();
void clearStoredSettings ();
std::map<std::string, std::uint32_t> storedNumbers (); // by value name, as somebody else reads them

enum class Press
{
    firstButton,
    lastButton,
    close // the way in which a title bar closes a window
};

// A message box of this process on the screen.
struct Box
{
    std::string title;
    std::string text;
    std::uintptr_t window = 0;
};
Box shownBox (); // without a text: none
void press (const Box& box, Press button);

// Does something while a user at the screen, on a thread, reads and answers the boxes of this process. Their
// titles and texts.
inline std::vector<std::string> boxesDuring (Press answer, const std::function<void ()>& act)
{
    std::vector<std::string> seen;
    std::jthread watch (
        [&] (const std::stop_token& stop)
        {
            for (Box last; !stop.stop_requested ();) // the one that was answered is perhaps not gone yet
            {
                const Box box = shownBox ();
                if (!box.text.empty () && (box.window != last.window || box.text != last.text))
                {
                    seen.push_back (box.title + " " + box.text);
                    press (box, answer);
                }
                last = box;
                std::this_thread::sleep_for (std::chrono::milliseconds (2));
            }
        });
    act ();
    watch.request_stop ();
    watch.join ();
    return seen;
}
