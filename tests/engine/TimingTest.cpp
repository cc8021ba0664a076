// When things happen: events, sleep, delays.
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

// Meant for the first sample: there is none before it.
TEST_F (TimingTest, AnEventSoundsFromTheSampleBeforeItsOffset)
{
    for (const auto& [offset, sample] :
         { std::pair{ 0, 0 }, std::pair{ 1, 0 }, std::pair{ 2, 1 }, std::pair{ 10, 9 }, std::pair{ 64, 63 },
           std::pair{ 65, 64 }, std::pair{ 199, 198 }, std::pair{ 200, 199 }, std::pair{ 201, 200 } })
        EXPECT_EQ (firstSoundOf ({ noteOn (offset) }), sample) << offset;
    synth.block (10, { noteOn (30) }); // what lies behind the block is dropped with it
    synth.block (0, { noteOn (0) });   // a block of no frames, too
    EXPECT_EQ (firstSound (synth.block (100)), 100);
}

TEST_F (TimingTest, AForeignEventHidesTheNext)
{
    const std::pair<std::vector<Event>, int> rows[] = { { { foreign, noteOn (0) }, 200 },
                                                        { { foreign, noteOn (0), noteOn (9) }, 8 },
                                                        { { foreign, foreign, noteOn (9) }, 8 },
                                                        { { foreign }, 200 },
                                                        { { noteOn (5), foreign, noteOn (7) }, 4 } };
    for (const auto& [events, sample] : rows)
        EXPECT_EQ (firstSoundOf (events), sample) << events.size ();
}

TEST_F (TimingTest, ATimedParameterActsAtItsSample)
{
    Event volume;
    volume.kind = Event::Kind::parameter;
    volume.offset = 301;
    volume.index = paramOsc1Wave; // to the pulse
    volume.value = 1.0f;
    TestEngine other;
    other.load (plainProgram ());
    const std::vector<float> changed = synth.block (500, { noteOn (1), volume });
    const std::vector<float> plain = other.block (500, { noteOn (1) });
    EXPECT_EQ (std::mismatch (changed.begin (), changed.end (), plain.begin ()).first - changed.begin (),
               300);
}

TEST_F (TimingTest, MissingBuffersAndListsAreLeftOut)
{
    synth.engine.processEvents (nullptr);
    synth.engine.renderBlock (nullptr, nullptr, 64);
    synth.engine.renderBlock (nullptr, nullptr, -1);
    std::vector<float> left (64, 9.0f);
    std::vector<float> right (64, 8.0f);
    const std::vector<Event> events = { noteOn (0) };
    const EventSpan list (events);
    synth.engine.processEvents (&list);
    synth.engine.renderBlock (nullptr, right.data (), 64);
    EXPECT_EQ (firstSound (right), 0);
    EXPECT_LT (peakOf (right), 1.0f);
    synth.engine.renderBlock (left.data (), right.data (), 64);
    EXPECT_EQ (left, right);
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

// What a block prepares is made up for when a note wakes the engine inside of it.
TEST_F (TimingTest, TheNoteThatWakesSoundsAsSetMeanwhile)
{
    TestEngine awake;
    awake.load (plainProgram ());
    awake.block (1, { midi (0, 0xB0, 1, 1) });
    for (TestEngine* side : { &synth, &awake })
    {
        for (const auto& [index, value] : { std::pair{ paramVolume, 0.3f }, std::pair{ paramOsc2Wave, 1.0f },
                                            std::pair{ paramLfoFilter, 0.6f } })
            side->set (index, value);
        side->block (1);
    }
    awake.lfo () = synth.lfo (); // it was ticked twice
    const std::vector<float> expected = awake.block (200, { noteOn (1) });
    EXPECT_EQ (synth.block (200, { noteOn (1) }), expected);
    EXPECT_GT (peakOf (expected), 0.0f);
}

// Half a second of delay; the cutoff moves with every 11th sample from the note on.
TEST_F (TimingTest, Envelope2WaitsForItsDelayAndTheSameKeyStartsItAnew)
{
    for (const auto& [index, value] : { std::pair{ param2Delay, 0.5f }, std::pair{ param2ToFilter, 1.0f },
                                        std::pair{ paramFilterFreq, 0.0f } })
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
    for (const auto& [lfoWave, interval] :
         { std::pair{ 0.0f, 11 }, std::pair{ 0.79f, 11 }, std::pair{ 0.8f, 3 }, std::pair{ 0.99f, 3 },
           std::pair{ 1.0f, 11 } })
    {
        TestEngine fresh;
        fresh.load (plainProgram ());
        for (const auto& [index, value] :
             { std::pair{ paramLfoWave, lfoWave }, std::pair{ paramLfoFilter, 0.6f },
               std::pair{ paramFilterFreq, 0.3f }, std::pair{ paramLfoRate, 1.0f } })
            fresh.set (index, value);
        fresh.block (1, { noteOn (1) });
        for (int n = 1; n < 100; ++n)
        {
            const float before = fresh.voice (0).filter.coefficient ();
            fresh.block (1);
            const bool moves = n % interval == interval - 1;
            EXPECT_EQ (fresh.voice (0).filterUpdateCounter == 0, moves) << lfoWave << " sample " << n;
            if (lfoWave == 0.0f || lfoWave == 0.8f) // the others stand at times
            {
                EXPECT_EQ (fresh.voice (0).filter.coefficient () != before, moves)
                    << lfoWave << " sample " << n;
            }
        }
    }
}

TEST_F (TimingTest, MutedSourcesRunAndSilentNoiseStands)
{
    synth.set (paramOsc1Wave, 0.4f);
    const auto peek = [] (Oscillator oscillator) { return oscillator.tick (); };
    const Voice before = synth.voice (0);
    EXPECT_EQ (peakOf (synth.block (100, { noteOn (1) })), 0.0f);
    EXPECT_EQ (peek (synth.voice (0).noise), peek (before.noise));
    EXPECT_NE (peek (synth.voice (0).osc1), peek (before.osc1));
    synth.set (paramNoise, 0.5f);
    EXPECT_GT (peakOf (synth.block (100)), 0.0f);
    EXPECT_NE (peek (synth.voice (0).noise), peek (before.noise));
}

TEST_F (TimingTest, RenderedPitch)
{
    struct Row
    {
        float rate;
        int key;
        float wave;
        double length; // samples that the table loops in
        double correction;
    };
    for (const Row& row : { Row{ 44100, 60, 0.5f, 734, 0.441 }, Row{ 44100, 45, 1.0f, 732, 0.396 },
                            Row{ 22050, 60, 0.5f, 734, 0.441 }, Row{ 192000, 57, 1.0f, 732, 0.396 } })
    {
        TestEngine fresh (row.rate);
        fresh.load (plainProgram ());
        fresh.set (paramOsc1Wave, row.wave);
        const double hz = 440.0 * std::exp2 ((row.key - 68) / 12.0) * (1.0 + row.correction / 16.351598) *
                          (4045.476 / 12.0) / row.length;
        EXPECT_NEAR (1200.0 * std::log2 (hz / 440.0), 100.0 * (row.key - 81), 2.0); // an octave below the key
        fresh.block (static_cast<int> (row.rate * 0.4f), { noteOn (1, row.key) });
        const double period = periodOf (fresh.block (static_cast<int> (row.rate * 0.4f)));
        EXPECT_NEAR (static_cast<double> (row.rate) / period, hz, hz * 5e-4) << row.key << " at " << row.rate;
    }
}

TEST_F (TimingTest, EverySampleRateRendersSoundAndStaysFinite)
{
    const std::vector<TestEngine::Program> programs = factoryPrograms ();
    for (const float rate : { 1000.0f, 1001.0f, 5000.0f, 8000.0f, 384000.0f, 1000000.0f })
    {
        TestEngine fresh (rate);
        for (std::size_t n = 0; n < programs.size (); n += 3)
        {
            fresh.load (programs[n]);
            EXPECT_LT (peakOf (fresh.block (1500, { noteOn (1, 36), noteOn (1, 60), noteOn (700, 84),
                                                    midi (900, 0xE0, 0, 127) })),
                       300.0f)
                << rate << " program " << n;
        }
    }
}
