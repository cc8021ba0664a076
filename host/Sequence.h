// A song as the messages to send and the samples at which they are due.
#pragma once

#include "host/TempoMap.h"
#include "midi/Song.h"

#include <array>
#include <cstdint>
#include <vector>

namespace host
{
struct TimedMessage
{
    std::uint64_t sample = 0; // since the start of the song
    std::array<std::uint8_t, 3> bytes = {};
};

struct Sequence
{
    std::vector<TimedMessage> messages; // in ascending order of sample
    double seconds = 0.0;               // length of the song
};

// Keys that the song leaves held are let go at its end, so that every song comes to rest.
// Without withProgramChanges the song's program changes are left out.
Sequence makeSequence (const midi::Song& song, const TempoMap& tempos, double sampleRate,
                       bool withProgramChanges);

// The same song as one sequence for each channel that plays notes, in the order of the channels. A song that
// keeps to one channel stays whole, with whatever it says on the others.
std::vector<Sequence> splitByChannel (const Sequence& sequence);
}
