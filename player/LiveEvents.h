#pragma once

#include <array>
#include <cstdint>

#include "instrument/MessageQueue.h"

namespace player
{
using ShortMessage = std::array<std::uint8_t, 3>; // of MIDI; unused bytes are 0

// What is played by hand, on its way to the audio thread. When some of it did not fit, a key might have been
// let go.
using LiveEvents = instrument::MessageQueue<ShortMessage, 512>;
}
