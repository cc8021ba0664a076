#include "host/TempoMap.h"

#include <algorithm>
#include <cmath>

namespace host
{
namespace
{
constexpr double defaultMicrosecondsPerQuarter = 500000.0; // 120 quarter notes per minute
constexpr double microsecondsPerSecond = 1.0e6;
constexpr double secondsPerMinute = 60.0;

// The last of ascending segments that starts at or before a place; the first where none does.
template <typename Segment, typename Place>
const Segment& segmentAt (const std::vector<Segment>& segments, Place place, Place Segment::*start)
{
    const auto next = std::upper_bound (segments.begin (), segments.end (), place,
                                        [start] (Place p, const Segment& s) { return p < s.*start; });
    return next == segments.begin () ? *next : *(next - 1);
}
}

TempoMap::TempoMap (const midi::Song& song)
{
    const double quartersPerSecond = microsecondsPerSecond / defaultMicrosecondsPerQuarter;
    const bool smpte = song.ticksPerSecond > 0.0;
    const double secondsPerTick =
        smpte ? 1.0 / song.ticksPerSecond : 1.0 / (quartersPerSecond * song.ticksPerQuarter);
    tempos.push_back ({ 0, 0.0, 0.0, secondsPerTick, quartersPerSecond });
    if (!smpte)
    {
        for (const midi::TempoChange& change : song.tempoChanges)
        {
            const double seconds = secondsAt (change.tick);
            const double secondsPerQuarter = change.microsecondsPerQuarter / microsecondsPerSecond;
            const double quarters = static_cast<double> (change.tick) / song.ticksPerQuarter;
            tempos.push_back ({ change.tick, seconds, quarters, secondsPerQuarter / song.ticksPerQuarter,
                                1.0 / secondsPerQuarter });
        }
    }
    addBars (song.timeSignatures);
}

void TempoMap::addBars (const std::vector<midi::TimeSignature>& signatures)
{
    bars.push_back ({ 0.0, 4, 4 });
    for (const midi::TimeSignature& signature : signatures)
    {
        const double quarters = at (secondsAt (signature.tick)).quarters;
        bars.push_back ({ quarters, signature.numerator, signature.denominator });
    }
}

double TempoMap::secondsAt (std::uint64_t tick) const
{
    const TempoSegment& segment = segmentAt (tempos, tick, &TempoSegment::tick);
    return segment.seconds + static_cast<double> (tick - segment.tick) * segment.secondsPerTick;
}

MusicalTime TempoMap::at (double seconds) const
{
    seconds = std::max (seconds, 0.0);
    const TempoSegment& tempo = segmentAt (tempos, seconds, &TempoSegment::seconds);
    MusicalTime time;
    time.quarters = tempo.quarters + (seconds - tempo.seconds) * tempo.quartersPerSecond;
    time.tempo = tempo.quartersPerSecond * secondsPerMinute;

    const BarSegment& bar = segmentAt (bars, time.quarters, &BarSegment::quarters);
    const double quartersPerBar = 4.0 * bar.numerator / bar.denominator;
    time.barStartQuarters =
        bar.quarters + std::floor ((time.quarters - bar.quarters) / quartersPerBar) * quartersPerBar;
    time.numerator = bar.numerator;
    time.denominator = bar.denominator;
    return time;
}
}
