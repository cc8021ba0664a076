#include "audition/Takes.h"

#include <algorithm>
#include <cmath>

namespace audition
{
namespace
{
constexpr double beatsPerMinute = 120.0;
constexpr double quartersPerSecond = beatsPerMinute / 60.0;

// The knob's own law: the foot keeps the shortest release from clicking.
double releaseSeconds (const bank::SourceProgram& program)
{
    const double v = static_cast<double> (program.value (param1Decay));
    return std::pow (v * v + 0.006, 2.0) * 14.0;
}

// The same sound, silent, with its oscillators a third apart: while it plays they turn against each other.
// Everything that the filter remembers stays as it is.
bank::SourceProgram stirrer (bank::SourceProgram program)
{
    program.record.setName ("stirrer");
    program.record.values[paramVolume] = 0.0f;
    program.record.values[paramOsc2Fine] = program.value (paramOsc2Fine) > 0.4f ? 0.2f : 0.6f;
    program.record.values[param1Sustain] = 1.0f;
    program.record.values[param1Decay] = 0.0f;
    program.record.values[param2Decay] = 0.0f; // ends with the voice and leaves no level behind
    return program;
}
}

std::vector<Audio> playTakes (const bank::SourceProgram& program, const std::vector<int>& keys,
                              std::span<const int> velocities)
{
    constexpr double breath = 0.1; // s between the stirring and the take
    examples::Piece piece (program.name (), beatsPerMinute);
    const auto play = [&] (double second, double length, int velocity)
    {
        for (const int key : keys)
            piece.note (second * quartersPerSecond, length * quartersPerSecond, key, velocity);
    };
    const auto choose = [&] (double second, std::string_view name)
    { piece.program (second * quartersPerSecond, name); };

    const double rest = std::max (releaseSeconds (program), afterglowSeconds) + breath;
    double now = 0.0;
    std::vector<double> starts;
    for (const int velocity : velocities)
    {
        // Multiples of the golden section, so that no two lengths are alike.
        const double share = std::fmod (static_cast<double> (starts.size () + 1) * 0.618034, 1.0);
        const double stirring = 0.05 + 0.3 * share;
        choose (now, "stirrer");
        play (now, stirring, 100);
        now += stirring + breath;
        choose (now, program.name ());
        now += breath;
        starts.push_back (now);
        play (now, heldSeconds, velocity);
        now += heldSeconds + rest;
    }

    const Audio audio = Player ({ program, stirrer (program) }).play (piece, rest);
    std::vector<Audio> takes;
    for (const double start : starts)
    {
        const auto first = audio.begin () + static_cast<std::ptrdiff_t> (std::lround (start * sampleRate));
        takes.emplace_back (
            first, first + static_cast<std::ptrdiff_t> ((heldSeconds + afterglowSeconds) * sampleRate));
    }
    return takes;
}
}
