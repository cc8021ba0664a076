// The LFO at the host's tempo, with a simulated transport.
#include <limits>

#include <gtest/gtest.h>

#include "tests/engine/TestEngine.h"
#include "tests/support/Signals.h"

using namespace engine;
using namespace parameters;

namespace
{
constexpr float quarterNote = 10.5f / 17.0f; // LfoRate of "1/4"
constexpr double quarter = 22050.0;          // samples, at 120 beats a minute

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
        synth.time.tempo = 120.0;
    }

    void seek (double quarters)
    {
        synth.time.quarterPosition = quarters;
        synth.time.samplePosition = quarters * quarter;
    }

    // A block in a playing song; any event keeps the engine awake.
    void play (int frames)
    {
        synth.block (frames, { midi (0, 0xB0, 1, 1) });
        seek (synth.time.quarterPosition + frames / quarter);
    }

    // Samples into the cycle that the next tick of the LFO stands for.
    double phase () const
    {
        Lfo copy = EngineProbe::lfo (const_cast<Engine&> (synth.engine));
        return (static_cast<double> (copy.tick ()) + 1.0) / 2.0 * static_cast<double> (copy.cycleSamples ());
    }

    TestEngine synth;
};
}

TEST_F (TempoSyncTest, TempoAndDivisionGiveTheRate)
{
    // Length in quarter notes of "32/4", "16/4", ...
    const double quarters[] = { 32, 16, 8,   7,   6,       5,    4,       3.5,   3,
                                2,  1,  0.5, 0.4, 1.0 / 3, 0.25, 1.0 / 6, 0.125, 1.0 / 9 };
    for (int k = 0; k < 18; ++k)
    {
        synth.time.tempo = 60.0 + 10.0 * k;
        synth.set (paramLfoRate, k == 17 ? 1.0f : (static_cast<float> (k) + 0.5f) / 17.0f);
        play (64);
        const double samples = quarters[k] * 60.0 / synth.time.tempo * 44100.0;
        EXPECT_NEAR (synth.lfo ().cycleSamples (), samples, samples * 1e-5) << k;
    }
}

TEST_F (TempoSyncTest, ABlockThatBeginsOnADivisionRestartsTheCycle)
{
    struct Row
    {
        double at;
        double phase;
    };
    seek (1.3);
    play (100);
    for (const Row& row :
         { Row{ 4.0, 101 }, Row{ 4.00005, 101 },    // just behind it still counts
           Row{ 5.001, 201 }, Row{ 5.9999, 301 } }) // this does not, nor does one inside a block
    {
        seek (row.at);
        play (100);
        EXPECT_NEAR (phase (), row.phase, 2.0) << row.at;
    }
}

TEST_F (TempoSyncTest, FollowsASongAndStandsWithIt)
{
    seek (0.01);
    play (441);
    seek (1.0);
    for (int block = 1; block < 499; ++block)
    {
        play (441);
        const double apart = std::abs (phase () - std::fmod (441.0 * block + 1.0, quarter));
        ASSERT_LT (std::min (apart, quarter - apart), 45.0) << block;
    }
    seek (8.0);
    play (100);
    seek (8.0); // the same position: stopped, and nothing restarts
    synth.engine.renderBlock (nullptr, nullptr, 100);
    EXPECT_NEAR (phase (), 201.0, 2.0);
}

TEST_F (TempoSyncTest, WithoutAUsableTempoTheRateStays)
{
    play (64);
    const float before = synth.lfo ().cycleSamples ();
    for (const double tempo : { 0.0, -120.0, std::numeric_limits<double>::quiet_NaN (), 60.0 })
    {
        synth.hasTime = tempo != 60.0; // or without any position
        synth.time.tempo = tempo;
        play (64);
        EXPECT_EQ (synth.lfo ().cycleSamples (), before) << tempo;
    }
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
            synth.time = { position, tempo, position };
            for (const float lfoWave : { 0.0f, 0.2f, 1.0f })
            {
                synth.set (paramLfoWave, lfoWave);
                ASSERT_TRUE (isFinite (synth.block (50, { noteOn (0) }))) << tempo << " " << position;
            }
        }
    }
}
