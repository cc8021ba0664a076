// Writes standard MIDI files.
#pragma once

#include "midi/Song.h"

namespace midi
{
// The bytes of a format 0 file. The song counts time in quarter notes, at most 32767 ticks each, and its
// lists are in order of time.
std::vector<std::uint8_t> fileBytes (const Song& song);
}
