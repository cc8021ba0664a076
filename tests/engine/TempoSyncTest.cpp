// The LFO at the host's tempo, with a simulated transport.
#include <limits>

#include <gtest/gtest.h>

#include "tests/engine/TestEngine.h"
#include "tests/support/Signals.h"

using namespace engine;
using namespace parameters;

namespace
{
constexpr double infinity = std::numeric_limits<double>::infinity ();
constexpr double notANumber = std::numeric_limits<double>::quiet_NaN ();
constexpr double quarter = 22050.0; // samples, at 120 beats a minute

class TempoSyncTest : public testing::Test
{
protected:
    TempoSyncTest ()
    {
        synth.load (plainProgram ());
        synth.set (paramLfoWave, 0.2f);          // rising saw
        synth.set (paramLfoRate, 10.5f / 17.0f); // "1/4"
        synth.set (paramLfoBmpSync, 1.0f);
        synth.hasTime = true;
        synth.time.tempo = 120.0;
        synth.set (param1Sustain, 1.0f);
        synth.block (1, { noteOn (0) }); // awake from here on
    }

    // A block at that place; `sendsList` as most hosts do, also with nothing in it.
    void play (double samplePosition, int frames, bool sendsList = true)
    {
        synth.time.samplePosition = samplePosition;
        synth.time.quarterPosition = samplePosition / quarter;
        if (sendsList)
            synth.engine.processEvents (nullptr);
        synth.engine.renderBlock (nullptr, nullptr, frames);
    }

    // Where the LFO's next tick stands in its cycle, in samples, at 0 .. cycle.
    void expectPhase (double samples, const char* what, double at)
    {
        Lfo copy = synth.lfo ();
        const double apart = std::fmod (
            std::abs ((static_cast<double> (copy.tick ()) + 1.0) / 2.0 * quarter - samples), quarter);
        EXPECT_LT (std::min (apart, quarter - apart), 3.0) << what << " " << at;
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
        const double tempo = 60.0 + 10.0 * k;
        synth.time.tempo = tempo;
        synth.set (paramLfoRate, k == 17 ? 1.0f : (static_cast<float> (k) + 0.5f) / 17.0f);
        play (k, 64);
        const double samples = quarters[k] * 60.0 / tempo * 44100.0;
        EXPECT_NEAR (synth.lfo ().cycleSamples (), samples, samples * 1e-5) << k;
    }
    const float before = synth.lfo ().cycleSamples ();
    for (const std::optional<double> tempo : { 0.0, -120.0, notANumber, infinity }) // no tempo at all
    {
        synth.time.tempo = tempo;
        play (1000.0, 64);
        EXPECT_EQ (synth.lfo ().cycleSamples (), before) << *tempo;
    }
    synth.time.tempo.reset ();
    play (2000.0, 64);
    synth.time.tempo = 60.0;
    synth.hasTime = false;
    play (3000.0, 64);
    EXPECT_EQ (synth.lfo ().cycleSamples (), before) << "without a tempo, or any place";
}

// Also before the start of the song, far behind it, and while the host tells no tempo.
TEST_F (TempoSyncTest, ABlockThatBeginsOnADivisionRestartsTheCycle)
{
    double phase = 1.0;
    using Row = std::tuple<double, double, bool>;
    for (const auto& [quarters, tempo, restarts] :
         { Row{ 0.3, 120, false }, Row{ 4.0, 120, true }, Row{ 4.00005, 120, true }, // just behind it
           Row{ 5.001, 120, false }, Row{ 5.9999, 120, false }, // nor one inside the block
           Row{ -4.0, 120, true }, Row{ -3.9, 120, false }, Row{ -0.5, 120, false }, Row{ 8.0, 0, true },
           Row{ 1e5, 120, true }, Row{ 1e5 + 0.5, 120, false } })
    {
        synth.time.tempo = tempo;
        play (quarters * quarter, 100);
        phase = restarts ? 100.0 : phase + 100.0;
        expectPhase (phase + 1.0, "at", quarters);
    }
    synth.time = { 1e6, 120.0, std::nullopt }; // without a musical position it runs on
    synth.engine.renderBlock (nullptr, nullptr, 100);
    expectPhase (phase + 101.0, "nowhere", 0.0);
}

TEST_F (TempoSyncTest, FollowsASongAndMovesWhileItStands)
{
    for (int block = 0; block < 499; ++block)
        play (441.0 * block, 441);
    expectPhase (std::fmod (441.0 * 499, quarter), "song", 0.0);
    // It moves to a division and stands there, with a list in every block. The first of them still finds it
    // moving, the second lines the LFO up, once. The other place is beyond what 24 bits hold: there it was
    // lined up when it began to move, and restarted by the division.
    using Row = std::tuple<double, double>;
    for (const auto& [place, phase] : { Row{ 8.0 * quarter, 402.0 }, Row{ 33554433.0, 601.0 } })
    {
        synth.time.quarterPosition = 8.0;
        synth.time.samplePosition = place;
        synth.engine.renderBlock (nullptr, nullptr, 100);
        for (int block = 0; block < 5; ++block)
        {
            synth.engine.processEvents (nullptr);
            synth.engine.renderBlock (nullptr, nullptr, 100);
        }
        expectPhase (phase, "standing at", place);
    }
}

TEST_F (TempoSyncTest, IsLinedUpWithThePlaceWhereTheSongStarts)
{
    for (const bool sendsList : { true, false })
    {
        for (const double place : { 3.0, 5000.0, 22050.0 * 7.0 + 3000.0, 1e9, -500.0 })
        {
            play (place, 64, false);
            play (place, 64, false);             // stands
            play (place + 100.0, 64, sendsList); // starts
            const double from = place < 0.0 ? 0.0 : std::floor (std::fmod (place + 100.0, quarter)) + 1.0;
            expectPhase (from + 64.0 + 1.0, sendsList ? "with a list at" : "without at", place);
        }
    }
}

TEST_F (TempoSyncTest, AbsurdTransportsNeitherHangNorBreakTheSound)
{
    synth.set (paramLfoFilter, 1.0f);
    synth.set (paramLfoPitch, 1.0f);
    for (const double tempo : { 120.0, 1e-300, 1e-6, 1e300, infinity, notANumber, -5.0 })
    {
        for (const double position : { 0.0, -1e6, 1e18, 1e300, infinity, -infinity, notANumber })
        {
            synth.time = { position, tempo, position };
            for (const float lfoWave : { 0.0f, 0.2f, 0.8f, 1.0f })
            {
                synth.set (paramLfoWave, lfoWave);
                ASSERT_TRUE (isFinite (synth.block (50, { noteOn (0) }))) << tempo << " " << position;
            }
        }
    }
}

// Locked, the phase is the song's at every block, wherever it starts, and in the middle of a block that a
// note wakes the engine in.
TEST_F (TempoSyncTest, LockedItFollowsTheMusicalPosition)
{
    synth.engine.setAdditions ({ false, true });
    for (const double place : { 5000.0, 5100.0, 1e6 + 3.0, 22050.0 * 7.0 + 21990.0, -700.0, 33554433.0 })
    {
        play (place, 100);
        expectPhase (std::fmod (place + 100.0 + 10.0 * quarter, quarter) + 1.0, "locked at", place);
    }
    synth.time = { 30000.0, 120.0, std::nullopt }; // no musical position: from the samples
    synth.engine.renderBlock (nullptr, nullptr, 100);
    expectPhase (30000.0 + 100.0 - quarter + 1.0, "samples", 30000.0);

    const float before = synth.lfo ().cycleSamples ();
    play (30000.0, 100); // stands, and runs free
    play (30000.0, 100);
    EXPECT_EQ (synth.lfo ().cycleSamples (), before);
    expectPhase (30000.0 + 300.0 - quarter + 1.0, "standing", 30000.0);

    synth.block (1, { midi (0, 0x80, 60, 0) });
    while (!synth.engine.isAsleep ())
        synth.block (44100);
    synth.time = { 100000.0, 120.0, 100000.0 / quarter };
    synth.block (1000, { noteOn (501) });
    expectPhase (std::fmod (101000.0, quarter) + 1.0, "woken", 100500.0);
}

// A song that is a little slower or faster than it says needs a correction at every block, and still draws
// one level of sample and hold a cycle.
TEST_F (TempoSyncTest, LockedSampleAndHoldDrawsOnceACycle)
{
    constexpr int frames = 480;
    constexpr int blocks = 3000;
    synth.engine.setAdditions ({ false, true });
    synth.set (paramLfoWave, 1.0f);
    synth.set (paramLfoRate, 14.5f / 17.0f); // "1/16"
    for (const double speed : { 0.98, 1.0, 1.02 })
    {
        int levels = 0;
        float held = 0.0f;
        for (int block = 0; block < blocks; ++block)
        {
            play (1234.0 + speed * frames * block, frames);
            const float level = Lfo (synth.lfo ()).tick ();
            levels += level != held ? 1 : 0;
            held = level;
        }
        EXPECT_NEAR (levels, speed * blocks * frames / (quarter / 4.0), 2.0) << speed;
    }
}
