#include "player/ComputerKeyboard.h"

#include <algorithm>

namespace player
{
namespace
{
constexpr std::uint8_t statusNoteOn = 0x90;
constexpr std::uint8_t statusNoteOff = 0x80;
constexpr std::uint8_t velocity = 100;
constexpr int notesPerOctave = 12;

// White and black keys in order of pitch, by scan code, from one C on. Where a piano has no black key there
// is none.
struct Row
{
    int note; // of the first key, before it is shifted
    std::array<int, 17> keys;
};
constexpr Row rows[] = {
    { 48,
      { 0x2C, 0x1F, 0x2D, 0x20, 0x2E, 0x2F, 0x22, 0x30, 0x23, 0x31, 0x24, 0x32, 0x33, 0x26, 0x34, 0x27,
        0x35 } },
    { 60,
      { 0x10, 0x03, 0x11, 0x04, 0x12, 0x13, 0x06, 0x14, 0x07, 0x15, 0x08, 0x16, 0x17, 0x0A, 0x18, 0x0B,
        0x19 } },
};
}

bool ComputerKeyboard::press (int key)
{
    for (const Row& row : rows)
    {
        const auto found = std::ranges::find (row.keys, key);
        if (found == row.keys.end ())
            continue;
        const int note = row.note + static_cast<int> (found - row.keys.begin ()) + octave * notesPerOctave;
        if (held.try_emplace (key, note).second)
            events.send ({ statusNoteOn, static_cast<std::uint8_t> (note), velocity });
        return true;
    }
    return false;
}

void ComputerKeyboard::release (int key)
{
    const auto found = held.find (key);
    if (found == held.end ())
        return;
    const int note = found->second;
    held.erase (found);
    noteOff (note);
}

// The two rows overlap: a note lasts as long as one of its keys is down.
void ComputerKeyboard::noteOff (int note)
{
    const bool isHeld =
        std::ranges::any_of (held, [note] (const auto& other) { return other.second == note; });
    if (!isHeld)
        events.send ({ statusNoteOff, static_cast<std::uint8_t> (note), 0 });
}

void ComputerKeyboard::releaseAll ()
{
    while (!held.empty ())
        release (held.begin ()->first);
}

void ComputerKeyboard::shift (int octaves)
{
    octave = std::clamp (octave + octaves, lowestOctave, highestOctave);
}
}
