// The LFO at the host's tempo, with a simulated transport.
#include <cmath>
#include <limits>

#include <gtest/gtest.h>

#include "tests/engine/EngineProbe.h"
#include "tests/engine/TestEngine.h"

using namespace engine;
using namespace instrument;
using namespace parameters;

namespace
{
constexpr float quarterNote = 10.5f / 17.0f; // LfoRate of "1/4"

class TempoSyncTest : public testing::Test
{
protected:
    TempoSyncTest ()
    {
        synth.load (plainProgram ());
        synth.set (paramLfoWave, 0.2f); // rising saw
        synth.set (paramLfoRate, quarterNote);
        synth.set (paramLfoBmpSync, 1.0f);
        synth.hasTime = true;
        synth.time.tempo = 120.0; // 22050 samples a quarter note
    }

    void seek (double quarters)
    {
        synth.time.ppqPos = quarters;
        synth.time.samplePos = quarters * 22050.0;
    }

    // A block in a playing song; any event keeps the engine awake.
    void play (int frames)
    {
        synth.block (frames, { { 0, 0xB0, 1, 1 } });
        seek (synth.time.ppqPos + frames / 22050.0);
    }

    // Where the LFO stands in its cycle, 0..1.
    double phase ()
    {
        Lfo lfo = EngineProbe::lfo (synth.engine);
        return (static_cast<double> (lfo.tick ()) + 1.0) / 2.0;
    }

    TestEngine synth;
};
}

TEST_F (TempoSyncTest, TempoAndDivisionGiveTheRate)
{
    struct Row
    {
        double tempo;
        float lfoRate;
        double seconds;
    };
    for (const Row& row : { Row{ 120.0, quarterNote, 0.5 }, Row{ 60.0, quarterNote, 1.0 },
                            Row{ 140.0, 6.5f / 17.0f, 4.0 * 60.0 / 140.0 },
                            Row{ 90.0, 1.0f, 60.0 / 90.0 / 9.0 }, Row{ 300.0, 0.0f, 32.0 * 60.0 / 300.0 } })
    {
        synth.time.tempo = row.tempo;
        synth.set (paramLfoRate, row.lfoRate);
        play (64);
        EXPECT_NEAR (static_cast<double> (EngineProbe::lfo (synth.engine).cycleSamples ()),
                     row.seconds * 44100.0, row.seconds * 0.1)
            << row.tempo;
    }
}

TEST_F (TempoSyncTest, ABlockOnABoundaryRestartsTheCycle)
{
    seek (1.3);
    play (100);
    play (100);
    seek (4.0);
    play (100);
    EXPECT_NEAR (phase (), 101.0 / 22050.0, 1e-4);
    seek (4.00005); // just behind it still counts
    play (100);
    EXPECT_NEAR (phase (), 101.0 / 22050.0, 1e-4);
    seek (5.001); // this does not
    play (100);
    EXPECT_NEAR (phase (), 201.0 / 22050.0, 1e-4);
}

TEST_F (TempoSyncTest, ABoundaryInsideABlockDoesNot)
{
    seek (2.0);
    play (100);
    seek (2.999);
    play (500); // over 3.0
    EXPECT_NEAR (phase (), 601.0 / 22050.0, 1e-4);
}

// Against the free-running clock of the song the LFO keeps its place over many blocks.
TEST_F (TempoSyncTest, FollowsASong)
{
    seek (0.0);
    play (1); // the position has to move before it counts as playing
    seek (0.0);
    synth.time.samplePos = 5.0;
    play (441);
    seek (441.0 / 22050.0);
    for (int block = 1; block < 499; ++block)
    {
        play (441);
        const double expected = std::fmod (441.0 * (block + 1) + 1.0, 22050.0) / 22050.0;
        const double apart = std::abs (phase () - expected);
        ASSERT_LT (std::min (apart, 1.0 - apart), 2e-3) << block;
    }
}

TEST_F (TempoSyncTest, AStoppedTransportRestartsNothing)
{
    seek (8.0);
    play (100);
    seek (8.0);
    synth.block (100, { { 0, 0xB0, 1, 1 } }); // the same position: stopped
    EXPECT_TRUE (EngineProbe::transportStopped (synth.engine));
    const double before = phase ();
    synth.engine.renderBlock (nullptr, 1000); // a boundary, but nothing moves
    EXPECT_NEAR (phase (), before + 1000.0 / 22050.0, 1e-3);
}

TEST_F (TempoSyncTest, EventsLineTheLfoUpWithTheStartPosition)
{
    for (const double position : { 1.0, 5000.0, 22050.0 * 7.0 + 3000.0, 1e9 })
    {
        synth.time.samplePos = position;
        TestEngine fresh;
        EXPECT_TRUE (EngineProbe::transportStopped (synth.engine));
        synth.engine.processEvents (nullptr);
        const double expected = (std::floor (std::fmod (position, 22050.0)) + 2.0) / 22050.0;
        EXPECT_NEAR (phase (), std::fmod (expected, 1.0), 1e-3) << position;
    }
    synth.time.samplePos = 0.0; // at the start it only restarts
    synth.engine.processEvents (nullptr);
    EXPECT_NEAR (phase (), 1.0 / 22050.0, 1e-4);
}

TEST_F (TempoSyncTest, WithoutAUsableTempoTheRateStays)
{
    play (64);
    const float before = EngineProbe::lfo (synth.engine).cycleSamples ();
    for (const double tempo : { 0.0, -120.0, std::numeric_limits<double>::quiet_NaN () })
    {
        synth.time.tempo = tempo;
        play (64);
        EXPECT_EQ (EngineProbe::lfo (synth.engine).cycleSamples (), before) << tempo;
    }
    synth.time.tempo = 60.0;
    synth.hasTime = false;
    play (64);
    EXPECT_EQ (EngineProbe::lfo (synth.engine).cycleSamples (), before);
}

TEST_F (TempoSyncTest, AbsurdTransportsNeitherHangNorBreakTheSound)
{
    constexpr double infinity = std::numeric_limits<double>::infinity ();
    constexpr double nan = std::numeric_limits<double>::quiet_NaN ();
    synth.set (paramLfoFilter, 1.0f);
    synth.set (paramLfoPitch, 1.0f);
    for (const double tempo : { 120.0, 1e-300, 1e-6, 1e300, infinity, nan, -5.0 })
    {
        for (const double position : { 0.0, -1e6, 1e18, 1e300, infinity, -infinity, nan })
        {
            synth.time.tempo = tempo;
            synth.time.samplePos = position;
            synth.time.ppqPos = position;
            for (const float lfoWave : { 0.0f, 0.2f, 1.0f })
            {
                synth.set (paramLfoWave, lfoWave);
                for (const float sample : synth.block (50, { { 0, 0x90, 60, 100 } }))
                    ASSERT_TRUE (std::isfinite (sample)) << tempo << " " << position;
            }
        }
    }
}
