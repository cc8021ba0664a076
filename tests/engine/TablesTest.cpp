// Note and wave tables.
#include <gtest/gtest.h>

#include "engine/NoteTable.h"
#include "tests/engine/Ramp.h"

using namespace engine;

TEST (TablesTest, NotesAreEquallyTempered)
{
    for (int n = 0; n < 128; ++n)
    {
        EXPECT_NEAR (noteFreq[static_cast<std::size_t> (n)], keyHz (n), keyHz (n) * 1e-7) << n;
        EXPECT_NEAR (keyTrackFactor[static_cast<std::size_t> (n)], keyHz (n), keyHz (n) * 1e-7) << n;
    }
    for (const int note : { -1, -129, 128, 255, 1000, -2147483647 })
        EXPECT_EQ (noteHz (note), noteFreq[static_cast<std::size_t> (((note % 128) + 128) % 128)]) << note;
}

TEST (TablesTest, WavesAreScaledToOneAndGuarded)
{
    using Bytes = std::vector<std::byte>;
    const auto bytes = [] (std::initializer_list<int> values)
    {
        Bytes pcm;
        for (const int value : values)
        {
            pcm.push_back (static_cast<std::byte> (value & 0xFF));
            pcm.push_back (static_cast<std::byte> ((value >> 8) & 0xFF));
        }
        return pcm;
    };
    Bytes odd = bytes ({ 100, -200, 50 });
    odd.push_back (std::byte{ 1 }); // half a sample counts as none
    const std::pair<Bytes, std::vector<float>> rows[] = { { odd, { 0.5f, -1.0f, 0.25f, 0.5f } },
                                                          { bytes ({ 300 }), { 1.0f, 1.0f } },
                                                          { bytes ({ 0, 0 }), { 0.0f, 0.0f, 0.0f } },
                                                          { {}, { 0.0f } } };
    for (const auto& [pcm, samples] : rows)
    {
        const WaveTable table = makeWaveTable (pcm);
        EXPECT_EQ (table.samples, samples);
        EXPECT_EQ (table.length, static_cast<std::int32_t> (samples.size ()) - 1);
    }
    EXPECT_EQ (makeWaveTable (bytes ({ -32768, 16384 })).samples[0], -1.0f);
}
