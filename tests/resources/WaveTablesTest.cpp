#include "resources/waves/WaveTables.h"
#include "audition/Measures.h"
#include "engine/WaveTable.h"
#include "platform/Resources.h"
#include "resources/ResourceIds.h"
#include "tests/resources/Files.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace
{
using waves::Samples;

std::vector<float> loadWave (int id)
{
    return engine::makeWaveTable (platform::findResource ("WAV", id)).samples;
}

// The committed file as samples.
Samples samplesIn (const std::string& path)
{
    const std::string bytes = bytesOf (path);
    Samples samples;
    for (std::size_t n = 0; n + 1 < bytes.size (); n += 2)
    {
        const int low = static_cast<unsigned char> (bytes[n]);
        const int high = static_cast<signed char> (bytes[n + 1]);
        samples.push_back (static_cast<std::int16_t> (high * 256 + low));
    }
    return samples;
}

float lowestOf (const std::vector<float>& table)
{
    return *std::ranges::min_element (table);
}
float highestOf (const std::vector<float>& table)
{
    return *std::ranges::max_element (table);
}

TEST (WaveTables, AreWhatTheMakerMakes)
{
    EXPECT_EQ (samplesIn ("resources/waves/saw.pcm"), waves::makeSaw ());
    EXPECT_EQ (samplesIn ("resources/waves/pulse.pcm"), waves::makePulse ());
    EXPECT_EQ (samplesIn ("resources/waves/noise.pcm"), waves::makeNoise ());
}

TEST (WaveTables, ScaleToExactlyOne)
{
    for (const int id : { sawWaveId, pulseWaveId, noiseWaveId })
    {
        const std::vector<float> table = loadWave (id);
        EXPECT_EQ (std::max (highestOf (table), -lowestOf (table)), 1.0f) << id;
        EXPECT_EQ (table.front (), table.back ()) << id;
    }
}

TEST (WaveTables, SawHasItsFigures)
{
    const std::vector<float> table = loadWave (sawWaveId);
    const std::vector<float> cycle (table.begin (), table.end () - 1);
    ASSERT_EQ (cycle.size (), 734u);
    EXPECT_EQ (std::ranges::min_element (cycle) - cycle.begin (), 549);
    EXPECT_EQ (std::ranges::max_element (cycle) - cycle.begin (), 518);
    EXPECT_NEAR (lowestOf (cycle), -0.838f, 0.0005f);
    EXPECT_EQ (highestOf (cycle), 1.0f);
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
    const std::vector<float> table = loadWave (pulseWaveId);
    ASSERT_EQ (table.size (), 188347u + 1u);
    EXPECT_EQ (lowestOf (table), -1.0f);
    EXPECT_NEAR (highestOf (table), 0.769f, 0.0005f);
    const auto positiveIn = [&table] (int cycle)
    {
        return std::count_if (table.begin () + cycle * 732, table.begin () + (cycle + 1) * 732,
                              [] (float x) { return x > 0.0f; });
    };
    EXPECT_EQ (positiveIn (0), 365);
    EXPECT_EQ (positiveIn (50), 486);
    EXPECT_EQ (positiveIn (100), 564);
    EXPECT_EQ (positiveIn (150), 616);
    EXPECT_EQ (positiveIn (200), 647);
    EXPECT_EQ (positiveIn (256), 670);
    for (int cycle = 1; cycle < 257; ++cycle)
        EXPECT_GE (positiveIn (cycle), positiveIn (cycle - 1)) << cycle;
}

// The pulse width knob weighs the differences of cycle 0's neighbouring samples. Away from the edges each
// must be 0 or one step up, in few runs: a scattered step would sound as hiss.
TEST (WaveTables, PulsePlateausClimbInUnbrokenRuns)
{
    const Samples table = samplesIn ("resources/waves/pulse.pcm");
    int changes = 0;
    int climbing = 0;
    int level = 0;
    for (const auto& [from, to] : { std::pair (30, 363), std::pair (390, 730) })
    {
        for (int n = from; n <= to; ++n)
        {
            const auto i = static_cast<std::size_t> (n);
            const int step = table[i + 1] - table[i];
            ASSERT_TRUE (step == 0 || step == 1) << n;
            ++(step == 1 ? climbing : level);
            const int stepBefore = table[i] - table[i - 1];
            changes += n > from && step != stepBefore ? 1 : 0;
        }
    }
    EXPECT_EQ (changes, 1);
    EXPECT_GT (level, 60);
    EXPECT_GT (climbing, 600);
    // The cycle is read in a loop; the guard behind it belongs to cycle 1.
    EXPECT_NEAR (table[732], table[0], 2);
}

TEST (WaveTables, NoiseHasItsFigures)
{
    const std::vector<float> table = loadWave (noiseWaveId);
    ASSERT_EQ (table.size (), 87650u + 1u);
    EXPECT_EQ (lowestOf (table), -1.0f);
    EXPECT_NEAR (highestOf (table), 0.980f, 0.0005f);
}

// The noise as an oscillator at middle C reads it: 88200 table samples a second, interpolated, looped.
std::vector<float> readNoise (double rate, std::size_t count)
{
    const std::vector<float> table = loadWave (noiseWaveId);
    const double length = static_cast<double> (table.size () - 1);
    std::vector<float> result;
    double phase = 88200.0 / rate;
    while (result.size () < count)
    {
        const auto i = static_cast<std::size_t> (phase);
        const auto share = static_cast<float> (phase - static_cast<double> (i));
        result.push_back (table[i] + share * (table[i + 1] - table[i]));
        phase = std::fmod (phase + 88200.0 / rate, length);
    }
    return result;
}

TEST (WaveTables, NoiseIsWhiteInThirdsOfAnOctave)
{
    constexpr int size = 1 << 17;
    for (const double rate : { 44100.0, 48000.0, 96000.0 })
    {
        const std::vector<float> noise = readNoise (rate, size);
        const std::vector<double> power = audition::powerSpectrum (noise, 0, size);
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
            EXPECT_NEAR (densities[band], mean, 1.0) << rate << " Hz, band " << band;
    }
}

// No echo of itself, neither within the loop nor across its seam: the autocorrelation of 20 ms around the
// seam, and of the whole loop, stays within what chance allows.
TEST (WaveTables, NoiseHasNoAudibleSeam)
{
    const std::vector<float> table = loadWave (noiseWaveId);
    const std::size_t length = table.size () - 1;
    double power = 0.0;
    for (std::size_t n = 0; n < length; ++n)
        power +=
            static_cast<double> (table[n]) * static_cast<double> (table[n]) / static_cast<double> (length);
    const auto correlation = [&] (std::size_t start, std::size_t count, std::size_t lag)
    {
        double sum = 0.0;
        for (std::size_t n = start; n < start + count; ++n)
            sum += static_cast<double> (table[n % length]) * static_cast<double> (table[(n + lag) % length]);
        return sum / power / static_cast<double> (count);
    };
    constexpr std::size_t around = 1764; // 20 ms of table samples
    for (std::size_t lag = 1; lag <= 400; ++lag)
    {
        EXPECT_LT (std::abs (correlation (0, length, lag)), 5.0 / std::sqrt (static_cast<double> (length)))
            << lag;
        EXPECT_LT (std::abs (correlation (length - around / 2, around, lag)),
                   5.0 / std::sqrt (static_cast<double> (around)))
            << lag;
    }
}

// A cycle's partials by direct summation: the tables are not as long as a transform wants.
std::vector<double> partialsOf (const Samples& cycle, int count)
{
    std::vector<double> levels;
    for (int partial = 1; partial <= count; ++partial)
    {
        double cosine = 0.0;
        double sine = 0.0;
        for (std::size_t n = 0; n < cycle.size (); ++n)
        {
            const double angle = 2.0 * 3.14159265358979 * partial * static_cast<double> (n) /
                                 static_cast<double> (cycle.size ());
            cosine += cycle[n] * std::cos (angle);
            sine += cycle[n] * std::sin (angle);
        }
        levels.push_back (20.0 * std::log10 (std::hypot (cosine, sine) + 1e-9));
    }
    const double fundamental = levels.front ();
    for (double& level : levels)
        level -= fundamental;
    return levels;
}

TEST (WaveTables, SpectraFallSmoothly)
{
    const std::vector<double> saw = partialsOf (waves::makeSaw (), 200);
    for (std::size_t n = 1; n < saw.size (); ++n)
        EXPECT_LT (saw[n], saw[n - 1] + 0.5) << "saw, partial " << n + 1;
    EXPECT_LT (saw.back (), -55.0);

    const Samples table = waves::makePulse ();
    const std::vector<double> square = partialsOf ({ table.begin (), table.begin () + 732 }, 200);
    for (std::size_t n = 2; n < square.size (); n += 2) // the odd partials
        EXPECT_LT (square[n], square[n - 2] + 0.5) << "pulse, partial " << n + 1;
    for (std::size_t n = 1; n < square.size (); n += 2)
        EXPECT_LT (square[n], -38.0) << "pulse, partial " << n + 1;
}
}
