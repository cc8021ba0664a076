// When things happen: events, sleep, delays.
#include <limits>

#include <gtest/gtest.h>

#include "tests/engine/TestEngine.h"
#include "tests/support/Signals.h"

using namespace engine;
using namespace parameters;

namespace
{
constexpr Event foreign = {}; // at offset 0

class TimingTest : public testing::Test
{
protected:
    TimingTest () { synth.load (plainProgram ()); }

    static int firstSoundOf (const std::vector<Event>& events, int frames = 200)
    {
        TestEngine fresh;
        fresh.load (plainProgram ());
        return firstSound (fresh.block (frames, events));
    }

    TestEngine synth;
};
}

TEST_F (TimingTest, AnEventSoundsFromTheSampleBeforeItsOffset)
{
    using Row = std::tuple<int, int>;
    for (const auto& [offset, sample] :
         { Row{ 0, 0 }, Row{ 1, 0 }, Row{ 2, 1 }, Row{ 10, 9 }, Row{ 64, 63 }, Row{ 65, 64 },
           Row{ 199, 198 },                                  // and then:
           Row{ 200, 200 }, Row{ 201, 200 }, Row{ -5, 0 } }) // the block has no sample for these
        EXPECT_EQ (firstSoundOf ({ noteOn (offset) }), sample) << offset;
    synth.block (0, { noteOn (0) }); // nor has a block of no frames
    EXPECT_EQ (firstSound (synth.block (100)), 100);
}

TEST_F (TimingTest, ALateEventActsAtOnce)
{
    TestEngine inOrder;
    inOrder.load (plainProgram ());
    EXPECT_EQ (
        synth.block (100, { noteOn (10), noteOn (5, 72), noteOn (0, 76), noteOff (3), noteOn (20, 79) }),
        inOrder.block (100,
                       { noteOn (10), noteOn (10, 72), noteOn (10, 76), noteOff (10), noteOn (20, 79) }));
    EXPECT_EQ (synth.keys, inOrder.keys);
}

// A note right behind a program change sounds as in an engine that had the program before, and so does a
// value that falls on the same sample, for the program goes first.
TEST_F (TimingTest, AProgramChangeGoesBeforeWhatFallsOnItsSample)
{
    const std::vector<Event> change = { midi (0, 0xC0, 60, 0), noteOn (0) };
    const std::vector<Event> withVolume = { parameterAt (0, paramVolume, 0.25), change[0], change[1] };
    for (const auto& events : { change, withVolume })
    {
        TestEngine changed;
        TestEngine selected;
        for (TestEngine* side : { &changed, &selected })
            side->programs = factoryPrograms ();
        selected.programChange (60);
        if (events.size () == 3)
            selected.set (paramVolume, 0.25f);
        EXPECT_EQ (changed.block (1500, events), selected.block (1500, { noteOn (0) })) << events.size ();
    }
}

// The first note after loading sounds as the same note does later: its filter and its oscillators' start are
// those of the program, not of the engine's making.
TEST_F (TimingTest, TheFirstNoteHasItsOwnFilter)
{
    for (const float cutoff : { 0.0f, 0.2f, 0.7f })
    {
        TestEngine fresh;
        TestEngine::Program program = plainProgram ();
        program[paramFilterFreq] = cutoff;
        fresh.load (program);
        fresh.block (12, { noteOn (1) });
        EXPECT_NEAR (fresh.voice (0).filter.cutoffHz (), cutoff * cutoff * 6460.0f + 100.0f, 0.1f) << cutoff;
    }
    TestEngine early;
    TestEngine late;
    late.rate = 96000.0f; // in a host that tells its rate after loading
    late.block (1);
    late.rate = 44100.0f;
    for (TestEngine* side : { &early, &late })
        side->load (plainProgram ());
    EXPECT_EQ (early.block (500, { noteOn (1) }), late.block (500, { noteOn (1) }));
}

TEST_F (TimingTest, AForeignEventHidesTheNext)
{
    using Row = std::tuple<std::vector<Event>, int>;
    for (const auto& [events, sample] :
         { Row{ { foreign, noteOn (0) }, 200 }, Row{ { foreign, noteOn (0), noteOn (9) }, 8 },
           Row{ { foreign, foreign, noteOn (9) }, 8 }, Row{ { noteOn (5), foreign, noteOn (7) }, 4 } })
        EXPECT_EQ (firstSoundOf (events), sample) << events.size ();
}

TEST_F (TimingTest, SleepsAfterFourSecondsOfSilenceAndAnyMidiEventWakes)
{
    TestEngine slow (8000.0f);
    slow.load (plainProgram ());
    EXPECT_TRUE (slow.engine.isAsleep ());
    slow.block (400, { noteOn (1), noteOff (51) });
    while (!slow.voice (0).ampEnv.isIdle ())
        slow.block (1);
    slow.block (20000);
    slow.block (20000, { midi (1, 0xB0, 1, 1) }); // starts the count anew
    slow.block (12000);
    EXPECT_FALSE (slow.engine.isAsleep ());
    slow.block (1);
    EXPECT_TRUE (slow.engine.isAsleep ());
    slow.block (20, { foreign });
    EXPECT_TRUE (slow.engine.isAsleep ());
    for (const int status : { 0x80, 0x90, 0xA0, 0xB0, 0xC0, 0xD0, 0xE0, 0xF0 })
    {
        TestEngine fresh (8000.0f);
        fresh.block (20, { midi (0, status, 1, 1) });
        EXPECT_FALSE (fresh.engine.isAsleep ()) << status;
    }
}

// Half a second of delay; the cutoff moves with every 11th sample from the note on.
TEST_F (TimingTest, Envelope2WaitsForItsDelayAndTheSameKeyStartsItAnew)
{
    using Row = std::tuple<int, float>;
    for (const auto& [index, value] :
         { Row{ param2Delay, 0.5f }, Row{ param2ToFilter, 1.0f }, Row{ paramFilterFreq, 0.0f } })
        synth.set (index, value);
    synth.block (400000, { noteOn (1) }); // the base of the cutoff comes to rest
    const auto envelope2 = [this] { return synth.voice (0).filterEnv.state (); };
    for (int strike = 0; strike < 2; ++strike)
    {
        synth.block (22050, { noteOn (1) });
        EXPECT_EQ (envelope2 (), Envelope::State::attack) << strike;
        EXPECT_NEAR (synth.voice (0).filter.cutoffHz (), 100.0f, 5.0f) << strike;
        synth.block (12);
        EXPECT_NE (envelope2 (), Envelope::State::attack) << strike;
        EXPECT_GT (synth.voice (0).filter.cutoffHz (), 3000.0f) << strike;
    }
}

TEST_F (TimingTest, CutoffMovesEvery11SamplesOrEvery3WithTheNoiseShape)
{
    using Row = std::tuple<float, int>;
    for (const auto& [lfoWave, interval] :
         { Row{ 0.0f, 11 }, Row{ 0.79f, 11 }, Row{ 0.8f, 3 }, Row{ 0.99f, 3 }, Row{ 1.0f, 11 } })
    {
        TestEngine fresh;
        fresh.load (plainProgram ());
        fresh.set (paramLfoWave, lfoWave);
        fresh.block (1, { noteOn (0) });
        for (int n = 1; n < 50; ++n)
        {
            fresh.block (1);
            EXPECT_EQ (fresh.voice (0).filterUpdateCounter == 0, n % interval == interval - 1)
                << lfoWave << " " << n;
        }
    }
}

// No sample that is no number leaves a block, and the voice sounds again with its next note.
TEST_F (TimingTest, WhatIsNoNumberHeals)
{
    synth.block (100, { noteOn (0) });
    synth.voice (0).filter.process (std::numeric_limits<float>::quiet_NaN ());
    EXPECT_EQ (synth.block (100), std::vector<float> (100, 0.0f));
    const std::vector<float> healed = synth.block (2000, { noteOn (0) });
    EXPECT_TRUE (isFinite (healed));
    EXPECT_GT (peakOf (healed), 0.1f);
}
