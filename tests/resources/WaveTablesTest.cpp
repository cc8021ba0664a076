#include "resources/waves/WaveTables.h"
#include "audition/Measures.h"
#include "engine/WaveTable.h"
#include "tests/resources/Files.h"

#include <algorithm>
#include <cmath>
#include <numeric>

using namespace engine;

namespace
{
// Samples as they lie in a file.
std::string pcm (const waves::Samples& samples)
{
    std::string bytes;
    for (const std::int16_t sample : samples)
        bytes += { static_cast<char> (sample), static_cast<char> (sample >> 8) };
    return bytes;
}

// The committed file as the oscillators read it.
std::vector<float> tableOf (const std::string& name)
{
    const std::string bytes = bytesOf ("resources/waves/" + name + ".pcm");
    return makeWaveTable (std::as_bytes (std::span (bytes))).samples;
}

TEST (WaveTables, AreWhatTheMakerMakes)
{
    EXPECT_TRUE (bytesOf ("resources/waves/saw.pcm") == pcm (waves::makeSaw ()));
    EXPECT_TRUE (bytesOf ("resources/waves/pulse.pcm") == pcm (waves::makePulse ()));
    EXPECT_TRUE (bytesOf ("resources/waves/noise.pcm") == pcm (waves::makeNoise ()));
}

TEST (WaveTables, ScaleToExactlyOne)
{
    for (const char* name : { "saw", "pulse", "noise" })
    {
        const std::vector<float> table = tableOf (name);
        EXPECT_EQ (std::max (std::ranges::max (table), -std::ranges::min (table)), 1.0f) << name;
        EXPECT_EQ (table.front (), table.back ()) << name;
    }
    EXPECT_EQ (tableOf ("noise").size (), 87650u + 1u);
}

TEST (WaveTables, SawHasItsFigures)
{
    const std::vector<float> table = tableOf ("saw");
    const std::vector<float> cycle (table.begin (), table.end () - 1);
    ASSERT_EQ (cycle.size (), 734u);
    EXPECT_EQ (std::ranges::min_element (cycle) - cycle.begin (), 549);
    EXPECT_EQ (std::ranges::max_element (cycle) - cycle.begin (), 518);
    EXPECT_NEAR (std::ranges::min (cycle), -0.838f, 0.0005f);
    EXPECT_EQ (std::ranges::max (cycle), 1.0f);
    EXPECT_NEAR (std::accumulate (cycle.begin (), cycle.end (), 0.0) / 734.0, 0.33, 0.005);
    // It rises all the way from the lowest sample to the highest and falls all the way back.
    for (std::size_t n = 0; n < 734; ++n)
    {
        const bool falls = n >= 518 && n < 549;
        EXPECT_EQ (cycle[(n + 1) % 734] < cycle[n], falls) << n;
    }
}

TEST (WaveTables, PulseHasItsFigures)
{
    const std::vector<float> table = tableOf ("pulse");
    ASSERT_EQ (table.size (), 188347u + 1u);
    EXPECT_EQ (std::ranges::min (table), -1.0f);
    EXPECT_NEAR (std::ranges::max (table), 0.769f, 0.0005f);
    const auto positiveIn = [&table] (int cycle)
    {
        return std::count_if (table.begin () + cycle * 732, table.begin () + (cycle + 1) * 732,
                              [] (float x) { return x > 0.0f; });
    };
    for (const auto& [cycle, positive] : { std::pair (0, 365), std::pair (50, 486), std::pair (100, 564),
                                           std::pair (150, 616), std::pair (200, 647), std::pair (256, 670) })
        EXPECT_EQ (positiveIn (cycle), positive) << cycle;
    for (int cycle = 1; cycle < 257; ++cycle)
        EXPECT_GE (positiveIn (cycle), positiveIn (cycle - 1)) << cycle;
}

TEST (WaveTables, NoiseIsWhiteInThirdsOfAnOctave)
{
    constexpr int size = 1 << 17;
    constexpr double rate = 88200.0; // what middle C reads it at
    std::vector<float> loop = tableOf ("noise");
    loop.pop_back (); // the guard
    while (loop.size () < size)
        loop.insert (loop.end (), loop.begin (), loop.begin () + (size - 87650));
    const std::vector<double> power = audition::powerSpectrum (loop, 0, size);
    std::vector<double> densities; // dB per bin
    for (int third = -10; third <= 10; ++third)
    {
        const double centre = 1000.0 * std::pow (10.0, third / 10.0) * size / rate;
        const auto first = static_cast<std::size_t> (std::ceil (centre * std::pow (10.0, -0.05)));
        const auto last = static_cast<std::size_t> (centre * std::pow (10.0, 0.05));
        double sum = 0.0;
        for (std::size_t bin = first; bin <= last; ++bin)
            sum += power[bin];
        densities.push_back (10.0 * std::log10 (sum / static_cast<double> (last - first + 1)));
    }
    const double mean = std::accumulate (densities.begin (), densities.end (), 0.0) / 21.0;
    for (std::size_t band = 0; band < densities.size (); ++band)
        EXPECT_NEAR (densities[band], mean, 1.0) << "band " << band;
}
}
