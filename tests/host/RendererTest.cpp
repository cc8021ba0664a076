// The way of a song into an instrument: tempo, places of events, blocks, the end; and how loud it was.
#include "host/Renderer.h"

#include "host/LevelMeter.h"

#include <array>
#include <cmath>
#include <gtest/gtest.h>
#include <numbers>

namespace
{
using namespace host;

constexpr int rate = 8000; // Hz

// A note of velocity 32 at 0.1 s, of 64 at 0.5 s in the tempo of 60, and one at the very last tick.
midi::Song clicks ()
{
    midi::Song song;
    song.ticksPerQuarter = 1000;
    song.messages = { { 200, { 0x90, 60, 32 }, 3 },
                      { 1000, { 0x90, 61, 64 }, 3 },
                      { 1500, { 0x90, 62, 96 }, 3 } };
    song.tempoChanges = { { 1000, 1000000 } };
    song.endTick = 1500; // 1 s
    return song;
}

// Left and right.
std::array<std::vector<float>, 2> render (const midi::Song& song, int program, const RenderSettings& settings)
{
    Plugin plugin (PROBE_LIBRARY);
    plugin.selectProgram (program);
    const TempoMap tempos (song);
    const Sequence sequence = makeSequence (song, tempos, settings.sampleRate, true);
    std::array<std::vector<float>, 2> result;
    const auto keep = [&] (std::span<const float> stereo)
    {
        for (std::size_t i = 0; i < stereo.size (); ++i)
            result[i % 2].push_back (stereo[i]);
    };
    const auto report =
        Renderer ({ { plugin, sequence } }, tempos, settings).render (keep, [] (double, double) {});
    EXPECT_EQ (report.frames, result[0].size ());
    return result;
}

// The probe also sees to it that every block has an event list, if only an empty one.
TEST (Renderer, EventsArriveAtTheirSamplesAndTheTempoInBlocksOfEverySize)
{
    for (const std::size_t block : { 1u, 7u, 64u, 512u, 4096u, 65536u })
    {
        const auto [left, right] = render (clicks (), 2, { rate, static_cast<int> (block), 2.0, 1000000 });
        ASSERT_GT (left.size (), 8000u) << block;
        EXPECT_EQ (left.size () % block, 0u) << block;
        std::vector<float> expected (left.size (), 0.0f);
        expected[800] = 0.25f;
        expected[4000] = 0.5f;
        expected[8000] = 0.75f;
        EXPECT_EQ (left, expected) << block;
        for (std::size_t frame = 0; frame < right.size (); ++frame)
            expected[frame] = frame % block != 0 ? 0.0f : frame < 4000 ? 0.12f : 0.06f;
        EXPECT_EQ (right, expected) << block;
    }
}

// Each channel on an instrument of its own, with volume and balance from the sample on at which they come.
TEST (Renderer, MixesTheChannelsOfASong)
{
    midi::Song song = clicks ();
    song.messages = { { 0, { 0xB2, 7, 50 }, 3 },     { 200, { 0x90, 60, 32 }, 3 },
                      { 200, { 0x92, 60, 64 }, 3 },  { 600, { 0xB2, 10, 127 }, 3 },
                      { 600, { 0x92, 62, 64 }, 3 },  { 1000, { 0xB2, 10, 0 }, 3 },
                      { 1000, { 0xB2, 7, 100 }, 3 }, { 1000, { 0x92, 61, 64 }, 3 },
                      { 1000, { 0x90, 64, 32 }, 3 } };
    const TempoMap tempos (song);
    const std::vector<Sequence> channels = splitByChannel (makeSequence (song, tempos, rate, true));
    ASSERT_EQ (channels.size (), 2u);
    const auto addTo = [] (std::vector<float>& sound)
    {
        return [&sound] (std::span<const float> stereo)
        { sound.insert (sound.end (), stereo.begin (), stereo.end ()); };
    };
    for (const int block : { 1, 7, 512 })
    {
        Plugin first (PROBE_LIBRARY);
        Plugin second (PROBE_LIBRARY);
        std::vector<float> mix;
        std::vector<float> parts[2];
        Renderer ({ { first, channels[0] }, { second, channels[1] } }, tempos, { rate, block, 2.0, 1000000 })
            .render (
                addTo (mix), [] (double, double) {},
                [&] (std::size_t number, std::span<const float> stereo) { addTo (parts[number]) (stereo); });
        std::vector<float> expected (mix.size (), 0.0f);
        expected[2 * 800] = 0.125f; // the left side; the probe leaves the right one silent
        expected[2 * 4000] = 0.5f;
        EXPECT_EQ (parts[1], expected) << block;
        expected[2 * 800] += 0.25f;
        expected[2 * 4000] += 0.25f;
        EXPECT_EQ (mix, expected) << block;
    }

    // A song that plays on one channel is handed on as it is.
    song.messages = { { 0, { 0xB2, 7, 0 }, 3 }, { 0, { 0xC5, 0, 0 }, 2 }, { 1000, { 0x92, 61, 64 }, 3 } };
    const Sequence single = makeSequence (song, tempos, rate, true);
    EXPECT_EQ (splitByChannel (single).front ().messages.size (), single.messages.size ());
    EXPECT_EQ (render (song, 0, { rate, 64, 2.0, 1000000 })[0].at (4000), 0.5f);
}

TEST (Renderer, StopsHalfASecondAfterTheSoundOrAtALimit)
{
    // A program that falls silent or one that does not, the longest tail, the most frames; frames.
    using Row = std::tuple<int, double, std::uint64_t, std::size_t>;
    for (const auto& [program, tailLimit, maxFrames, frames] :
         { Row{ 1, 2.0, 1000000, 8000 + 16000 }, Row{ 1, 2.0, 1050, 1000 },
           Row{ 1, 0.0, 1000000, 8100 },     // for the note of the last tick
           Row{ 0, 30.0, 1000000, 12100 } }) // to the end of the block
        EXPECT_EQ (render (clicks (), program, { rate, 100, tailLimit, maxFrames })[0].size (), frames);
}

// 100 ticks per quarter note: two at 120, then a change to 60, then to 240 at quarter 4, where the last of
// two changes counts.
midi::Song threeTempos ()
{
    midi::Song song;
    song.ticksPerQuarter = 100;
    song.tempoChanges = { { 200, 1000000 }, { 400, 123456 }, { 400, 250000 } };
    song.endTick = 800;
    return song;
}

TEST (TempoMap, TimeFollowsTheTempoFromEachChangeOn)
{
    const TempoMap map (threeTempos ());
    using Row = std::tuple<unsigned, double, double>;
    for (const auto& [tick, seconds, tempo] :
         { Row{ 0, 0.0, 120.0 }, Row{ 100, 0.5, 120.0 }, Row{ 300, 2.0, 60.0 }, Row{ 402, 3.005, 240.0 },
           Row{ 80000, 202.0, 240.0 } })
    {
        EXPECT_NEAR (map.secondsAt (tick), seconds, 1e-9) << tick;
        EXPECT_NEAR (map.at (seconds).quarters, tick / 100.0, 1e-9) << tick;
        EXPECT_DOUBLE_EQ (map.at (seconds).tempo, tempo) << tick;
    }
    EXPECT_DOUBLE_EQ (map.at (-1.0).quarters, 0.0);

    midi::Song timeCode; // which knows no tempo and is shown at 120
    timeCode.ticksPerSecond = 1000.0;
    timeCode.tempoChanges = { { 0, 100000 } };
    EXPECT_DOUBLE_EQ (TempoMap (timeCode).secondsAt (2500), 2.5);
    EXPECT_DOUBLE_EQ (TempoMap (timeCode).at (2.5).quarters, 5.0);
}

TEST (TempoMap, BarsStartAgainAtEachTimeSignature)
{
    midi::Song song;
    song.ticksPerQuarter = 100;
    song.timeSignatures = { { 0, 3, 4 }, { 600, 6, 8 }, { 1200, 4, 4 } };
    // quarter note (two per second), start of its bar, beats, beat unit
    const std::tuple<double, double, int, int> cases[] = { { 2.9, 0.0, 3, 4 },   { 3.0, 3.0, 3, 4 },
                                                           { 6.5, 6.0, 6, 8 },   { 9.5, 9.0, 6, 8 },
                                                           { 12.0, 12.0, 4, 4 }, { 19.0, 16.0, 4, 4 } };
    for (const auto& [quarter, barStart, numerator, denominator] : cases)
    {
        const MusicalTime time = TempoMap (song).at (quarter / 2.0);
        EXPECT_NEAR (time.barStartQuarters, barStart, 1e-9) << quarter;
        EXPECT_EQ (time.numerator, numerator) << quarter;
        EXPECT_EQ (time.denominator, denominator) << quarter;
    }
}

TEST (Sequence, KeysThatTheSongHoldsEndWithIt)
{
    midi::Song song = threeTempos ();
    song.messages = { { 0, { 0xC9, 6, 0 }, 2 },    { 1, { 0x90, 60, 100 }, 3 }, { 1, { 0x93, 61, 100 }, 3 },
                      { 1, { 0x93, 62, 100 }, 3 }, { 9, { 0x80, 60, 64 }, 3 },  { 9, { 0x93, 62, 0 }, 3 } };
    const TempoMap map (song);
    const Sequence whole = makeSequence (song, map, 44100.0, true);
    ASSERT_EQ (whole.messages.size (), 7u);
    EXPECT_EQ (whole.messages[1].sample, 221u) << "220.5, rounded";
    EXPECT_EQ (whole.messages.back ().sample, 176400u);
    EXPECT_EQ (whole.messages.back ().bytes, (std::array<std::uint8_t, 3>{ 0x83, 61, 0 }));
    EXPECT_DOUBLE_EQ (whole.seconds, 4.0);
    const Sequence withoutPrograms = makeSequence (song, map, 44100.0, false);
    EXPECT_EQ (withoutPrograms.messages.size (), 6u);
    EXPECT_EQ (withoutPrograms.messages[0].bytes[0], 0x90);
}

TEST (LevelMeter, MeasuresASineAsTheStandardSays)
{
    // EBU Tech 3341: a stereo sine of 1 kHz with peaks at -23 dBFS has a loudness of -23 LUFS.
    LevelMeter meter (48000);
    for (int i = 0; i < 48000 * 2; ++i)
        meter.add (std::vector<float> (
            2, 0.0707946f * std::sin (std::numbers::pi_v<float> * static_cast<float> (i % 48) / 24.0f)));
    EXPECT_NEAR (meter.loudness (), -23.0, 0.1);
    EXPECT_NEAR (meter.peakDecibels (), -23.0, 0.01);
    meter.add (std::vector<float>{ 0.5f, -1.5f, std::nanf (""), 1.0f });
    EXPECT_EQ (meter.clipped (), 1u);
    EXPECT_EQ (meter.notFinite (), 1u);
    EXPECT_NEAR (meter.peakDecibels (), 3.522, 0.001);
}
}
