// The way of a song into an instrument: tempo, places of events, blocks, the end; and how loud it was.
#include "host/Renderer.h"

#include "host/LevelMeter.h"

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

struct Rendering
{
    std::vector<float> left;
    std::vector<float> right;
};

Rendering render (const midi::Song& song, int program, const RenderSettings& settings)
{
    Plugin plugin (PROBE_LIBRARY);
    plugin.selectProgram (program);
    const TempoMap tempos (song);
    const Sequence sequence = makeSequence (song, tempos, settings.sampleRate, true);
    Rendering result;
    const auto keep = [&] (std::span<const float> stereo)
    {
        for (std::size_t i = 0; i < stereo.size (); i += 2)
        {
            result.left.push_back (stereo[i]);
            result.right.push_back (stereo[i + 1]);
        }
    };
    const auto report =
        Renderer ({ { plugin, sequence } }, tempos, settings).render (keep, [] (double, double) {});
    EXPECT_EQ (report.frames, result.left.size ());
    return result;
}

// The probe also sees to it that every block has an event list, if only an empty one.
TEST (Renderer, EventsArriveAtTheirSamplesInBlocksOfEverySize)
{
    for (const int block : { 1, 7, 64, 512, 4096, 65536 })
    {
        const Rendering result = render (clicks (), 0, { rate, block, 2.0, 1000000 });
        std::vector<float> expected (result.left.size (), 0.0f);
        ASSERT_GT (expected.size (), 8000u) << block;
        expected[800] = 0.25f;
        expected[4000] = 0.5f;
        expected[8000] = 0.75f;
        EXPECT_EQ (result.left, expected) << block;
        EXPECT_EQ (result.left.size () % static_cast<std::size_t> (block), 0u) << block;
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
    const Sequence all = makeSequence (song, tempos, rate, true);
    const std::vector<Sequence> channels = splitByChannel (all);
    ASSERT_EQ (channels.size (), 2u);
    for (const int block : { 1, 7, 512 })
    {
        Plugin first (PROBE_LIBRARY);
        Plugin second (PROBE_LIBRARY);
        std::vector<float> mix;
        std::vector<float> part;
        Renderer ({ { first, channels[0] }, { second, channels[1] } }, tempos, { rate, block, 2.0, 1000000 })
            .render ([&] (std::span<const float> stereo)
                     { mix.insert (mix.end (), stereo.begin (), stereo.end ()); },
                     [] (double, double) {},
                     [&] (std::size_t number, std::span<const float> stereo)
                     {
                         if (number == 1)
                             part.insert (part.end (), stereo.begin (), stereo.end ());
                     });
        std::vector<float> expectedPart (mix.size (), 0.0f);
        expectedPart[2 * 800] = 0.125f; // the left side; the probe leaves the right one silent
        expectedPart[2 * 4000] = 0.5f;
        EXPECT_EQ (part, expectedPart) << block;
        std::vector<float> expected = expectedPart;
        expected[2 * 800] += 0.25f;
        expected[2 * 4000] += 0.25f;
        EXPECT_EQ (mix, expected) << block;
    }

    // A song that plays on one channel is handed on as it is.
    song.messages = { { 0, { 0xB2, 7, 0 }, 3 }, { 0, { 0xC5, 0, 0 }, 2 }, { 1000, { 0x92, 61, 64 }, 3 } };
    const Sequence single = makeSequence (song, tempos, rate, true);
    EXPECT_EQ (splitByChannel (single).front ().messages.size (), single.messages.size ());
    EXPECT_EQ (render (song, 0, { rate, 64, 2.0, 1000000 }).left.at (4000), 0.5f);
}

TEST (Renderer, TellsTheInstrumentTheTempoOfEachBlock)
{
    const Rendering result = render (clicks (), 2, { rate, 100, 2.0, 1000000 });
    for (std::size_t frame = 0; frame < result.right.size (); ++frame)
    {
        const float tempo = frame % 100 != 0 ? 0.0f : frame < 4000 ? 0.12f : 0.06f;
        ASSERT_EQ (result.right[frame], tempo) << frame;
    }
}

TEST (Renderer, StopsHalfASecondAfterTheSoundOrAtALimit)
{
    struct Case
    {
        int program; // 0 falls silent, 1 does not
        double tailLimit;
        std::uint64_t maxFrames;
        std::size_t frames;
    };
    for (const Case& c : { Case{ 1, 2.0, 1000000, 8000 + 16000 },
                           Case{ 1, 0.0, 1000000, 8100 },   // for the note of the last tick
                           Case{ 0, 30.0, 1000000, 12100 }, // to the end of the block
                           Case{ 1, 2.0, 1050, 1000 } })
        EXPECT_EQ (render (clicks (), c.program, { rate, 100, c.tailLimit, c.maxFrames }).left.size (),
                   c.frames);
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
    struct Case
    {
        std::uint64_t tick;
        double seconds;
        double tempo;
    };
    for (const Case& c : { Case{ 0, 0.0, 120.0 }, Case{ 100, 0.5, 120.0 }, Case{ 300, 2.0, 60.0 },
                           Case{ 402, 3.005, 240.0 }, Case{ 80000, 202.0, 240.0 } })
    {
        EXPECT_NEAR (map.secondsAt (c.tick), c.seconds, 1e-9) << c.tick;
        EXPECT_NEAR (map.at (c.seconds).quarters, static_cast<double> (c.tick) / 100.0, 1e-9) << c.tick;
        EXPECT_DOUBLE_EQ (map.at (c.seconds).tempo, c.tempo) << c.tick;
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
    const std::array<double, 4> cases[] = { { 2.9, 0.0, 3, 4 }, { 3.0, 3.0, 3, 4 },   { 6.5, 6.0, 6, 8 },
                                            { 9.5, 9.0, 6, 8 }, { 12.0, 12.0, 4, 4 }, { 19.0, 16.0, 4, 4 } };
    for (const auto& [quarter, barStart, numerator, denominator] : cases)
    {
        const MusicalTime time = TempoMap (song).at (quarter / 2.0);
        EXPECT_NEAR (time.barStartQuarters, barStart, 1e-9) << quarter;
        EXPECT_EQ (time.numerator, static_cast<int> (numerator)) << quarter;
        EXPECT_EQ (time.denominator, static_cast<int> (denominator)) << quarter;
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
    {
        const double sample =
            std::pow (10.0, -23.0 / 20.0) * std::sin (2.0 * std::numbers::pi * 1000.0 * i / 48000.0);
        meter.add (std::vector<float> (2, static_cast<float> (sample)));
    }
    EXPECT_NEAR (meter.loudness (), -23.0, 0.1);
    EXPECT_NEAR (meter.peakDecibels (), -23.0, 0.01);
    meter.add (std::vector<float>{ 0.5f, -1.5f, std::nanf (""), 1.0f });
    EXPECT_EQ (meter.clipped (), 1u);
    EXPECT_EQ (meter.notFinite (), 1u);
    EXPECT_NEAR (meter.peakDecibels (), 3.522, 0.001);
}
}
