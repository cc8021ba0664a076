// When things happen: events, sleep, delays, sample rates.
#include <cmath>

#include <gtest/gtest.h>

#include "tests/engine/EngineProbe.h"
#include "tests/engine/TestEngine.h"
#include "tests/render/Signals.h"

using namespace engine;
using namespace instrument;
using namespace parameters;

namespace
{
TestEngine::Program withValues (std::initializer_list<std::pair<int, float>> changes)
{
    TestEngine::Program program = plainProgram ();
    for (const auto& [index, value] : changes)
        program[static_cast<std::size_t> (index)] = value;
    return program;
}

TimedMidi noteOn (int offset, int key = 60)
{
    return { offset, 0x90, static_cast<unsigned char> (key), 100 };
}
}

// Meant as it stands: an event sounds one sample ahead of its offset.
TEST (TimingTest, AnEventSoundsFromTheSampleBeforeItsOffset)
{
    struct Row
    {
        int offset;
        int sample;
    };
    for (const Row& row : { Row{ 0, 0 }, Row{ 1, 0 }, Row{ 2, 1 }, Row{ 10, 9 }, Row{ 64, 63 }, Row{ 65, 64 },
                            Row{ 199, 198 }, Row{ 200, 199 }, Row{ 201, 200 }, Row{ -1, 200 } })
    {
        TestEngine synth;
        synth.load (plainProgram ());
        EXPECT_EQ (firstSound (synth.block (200, { noteOn (row.offset) })), row.sample) << row.offset;
    }
}

TEST (TimingTest, AnUnsortedEventStallsTheRestOfItsBlock)
{
    TestEngine stalled;
    TestEngine reference;
    stalled.load (plainProgram ());
    reference.load (plainProgram ());
    const std::vector<TimedMidi> unsorted = { noteOn (10), noteOn (5, 72), noteOn (0, 76), noteOn (20, 79) };
    EXPECT_EQ (stalled.block (100, unsorted), reference.block (100, { noteOn (10) }));
    EXPECT_EQ (stalled.block (100, { noteOn (3, 67) }), reference.block (100, { noteOn (3, 67) }));

    // Offset 0 is due at any time.
    EXPECT_EQ (stalled.block (100, { noteOn (10, 50), noteOn (0, 51) }),
               reference.block (100, { noteOn (10, 50), noteOn (10, 51) }));
}

// Meant as it stands: what follows a non-MIDI event is skipped with it.
TEST (TimingTest, ANonMidiEventHidesTheNext)
{
    const TimedMidi sysEx = { 0, 0xF0, 0, 0, kVstSysExType };
    struct Row
    {
        std::vector<TimedMidi> midi;
        int sample;
    };
    for (const Row& row : { Row{ { sysEx, noteOn (0) }, 50 }, Row{ { sysEx, noteOn (0), noteOn (9) }, 8 },
                            Row{ { sysEx, sysEx, noteOn (9) }, 8 }, Row{ { sysEx }, 50 },
                            Row{ { noteOn (5), sysEx, noteOn (7) }, 4 } })
    {
        TestEngine synth;
        synth.load (plainProgram ());
        EXPECT_EQ (firstSound (synth.block (50, row.midi)), row.sample) << row.midi.size ();
    }
}

TEST (TimingTest, ABlockDropsItsEventsAtItsEnd)
{
    TestEngine synth;
    synth.load (plainProgram ());
    synth.block (10, { noteOn (30) });
    EXPECT_EQ (firstSound (synth.block (100)), 100);
    synth.block (0, { noteOn (0) }); // a block of no frames, too
    EXPECT_EQ (firstSound (synth.block (100)), 100);
}

TEST (TimingTest, StrangeListsAndBuffersDoNoHarm)
{
    TestEngine synth;
    synth.load (plainProgram ());
    synth.engine.processEvents (nullptr);
    VstEvents negative = {};
    negative.numEvents = -5;
    synth.engine.processEvents (&negative);
    VstEvents holes = {};
    holes.numEvents = 2;
    synth.engine.processEvents (&holes);
    synth.engine.renderBlock (nullptr, 64);
    synth.engine.renderBlock (nullptr, -1);

    std::vector<float> right (64, 9.0f);
    float* outputs[] = { nullptr, right.data () };
    EventList list ({ noteOn (0) });
    synth.engine.processEvents (list.get ());
    synth.engine.renderBlock (outputs, 64);
    EXPECT_EQ (firstSound (right), 0);
    EXPECT_LT (peakOf (right), 9.0f);
}

TEST (TimingTest, BothChannelsAreTheSame)
{
    TestEngine synth;
    std::vector<float> left (300, 1.0f);
    std::vector<float> right (300, 2.0f);
    float* outputs[] = { left.data (), right.data () };
    EventList list ({ noteOn (70) });
    synth.engine.processEvents (list.get ());
    synth.engine.renderBlock (outputs, 300);
    EXPECT_EQ (left, right);
    EXPECT_GT (peakOf (left), 0.0f);
}

TEST (TimingTest, SleepsAfterFourSecondsOfSilence)
{
    TestEngine synth (8000.0f);
    synth.load (plainProgram ());
    synth.set (param1Decay, 0.3f);
    EXPECT_TRUE (synth.engine.isAsleep ());
    synth.block (400, { noteOn (1), { 51, 0x80, 60, 0 } });
    ASSERT_FALSE (EngineProbe::voice (synth.engine, 0).ampEnv.isIdle ());
    while (!EngineProbe::voice (synth.engine, 0).ampEnv.isIdle ())
        synth.block (1);
    synth.block (32000);
    EXPECT_FALSE (synth.engine.isAsleep ());
    synth.block (1);
    EXPECT_TRUE (synth.engine.isAsleep ());
}

TEST (TimingTest, AnyMidiEventWakesAndStartsTheCountAnew)
{
    for (const int status : { 0x80, 0x90, 0xA0, 0xB0, 0xC0, 0xD0, 0xE0, 0xF0 })
    {
        TestEngine synth (8000.0f);
        synth.block (20, { { 0, static_cast<unsigned char> (status), 1, 1 } });
        EXPECT_FALSE (synth.engine.isAsleep ()) << status;
    }
    TestEngine synth (8000.0f);
    synth.block (20, { { 0, 0xF0, 1, 1, kVstSysExType } });
    EXPECT_TRUE (synth.engine.isAsleep ());
    synth.block (20000, { { 0, 0xB0, 1, 1 } });
    synth.block (20000, { { 1, 0xB0, 1, 1 } });
    EXPECT_FALSE (synth.engine.isAsleep ());
}

// What a block prepares is made up for when a note wakes the engine inside of it.
TEST (TimingTest, TheNoteThatWakesSoundsAsSetMeanwhile)
{
    TestEngine asleep;
    TestEngine awake;
    for (TestEngine* synth : { &asleep, &awake })
        synth->load (plainProgram ());
    awake.block (1, { { 0, 0xB0, 1, 1 } });
    for (TestEngine* synth : { &asleep, &awake })
        synth->load (
            withValues ({ { paramVolume, 0.3f }, { paramOsc2Wave, 1.0f }, { paramLfoFilter, 0.6f } }));
    awake.block (1); // takes one LFO step more
    asleep.block (1);
    EngineProbe::lfo (awake.engine) = EngineProbe::lfo (asleep.engine);
    awake.engine.noteEvent (127, 1, false); // wakes nothing that is awake
    const std::vector<float> expected = awake.block (200, { noteOn (1) });
    EXPECT_EQ (asleep.block (200, { noteOn (1) }), expected);
    EXPECT_GT (peakOf (expected), 0.0f);
}

// Half a second of delay; the cutoff moves with every 11th sample from the note on.
TEST (TimingTest, Envelope2WaitsForItsDelay)
{
    TestEngine synth;
    synth.load (withValues ({ { param2Delay, 0.5f }, { param2ToFilter, 1.0f }, { paramFilterFreq, 0.0f } }));
    const auto cutoff = [&synth] { return EngineProbe::voice (synth.engine, 0).filter.cutoffHz (); };
    synth.block (22054, { noteOn (1) });
    EXPECT_NEAR (cutoff (), 100.0f, 1e-3f);
    synth.block (1);
    EXPECT_GT (cutoff (), 5000.0f);
    synth.block (500, { noteOn (1) }); // the same key starts the delay anew
    EXPECT_NEAR (cutoff (), 100.0f, 1e-3f);
}

TEST (TimingTest, CutoffMovesEvery11SamplesOrEvery3WithTheNoiseShape)
{
    for (const auto& [lfoWave, interval] :
         { std::pair{ 0.0f, 11 }, std::pair{ 0.79f, 11 }, std::pair{ 0.8f, 3 }, std::pair{ 0.99f, 3 },
           std::pair{ 1.0f, 11 } })
    {
        TestEngine synth;
        synth.load (
            withValues ({ { paramLfoWave, lfoWave }, { paramLfoFilter, 1.0f }, { paramFilterFreq, 0.3f } }));
        synth.block (1, { noteOn (1) });
        std::vector<int> moves;
        float last = EngineProbe::voice (synth.engine, 0).filter.coefficient ();
        for (int n = 1; n < 100; ++n)
        {
            synth.block (1);
            const float now = EngineProbe::voice (synth.engine, 0).filter.coefficient ();
            if (now != last)
                moves.push_back (n);
            last = now;
        }
        ASSERT_FALSE (moves.empty ());
        for (std::size_t n = 0; n < moves.size (); ++n)
            EXPECT_EQ (moves[n], interval * static_cast<int> (n + 1) - 1) << lfoWave;
    }
}

TEST (TimingTest, MutedSourcesRunAndSilentNoiseStands)
{
    TestEngine synth;
    synth.load (withValues ({ { paramOsc1Wave, 0.4999f } }));
    Voice& voice = EngineProbe::voice (synth.engine, 0);
    const auto peek = [] (Oscillator oscillator) { return oscillator.tick (); };
    const float noise = peek (voice.noise);
    const float osc1 = peek (voice.osc1);
    EXPECT_EQ (peakOf (synth.block (100, { noteOn (1) })), 0.0f); // whatever its volume says
    EXPECT_EQ (peek (voice.noise), noise);
    EXPECT_NE (peek (voice.osc1), osc1);
    synth.set (paramNoise, 0.5f);
    EXPECT_GT (peakOf (synth.block (100)), 0.0f);
    EXPECT_NE (peek (voice.noise), noise);
}

TEST (TimingTest, RenderedPitch)
{
    struct Row
    {
        float rate;
        int key;
        float wave;
        float range;
    };
    for (const Row& row :
         { Row{ 44100, 60, 0.5f, 0.5f }, Row{ 44100, 45, 1.0f, 0.5f }, Row{ 22050, 60, 0.5f, 0.5f },
           Row{ 96000, 72, 1.0f, 0.75f }, Row{ 192000, 57, 0.5f, 0.25f }, Row{ 48000, 81, 0.5f, 0.0f },
           Row{ 8000, 48, 1.0f, 1.0f } })
    {
        TestEngine synth (row.rate);
        synth.load (withValues ({ { paramOsc1Wave, row.wave }, { paramOsc1Range, row.range } }));
        const int semitones = 12 * static_cast<int> (row.range * 4.0f) - 24;
        const double expected =
            row.wave == 1.0f ? pulseHz (row.key + semitones) : sawHz (row.key + semitones);
        synth.block (2000, { noteOn (1, row.key) });
        const std::vector<float> sound = synth.block (static_cast<int> (row.rate * 0.4f));
        EXPECT_NEAR (frequencyOf (sound, static_cast<double> (row.rate), expected), expected, expected * 5e-4)
            << row.key << " at " << row.rate;
    }
}

// Half of the sounding frequency is an octave below the key, give or take a few cents.
TEST (TimingTest, TheTablesSoundAnOctaveBelowTheKey)
{
    for (const double hz : { sawHz (69), pulseHz (69) })
        EXPECT_NEAR (1200.0 * std::log2 (hz / 220.0), 0.0, 2.0);
}

TEST (TimingTest, ANewSampleRateActsBeforeTheNextSample)
{
    TestEngine synth;
    synth.load (plainProgram ());
    synth.block (2000, { noteOn (1) });
    synth.rate = 96000.0f;
    synth.block (4000);
    const double hz = sawHz (60);
    EXPECT_NEAR (frequencyOf (synth.block (40000), 96000.0, hz), hz, hz * 5e-4);
    // A release keeps its time as well.
    synth.set (param1Decay, 0.3f);
    synth.block (1, { { 1, 0x80, 60, 0 } });
    int samples = 0;
    while (!EngineProbe::voice (synth.engine, 0).ampEnv.isIdle ())
    {
        synth.block (1);
        ++samples;
    }
    EXPECT_NEAR (samples, 14.0 * 0.096 * 0.096 * 96000.0, 500.0);
}

TEST (TimingTest, EverySampleRateRendersSoundAndStaysFinite)
{
    const std::vector<TestEngine::Program> programs = factoryPrograms ();
    for (const float rate : { 1000.0f, 1001.0f, 5000.0f, 8000.0f, 384000.0f, 1000000.0f })
    {
        TestEngine synth (rate);
        for (std::size_t n = 0; n < programs.size (); n += 3)
        {
            synth.load (programs[n]);
            const std::vector<float> sound = synth.block (
                1500, { noteOn (1, 36), noteOn (1, 60), noteOn (700, 84), { 900, 0xE0, 0, 127 } });
            for (const float sample : sound)
                ASSERT_TRUE (std::isfinite (sample) && std::abs (sample) < 300.0f)
                    << rate << " program " << n;
        }
    }
}
