// The system around the library as these tests need it; one source per system.
#pragma once

#include <chrono>
#include <cstdint>
#include <map>
#include <string>
#include <thread>
#include <vector>

// Throws unless the settings that this program can reach are nobody's. Called once, before the first test.
void keepAwayFromTheUsersSettings ();

// Removes what the instrument has stored.
void clearStoredSettings ();

// What is stored, by value name, as somebody else reads it.
std::map<std::string, std::uint32_t> storedNumbers ();

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
    bool operator== (const Box& other) const { return title == other.title && text == other.text; }
};
Box shownBox (); // without a text: none
void press (const Box& box, Press button);

// A user at the screen: reads and answers the boxes of this process on a thread of its own.
class BoxWatcher
{
public:
    explicit BoxWatcher (Press answer = Press::firstButton)
        : watch (
              [this, answer] (const std::stop_token& stop)
              {
                  Box last; // answered, perhaps not gone yet
                  while (!stop.stop_requested ())
                  {
                      const Box box = shownBox ();
                      if (!box.text.empty () && (box.window != last.window || box.text != last.text))
                      {
                          seen.push_back (box);
                          press (box, answer);
                      }
                      last = box;
                      std::this_thread::sleep_for (std::chrono::milliseconds (2));
                  }
              })
    {
    }
    BoxWatcher (const BoxWatcher&) = delete;
    BoxWatcher& operator= (const BoxWatcher&) = delete;

    // Stops watching; the boxes that were seen.
    const std::vector<Box>& boxes ()
    {
        watch.request_stop ();
        if (watch.joinable ())
            watch.join ();
        return seen;
    }

private:
    std::vector<Box> seen;
    std::jthread watch;
};
