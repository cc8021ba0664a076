#include "resources/waves/WaveTables.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace waves
{
namespace
{
std::int16_t quantise (double level)
{
    return static_cast<std::int16_t> (std::lround (level));
}

// A capacitor on its way from one voltage to another: each sample covers the same share of the
// way that is left to a voltage beyond `to`, chosen such that `to` is reached after `steps`.
// Appends the samples after `from` up to and including `to`.
void appendCharge (Samples& samples, double from, double to, int steps, double share)
{
    double left = 1.0;
    for (int n = 0; n < steps; ++n)
        left *= 1.0 - share;
    const double supply = (to - from * left) / (1.0 - left);
    double voltage = from;
    for (int n = 0; n < steps; ++n)
    {
        voltage += (supply - voltage) * share;
        samples.push_back (quantise (voltage));
    }
}

constexpr double pulseHigh = 25199.0; // 0.769 of the low plateau's depth
constexpr double pulseLow = -32768.0;

// Samples above zero by cycle; in between the width changes evenly.
struct Duty
{
    int cycle;
    int highSamples;
};
constexpr std::array<Duty, 6> duties = {
    { { 0, 365 }, { 50, 486 }, { 100, 564 }, { 150, 616 }, { 200, 647 }, { 256, 670 } }
};

int highSamplesOf (int cycle)
{
    const auto next = std::find_if (duties.begin () + 1, duties.end () - 1,
                                    [cycle] (const Duty& duty) { return cycle <= duty.cycle; });
    const Duty from = *(next - 1);
    const Duty to = *next;
    const double share = double (cycle - from.cycle) / double (to.cycle - from.cycle);
    return static_cast<int> (std::lround (from.highSamples + share * (to.highSamples - from.highSamples)));
}

// The share of a pulse edge covered per sample: a time constant of two table samples, fast enough
// for a bright bass and slow enough not to ring against the sample grid three octaves up.
constexpr double edgeShare = 0.3935;

// The low plateau stays level for so many samples after its edge; the rest of it, and all of the
// high plateau, climbs by one 16-bit step per sample. The pulse width knob weighs exactly these
// steps: what climbs rises with the knob, what is level stays, so the wave narrows from a square
// to a pulse that is low for 87 of 732 samples, 12 %.
constexpr int levelSamples = 87;
}

Samples makeSaw ()
{
    constexpr double lowest = -0.838 * 32767.0;
    constexpr double highest = 32767.0;
    constexpr int highestAt = 518;
    constexpr int lowestAt = 549;
    constexpr int fallSamples = lowestAt - highestAt;
    constexpr int riseSamples = sawLength - fallSamples;
    constexpr double riseShare = 0.00285; // bends the rise until the cycle's mean is +0.33
    constexpr double fallShare = 0.2;     // a time constant of 4.5 samples: 12 dB/octave above harmonic 26

    Samples fromLowest;
    appendCharge (fromLowest, lowest, highest, riseSamples, riseShare);
    appendCharge (fromLowest, highest, lowest, fallSamples, fallShare);
    std::rotate (fromLowest.begin (), fromLowest.begin () + (riseSamples - 1 - highestAt), fromLowest.end ());
    return fromLowest;
}

Samples makePulse ()
{
    Samples samples;
    samples.reserve (pulseLength + pulseCycleLength);
    double level = pulseLow;
    for (int cycle = 0; cycle <= pulseCycles; ++cycle)
    {
        const int highSamples = highSamplesOf (cycle);
        for (int n = 0; n < pulseCycleLength; ++n)
        {
            const bool high = n < highSamples;
            const double plateau = high ? pulseHigh - (highSamples - 1) : pulseLow;
            const int climb = high ? n : std::max (0, n - highSamples - levelSamples + 1);
            level += (plateau - level) * edgeShare;
            samples.push_back (quantise (level + climb));
        }
    }
    samples.resize (pulseLength);
    return samples;
}

Samples makeNoise ()
{
    // A linear congruential generator; of its 32 bits the upper 16 are used. The seed is one whose
    // 87650 samples are whiter than most: every third of an octave is within 0.7 dB of the mean.
    constexpr std::uint32_t seed = 2748237958u;
    constexpr int highest = 32113; // 0.980 of the lowest
    constexpr int lowest = -32768;

    std::uint32_t state = seed;
    const auto next = [&state]
    {
        state = state * 1664525u + 1013904223u;
        return static_cast<int> (state >> 16);
    };
    Samples samples (noiseLength);
    for (auto& sample : samples)
    {
        const int first = next ();
        const int second = next ();
        sample = static_cast<std::int16_t> (std::min ((first + second) / 2 + lowest, highest));
    }
    *std::min_element (samples.begin (), samples.end ()) = lowest;
    *std::max_element (samples.begin (), samples.end ()) = highest;
    return samples;
}
}
