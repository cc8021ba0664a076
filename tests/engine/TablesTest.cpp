// Note and wave tables.
#include <algorithm>
#include <cmath>

#include <gtest/gtest.h>

#include "engine/NoteTable.h"
#include "engine/WaveTable.h"
#include "platform/Resources.h"

using namespace engine;

TEST (TablesTest, NotesAreEquallyTempered)
{
    for (int n = 0; n < 128; ++n)
    {
        const double hz = 440.0 * std::exp2 ((n - 69) / 12.0);
        EXPECT_NEAR (static_cast<double> (noteFreq[static_cast<std::size_t> (n)]), hz, hz * 1e-7) << n;
        EXPECT_NEAR (static_cast<double> (keyTrackFactor[static_cast<std::size_t> (n)]), hz, hz * 1e-7) << n;
    }
    for (const int note : { -1, -129, 128, 255, 1000, -2147483647 })
        EXPECT_EQ (noteHz (note), noteFreq[static_cast<std::size_t> (((note % 128) + 128) % 128)]) << note;
}

TEST (TablesTest, WavesAreScaledToOneAndGuarded)
{
    struct Row
    {
        int id;
        std::int32_t length;
        double lowest;
        double highest;
    };
    for (const Row& row : { Row{ sawWaveId, 734, -0.838, 1.0 }, Row{ pulseWaveId, 188347, -1.0, 0.769 },
                            Row{ noiseWaveId, 87650, -1.0, 0.980 } })
    {
        const WaveTable table = loadWaveTable (row.id);
        EXPECT_EQ (table.length, row.length);
        ASSERT_EQ (table.samples.size (), static_cast<std::size_t> (row.length) + 1);
        EXPECT_EQ (table.samples.back (), table.samples.front ());
        const auto [lowest, highest] = std::minmax_element (table.samples.begin (), table.samples.end ());
        EXPECT_NEAR (static_cast<double> (*lowest), row.lowest, 0.0006) << row.id;
        EXPECT_NEAR (static_cast<double> (*highest), row.highest, 0.0006) << row.id;
        EXPECT_EQ (std::max (std::abs (*lowest), std::abs (*highest)), 1.0f) << row.id;
        const std::span<const std::byte> pcm = platform::findResource ("WAV", row.id);
        const auto sign = [&pcm] (std::size_t n) { return std::to_integer<int> (pcm[2 * n + 1]) >= 128; };
        for (const std::size_t n : { 0u, 100u, 518u, 549u, 733u })
            EXPECT_EQ (table.samples[n] < 0.0f, sign (n)) << row.id << " sample " << n;
    }
}

TEST (TablesTest, AMissingWaveHasNoSamples)
{
    const WaveTable table = loadWaveTable (9999);
    EXPECT_EQ (table.length, 0);
    EXPECT_EQ (table.samples.size (), 1u);
}
