// What parameters do to the engine.
#include <cmath>
#include <limits>

#include <gtest/gtest.h>

#include "tests/engine/EngineProbe.h"
#include "tests/engine/TestEngine.h"

using namespace engine;
using namespace parameters;

namespace
{
using State = Envelope::State;

// Samples that a copy of the envelope needs to get out of `state`.
int samplesIn (Envelope e, State state)
{
    int n = 0;
    for (; e.state () == state && n < 10000000; ++n)
        e.tick ();
    return n;
}

Envelope attacking (Envelope e)
{
    e.kill ();
    e.trigger (127);
    return e;
}

Envelope decaying (const Envelope& e)
{
    Envelope at = attacking (e);
    while (at.state () == State::attack)
        at.tick ();
    return at;
}

int lfoPeriod (Lfo lfo)
{
    return static_cast<int> (std::lround (lfo.cycleSamples ()));
}
}

TEST (MappingTest, VoicesInStepsOfTwo)
{
    struct Row
    {
        float value;
        int voices;
    };
    TestEngine synth;
    synth.set (paramVoices, 0.5f);
    for (const Row& row : { Row{ 0.0f, 2 }, Row{ 1.0f, 16 }, Row{ 0.13f, 2 }, Row{ 0.14f, 4 }, Row{ 0.5f, 8 },
                            Row{ 0.94f, 16 }, Row{ 0.93f, 14 }, Row{ 3.0f, 14 }, Row{ -1.0f, 14 } })
    {
        synth.set (paramVoices, row.value); // the last two name no count
        EXPECT_EQ (synth.engine.voicesInUse (), row.voices) << row.value;
    }
}

TEST (MappingTest, GlideMonoAndVoicesShareTheVoiceCount)
{
    TestEngine synth;
    synth.set (paramVoices, 0.3f);
    EXPECT_EQ (synth.engine.voicesInUse (), 6);
    synth.block (64, { { 0, 0x90, 60, 100 } });
    EXPECT_FALSE (EngineProbe::voice (synth.engine, 0).ampEnv.isIdle ());
    synth.set (paramGlideMono, 0.2f);
    EXPECT_EQ (synth.engine.voicesInUse (), 1);
    EXPECT_TRUE (EngineProbe::voice (synth.engine, 0).ampEnv.isIdle ());
    synth.set (paramVoices, 0.5f); // stays mono, but is remembered
    EXPECT_EQ (synth.engine.voicesInUse (), 1);
    synth.set (paramGlideMono, 0.0f);
    EXPECT_EQ (synth.engine.voicesInUse (), 8);
    synth.set (paramGlideMono, 0.1f);
    synth.set (paramVoices, 5.0f); // names no count
    synth.set (paramGlideMono, 0.0f);
    EXPECT_EQ (synth.engine.voicesInUse (), 1);
}

TEST (MappingTest, VoicesKillWhatSoundsAndTheSameValueDoesNot)
{
    TestEngine synth;
    synth.block (64, { { 0, 0x90, 60, 100 } });
    synth.set (paramVoices, 1.0f);
    EXPECT_FALSE (EngineProbe::voice (synth.engine, 0).ampEnv.isIdle ());
    synth.set (paramVoices, 0.9f);
    EXPECT_TRUE (EngineProbe::voice (synth.engine, 0).ampEnv.isIdle ());
}

TEST (MappingTest, VolTypeActsOnExactValues)
{
    TestEngine synth;
    for (const auto& [value, gain] :
         { std::pair{ 0.0f, 1.6f }, std::pair{ 0.5f, 1.6f }, std::pair{ 1.0f, 1.0f },
           std::pair{ 2.0f, 0.52f }, std::pair{ 1.5f, 0.52f } })
    {
        synth.set (paramVolType, value);
        EXPECT_EQ (EngineProbe::volTypeGain (synth.engine), gain) << value;
    }
}

TEST (MappingTest, EnvelopeKnobs)
{
    TestEngine synth;
    synth.load (plainProgram ());
    synth.set (param1Sustain, 0.0f);
    for (const double v : { 0.0, 0.25, 0.6, 1.0 })
    {
        const auto value = static_cast<float> (v);
        for (const int index : { param1Attack, param1Decay, param2Attack, param2Decay })
            synth.set (index, value);
        const Voice& voice = EngineProbe::voice (synth.engine, 16); // the spare slot follows, too
        const auto expect = [v] (int samples, double seconds, const char* what) {
            EXPECT_NEAR (samples, std::max (seconds * 44100.0, 1.0), 2.0 + seconds * 441.0)
                << what << " " << v;
        };
        const double attack = v * v + 0.009;
        const double decay = v * v + 0.006;
        expect (samplesIn (attacking (voice.ampEnv), State::attack), attack * attack * 10.0, "1-Attack");
        expect (samplesIn (decaying (voice.ampEnv), State::decay), decay * decay * 10.0, "1-Decay");
        expect (samplesIn (attacking (voice.filterEnv), State::attack), v * v * v * v * 10.0, "2-Attack");
        expect (samplesIn (decaying (voice.filterEnv), State::decay), v * v * v * v * 10.0, "2-Decay");
        Envelope released = decaying (voice.ampEnv); // one knob for decay and release
        released.release ();
        expect (samplesIn (released, State::release), decay * decay * 14.0, "1-Release");
    }
}

TEST (MappingTest, SustainIsSquaredAndLoopsAtZero)
{
    TestEngine synth;
    synth.load (plainProgram ());
    synth.set (param1Sustain, 0.5f);
    Envelope e = decaying (EngineProbe::voice (synth.engine, 0).ampEnv);
    while (e.state () == State::decay)
        e.tick ();
    EXPECT_EQ (e.state (), State::sustain);
    EXPECT_NEAR (e.level (), 0.25f, 1e-3);

    const auto afterDecay = [&synth]
    {
        Envelope filterEnv = decaying (EngineProbe::voice (synth.engine, 0).filterEnv);
        while (filterEnv.state () == State::decay)
            filterEnv.tick ();
        return filterEnv.state ();
    };
    EXPECT_EQ (afterDecay (), State::attack); // envelope 2 cycles
    synth.set (param2Delay, 0.1f);
    EXPECT_EQ (afterDecay (), State::sustain); // but not behind a delay
}

TEST (MappingTest, LfoRateByKnobOrTempo)
{
    TestEngine synth;
    synth.set (paramLfoRate, 0.0f);
    EXPECT_NEAR (lfoPeriod (EngineProbe::lfo (synth.engine)), 6 * 44100, 2);
    synth.set (paramLfoRate, 1.0f);
    EXPECT_NEAR (lfoPeriod (EngineProbe::lfo (synth.engine)), 441, 2);
    synth.set (paramLfoRate, 0.5f); // cubed: 0.125
    EXPECT_NEAR (lfoPeriod (EngineProbe::lfo (synth.engine)), 6.0 * 44100.0 / (599.0 / 8.0 + 1.0), 2);
    synth.set (paramLfoBmpSync, 1.0f);
    synth.set (paramLfoRate, 0.0f); // the knob leaves the rate now
    EXPECT_NEAR (lfoPeriod (EngineProbe::lfo (synth.engine)), 6.0 * 44100.0 / (599.0 / 8.0 + 1.0), 2);
    synth.set (paramLfoBmpSync, 0.0f);
    EXPECT_NEAR (lfoPeriod (EngineProbe::lfo (synth.engine)), 6 * 44100, 2);
}

TEST (MappingTest, SyncDivisions)
{
    // Sixty times the length in quarter notes of "32/4", "16/4", ...
    const double quarters[] = { 32, 16, 8,   7,   6,       5,    4,       3.5,   3,
                                2,  1,  0.5, 0.4, 1.0 / 3, 0.25, 1.0 / 6, 0.125, 1.0 / 9 };
    TestEngine synth;
    for (int k = 0; k < 18; ++k)
    {
        synth.set (paramLfoRate, k == 17 ? 1.0f : (static_cast<float> (k) + 0.5f) / 17.0f);
        EXPECT_NEAR (static_cast<double> (EngineProbe::syncDivision (synth.engine)), 60.0 * quarters[k], 1e-4)
            << k;
    }
}

TEST (MappingTest, WaveSelectsTheTable)
{
    TestEngine synth;
    for (const auto& [value, mode] :
         { std::pair{ 1.0f, Oscillator::Mode::cycleSelect },
           std::pair{ 0.99f, Oscillator::Mode::singleCycle },
           std::pair{ 1.0f, Oscillator::Mode::cycleSelect }, std::pair{ 0.5f, Oscillator::Mode::singleCycle },
           std::pair{ 0.49f, Oscillator::Mode::singleCycle } })
    {
        synth.set (paramOsc1Wave, value);
        synth.set (paramOsc2Wave, value);
        EXPECT_EQ (EngineProbe::voice (synth.engine, 16).osc1.mode (), mode) << value;
        EXPECT_EQ (EngineProbe::voice (synth.engine, 16).osc2.mode (), mode) << value;
    }
}

TEST (MappingTest, PulseWidthSelectsACycleOfOscillator1)
{
    TestEngine synth;
    synth.set (paramHighQuality, 0.0f);
    synth.set (paramOsc2Wave, 1.0f);
    const auto readsLike = [] (const Oscillator& oscillator, float cycle)
    {
        Oscillator read = oscillator;
        Oscillator reference = oscillator;
        reference.setPulseWidth (cycle);
        for (int n = 0; n < 300; ++n)
        {
            if (read.tickFull () != reference.tickFull ())
                return false;
        }
        return true;
    };
    const Voice& voice = EngineProbe::voice (synth.engine, 3);
    for (const auto& [width, cycle] : { std::pair{ 0.0f, 200.0f }, std::pair{ 1.0f, 0.0f },
                                        std::pair{ 0.5f, 100.0f }, std::pair{ 0.377f, 124.0f } })
    {
        synth.set (paramOsc1Wave, 0.5f);
        synth.set (paramOsc1PW, width); // kept for when the pulse comes
        synth.set (paramOsc1Wave, 1.0f);
        EXPECT_TRUE (readsLike (voice.osc1, cycle)) << width;
        synth.set (paramOsc1PW, 0.25f);
        EXPECT_TRUE (readsLike (voice.osc1, 150.0f));
        EXPECT_TRUE (readsLike (voice.osc2, 0.0f)); // always the first
    }
    EXPECT_FALSE (readsLike (voice.osc1, 149.0f));
}

TEST (MappingTest, FilterSwitches)
{
    TestEngine synth;
    synth.set (paramHighQuality, 1.0f);
    const auto filter = [&synth] { return EngineProbe::voice (synth.engine, 16).filter; };
    // What passes: a constant, and an alternation from sample to sample.
    const auto gain = [] (Filter f, bool alternates)
    {
        float out = 0.0f;
        f.setKeyTrack (false);
        f.setCutoff (0.5f);
        for (int n = 0; n < 5000; ++n)
            out = f.process (alternates && n % 2 == 1 ? -1.0f : 1.0f);
        return std::abs (out);
    };
    struct Row
    {
        float type;
        bool passesLow;
        bool passesHigh;
    };
    for (const Row& row : { Row{ 0.0f, true, false }, Row{ 0.49f, true, false }, Row{ 0.5f, false, false },
                            Row{ 0.99f, false, false }, Row{ 1.0f, false, true } })
    {
        synth.set (paramFilterType, row.type);
        EXPECT_EQ (gain (filter (), false) > 0.5f, row.passesLow) << row.type;
        EXPECT_EQ (gain (filter (), true) > 0.5f, row.passesHigh) << row.type;
    }
    synth.set (paramFilterType, 0.0f);

    const float plain = gain (filter (), true);
    synth.set (paramSmothFilt, 0.01f); // on
    EXPECT_LT (gain (filter (), true), 0.5f * plain);
    synth.set (paramSmothFilt, 0.0f);
    EXPECT_EQ (gain (filter (), true), plain);

    for (const auto& [value, tracks] : { std::pair{ 0.3f, true }, std::pair{ 0.0f, false } })
    {
        synth.set (paramFilterKeyTrak, value);
        Filter f = filter ();
        f.setKey (127);
        f.setCutoff (0.1f);
        EXPECT_EQ (f.cutoffHz () > 1000.0f, tracks);
    }

    // The drive stage, and half way nothing changes.
    for (const auto& [value, drives] : { std::pair{ 0.0f, true }, std::pair{ 0.5f, true },
                                         std::pair{ 1.0f, false }, std::pair{ 0.5f, false } })
    {
        synth.set (paramHighQuality, value);
        Filter f = filter ();
        f.setType (filterCore::highPass);
        EXPECT_EQ (f.process (100.0f) < 50.0f, drives) << value;
    }
}

// No value of any parameter, in any order, may bring in a NaN or an infinity.
TEST (MappingTest, StrangeValuesDoNoHarm)
{
    constexpr float infinity = std::numeric_limits<float>::infinity ();
    const float values[] = { infinity, -infinity, 1e38f, -1e38f, 1e-45f, -0.0f, 2.0f, -1.0f, 0.5f };
    TestEngine synth;
    int n = 0;
    for (int index = -2; index < 60; ++index)
    {
        for (const float value : values)
        {
            synth.set (index, value);
            const auto key = static_cast<unsigned char> (30 + n++ % 60);
            for (const float sample : synth.block (40, { { 0, 0x90, key, 100 }, { 20, 0xE0, 0, key } }))
                ASSERT_TRUE (std::isfinite (sample) && std::abs (sample) < 1000.0f) << index << " " << value;
        }
    }
}
