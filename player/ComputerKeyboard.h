#pragma once

#include <map>

#include "player/LiveEvents.h"

namespace player
{
// The computer's keyboard as two rows of piano keys: the letters' lowest row with the one above for the black
// keys, and the row below the numbers with these. Keys count by their place, so it is the same on every
// layout. User-interface thread.
class ComputerKeyboard
{
public:
    explicit ComputerKeyboard (LiveEvents& destination) : events (destination) {}

    // A key by its place (see platform::Key). False when it plays nothing.
    bool press (int key);
    void release (int key);
    void releaseAll ();

    // So many octaves up, down when negative; further than either end is that end. Keys that are down keep
    // theirs.
    void shift (int octaves);

    static constexpr int lowestOctave = -4; // of shifts, all of which lead to notes that there are
    static constexpr int highestOctave = 4;

private:
    void noteOff (int note);

    LiveEvents& events;
    int octave = 0;
    std::map<int, int> held; // note by key
};
}
