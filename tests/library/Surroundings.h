// The system around the library as these tests need it; one source per system.
#pragma once

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

struct Box
{
    std::string title;
    std::string text;
    bool operator== (const Box&) const = default;
};

enum class Press
{
    firstButton,
    lastButton,
    close // the way in which a title bar closes a window
};

// A user at the screen: looks for message boxes of this process on a thread of its own, reads and answers
// them.
class BoxWatcher
{
public:
    explicit BoxWatcher (Press answer = Press::firstButton);
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
