#pragma once

#include <bitset>
#include <span>

#include "player/LiveEvents.h"

namespace player
{
// What one MIDI keyboard plays, on its way to the audio thread, and what it holds: that has to end if the
// keyboard goes, for nobody can let go of its keys then. Thread of the system's MIDI.
class MidiKeyboard
{
public:
    explicit MidiKeyboard (LiveEvents& destination) : events (destination) {}

    // Hands on a message as it came: channel messages, whole ones.
    void take (std::span<const unsigned char> message);

    // Keys, pedal and wheels as if they were let go. Any thread, once nothing more is taken.
    void letGo ();

private:
    void follow (const ShortMessage& message);

    LiveEvents& events;
    std::bitset<128> keys; // that are down, on any channel
    bool pedal = false, modulation = false, bend = false;
};
}
