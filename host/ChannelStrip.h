// What a mixer does to the sound of one MIDI channel: volume (controller 7) and balance (controller 10).
// Expression (controller 11) is the instrument's own business.
#pragma once

#include <array>
#include <cstdint>

namespace host
{
class ChannelStrip
{
public:
    // Takes any message.
    void follow (const std::array<std::uint8_t, 3>& message);

    // Factors; 1 until a controller comes. Volume 100 leaves the sound as it is, 127 adds 4 dB; a balance of
    // 64 is the middle, where both sides are as they are.
    float left () const { return volume * leftShare; }
    float right () const { return volume * rightShare; }

private:
    float volume = 1.0f;
    float leftShare = 1.0f;
    float rightShare = 1.0f;
};
}
