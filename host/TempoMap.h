// The course of time in a song: from ticks to seconds, and from seconds to what a sequencer shows.
#pragma once

#include "midi/Song.h"

#include <cstdint>
#include <vector>

namespace host
{
// Where a moment lies in the music.
struct MusicalTime
{
    double quarters = 0.0;         // quarter notes since the start
    double tempo = 120.0;          // quarter notes per minute
    double barStartQuarters = 0.0; // start of the bar that the moment lies in
    int numerator = 4;
    int denominator = 4;
};

class TempoMap
{
public:
    // A song that counts in SMPTE frames has no tempo of its own; it is shown at 120.
    explicit TempoMap (const midi::Song& song);

    double secondsAt (std::uint64_t tick) const;

    // Seconds below 0 count as 0; beyond the last change its tempo goes on for ever.
    MusicalTime at (double seconds) const;

private:
    struct TempoSegment
    {
        std::uint64_t tick;
        double seconds; // start
        double quarters;
        double secondsPerTick;
        double quartersPerSecond;
    };
    struct BarSegment
    {
        double quarters; // start, which also starts a bar
        int numerator;
        int denominator;
    };

    void addBars (const std::vector<midi::TimeSignature>& signatures);

    std::vector<TempoSegment> tempos; // never empty, the first starts at tick 0
    std::vector<BarSegment> bars;     // never empty, the first starts at 0
};
}
