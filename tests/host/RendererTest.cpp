#include "host/Renderer.h"

#include "host/LevelMeter.h"
#include "tests/host/TemporaryFolder.h"

#include <cmath>
#include <fstream>
#include <gtest/gtest.h>

namespace
{
using namespace host;

constexpr int rate = 8000; // Hz

// A note of velocity 32 at 0.1 s, of 64 at 0.5 s in the tempo of 60, and one at the very last tick.
MidiFile clicks ()
{
    MidiFile song;
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
    RenderReport report;
    std::vector<float> left;
    std::vector<float> right;
    std::vector<double> progress;
};

Rendering render (const MidiFile& song, int program, RenderSettings settings)
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
    const auto note = [&] (double done, double) { result.progress.push_back (done); };
    result.report = Renderer (plugin, sequence, tempos, settings).render (keep, note);
    return result;
}

RenderSettings inBlocks (int blockSize)
{
    return { rate, blockSize, 2.0, 1000000 };
}

TEST (Renderer, EventsArriveAtTheirSamplesInBlocksOfEverySize)
{
    for (const int block : { 1, 7, 64, 512, 4096, 65536 })
    {
        const Rendering result = render (clicks (), 0, inBlocks (block));
        std::vector<float> expected (result.left.size (), 0.0f);
        ASSERT_GT (expected.size (), 8000u) << block;
        expected[800] = 0.25f;
        expected[4000] = 0.5f;
        expected[8000] = 0.75f;
        EXPECT_EQ (result.left, expected) << block;
        EXPECT_EQ (result.report.frames, result.left.size ()) << block;
        EXPECT_EQ (result.left.size () % static_cast<std::size_t> (block), 0u) << block;
    }
}

TEST (Renderer, TellsTheInstrumentTheTempoOfEachBlock)
{
    const Rendering result = render (clicks (), 2, inBlocks (100));
    for (std::size_t frame = 0; frame < result.right.size (); ++frame)
    {
        const float tempo = frame % 100 != 0 ? 0.0f : frame < 4000 ? 0.12f : 0.06f;
        ASSERT_EQ (result.right[frame], tempo) << frame;
    }
}

TEST (Renderer, StopsHalfASecondAfterTheSoundOrAtTheTailLimit)
{
    MidiFile song = clicks ();
    song.tempoChanges.clear ();
    const Rendering drone = render (song, 1, { rate, 100, 2.0, 1000000 });
    EXPECT_EQ (drone.left.size (), 6000u + 16000u); // song of 0.75 s, then 2 s
    EXPECT_EQ (drone.left.back (), 0.25f);
    EXPECT_DOUBLE_EQ (drone.progress.back (), 2.75);

    const Rendering none = render (song, 1, { rate, 100, 0.0, 1000000 });
    EXPECT_EQ (none.left.size (), 6100u) << "the note of the last tick still sounds";

    const Rendering silent = render (song, 0, { rate, 100, 30.0, 1000000 });
    EXPECT_EQ (silent.left.size (), 10100u)
        << "half a second after the click at 6000, to the end of the block";
}

TEST (Renderer, NeverGivesMoreThanTheFileCanHold)
{
    const Rendering result = render (clicks (), 1, { rate, 100, 2.0, 1050 });
    EXPECT_EQ (result.left.size (), 1000u);
}

TEST (Plugin, KnowsItsProgramsWithoutTheBlanksAroundTheirNames)
{
    Plugin plugin (PROBE_LIBRARY);
    ASSERT_EQ (plugin.programCount (), 3);
    EXPECT_EQ (plugin.programName (0), "Clicks");
    EXPECT_EQ (plugin.programName (1), "Drone");
    plugin.selectProgram (1);
    EXPECT_EQ (plugin.currentProgram (), 1);
}

TEST (Plugin, SaysWhyAFileIsNoInstrument)
{
    const TemporaryFolder temporary;
    std::ofstream (temporary / "text.so") << "no library";
    EXPECT_THROW (Plugin (temporary / "none.so"), std::runtime_error);
    EXPECT_THROW (Plugin (temporary / "text.so"), std::runtime_error);
    EXPECT_THROW (Plugin (temporary.folder ()), std::runtime_error);
}

TEST (LevelMeter, MeasuresASineAsTheStandardSays)
{
    // EBU Tech 3341: a stereo sine of 1 kHz with peaks at -23 dBFS has a loudness of -23 LUFS.
    LevelMeter meter (48000);
    std::vector<float> sine;
    const double amplitude = std::pow (10.0, -23.0 / 20.0);
    for (int i = 0; i < 48000 * 5; ++i)
    {
        const auto sample =
            static_cast<float> (amplitude * std::sin (2.0 * 3.14159265358979 * 1000.0 * i / 48000.0));
        sine.insert (sine.end (), { sample, sample });
    }
    meter.add (sine);
    EXPECT_NEAR (meter.loudness (), -23.0, 0.1);
    EXPECT_NEAR (meter.peakDecibels (), -23.0, 0.01);
    EXPECT_EQ (meter.frames (), 48000u * 5u);
    EXPECT_EQ (meter.clipped (), 0u);
}

TEST (LevelMeter, CountsWhatNoFileCanHold)
{
    LevelMeter meter (48000);
    EXPECT_TRUE (std::isinf (meter.peakDecibels ()));
    EXPECT_TRUE (std::isinf (meter.loudness ()));
    const float nan = std::nanf ("");
    meter.add (std::vector<float>{ 0.5f, -1.5f, nan, 1.0f });
    EXPECT_EQ (meter.clipped (), 1u);
    EXPECT_EQ (meter.notFinite (), 1u);
    EXPECT_NEAR (meter.peakDecibels (), 3.522, 0.001);
}
}
