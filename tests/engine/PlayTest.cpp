// Playing: keys and voices, mono, bend, controllers, levels, the panel's keyboard, and what is told of it.
#include "tests/engine/RampTest.h"
#include "tests/support/Signals.h"

using namespace engine;
using namespace parameters;

namespace
{
using Keys = std::vector<std::pair<char, int>>;

class PlayTest : public RampTest
{
protected:
    int sounding ()
    {
        int voices = 0;
        for (int v = 0; v < voiceSlots; ++v)
            voices += state (v) != State::idle ? 1 : 0;
        return voices;
    }
    void expectPitch (double hz, int voice = 0)
    {
        EXPECT_NEAR (hzOf (synth.voice (voice).osc1, synth.rate), hz, 0.01);
        EXPECT_NEAR (hzOf (synth.voice (voice).osc2, synth.rate), hz, 0.01);
    }
};
}

TEST_F (PlayTest, EachKeyTakesAVoiceAndAStruckKeyItsOwn)
{
    synth.set (param1Decay, 0.3f);
    synth.set (param2Decay, 0.6f);
    synth.set (param2Attack, 0.3f);
    for (const int key : { 60, 64, 67, 64 })
        press (key);
    EXPECT_EQ (sounding (), 3);
    expectPitch (keyHz (65) * saw, 1); // the tables sound a semitone above the key
    letGo (64);
    press (67, 0); // velocity 0 lets go
    letGo (99);    // was never down
    using Row = std::tuple<int, State>;
    for (const auto& [voice, expected] :
         { Row{ 0, State::sustain }, Row{ 1, State::release }, Row{ 2, State::release } })
        EXPECT_EQ (state (voice), expected) << voice;
    EXPECT_EQ (synth.voice (0).filterEnv.state (), State::attack);
    EXPECT_EQ (synth.voice (1).filterEnv.state (), State::release) << "envelope 2 is released with the key";
    press (62);
    EXPECT_EQ (state (3), State::sustain) << "voices in their release are not taken while others are idle";
    EXPECT_EQ (
        synth.keys,
        (Keys{ { '+', 60 }, { '+', 64 }, { '+', 67 }, { '+', 64 }, { '-', 64 }, { '-', 67 }, { '+', 62 } }));
}

TEST_F (PlayTest, MonoLegatoReturnsToTheKeyStillHeld)
{
    synth.set (paramGlideMono, 0.01f); // four samples
    synth.set (param1Decay, 0.3f);
    synth.set (paramFilterKeyTrak, 1.0f);
    synth.set (paramFilterFreq, 0.0f);
    const auto expectKey = [this] (int key)
    {
        synth.block (200000); // until the base of the cutoff has come to rest
        expectPitch (keyHz (key + 1) * saw);
        const double tracked = 0.02 * 0.06 * keyHz (key - 48) * 6460.0;
        EXPECT_NEAR (synth.voice (0).filter.cutoffHz (), tracked, 0.1 * tracked) << key;
        EXPECT_EQ (state (0), State::sustain);
    };
    press (84, 100);
    synth.voice (0).ampEnv.setSustain (0.9f); // would be heard at a retrigger
    expectKey (84);
    press (96, 20);
    expectKey (96);
    press (91);
    letGo (96); // not the newest
    expectKey (91);
    letGo (91);
    expectKey (84);
    EXPECT_FLOAT_EQ (synth.voice (0).ampEnv.level (), 0.999f + 0.001f * (1.0f - 0.38f))
        << "never retriggered";
    letGo (84);
    EXPECT_EQ (state (0), State::release);
    EXPECT_EQ (sounding (), 1);
}

TEST_F (PlayTest, GlideAutoGlidesBetweenOverlappingNotesOnly)
{
    using Row = std::tuple<bool, bool, double>; // switch on, notes overlap, seconds of the glide
    for (const auto& [automatic, overlaps, seconds] : { Row{ true, true, 0.81 }, Row{ true, false, 0.0 },
                                                        Row{ false, true, 0.81 }, Row{ false, false, 0.81 } })
    {
        synth.set (paramGlideMono, 0.0f);
        synth.set (paramGlideAuto, automatic ? 1.0f : 0.0f);
        synth.set (paramGlideMono, 0.9f);
        press (48);
        if (!overlaps)
            letGo (48);
        press (60, 100, 4410);
        const double share = seconds > 0.0 ? 0.1 / seconds : 1.0;
        for (const Oscillator& oscillator : { synth.voice (0).osc1, synth.voice (0).osc2 })
            EXPECT_NEAR (hzOf (oscillator, 44100.0f) / saw, keyHz (49) + share * (keyHz (61) - keyHz (49)),
                         0.3);
    }
}

// Only the upper byte counts, and its middle is 63.5. The bend's part is not corrected.
TEST_F (PlayTest, PitchBendReachesTwoKeysAndEveryVoice)
{
    press (60);
    using Row = std::tuple<int, double>;
    for (const auto& [data, share] : { Row{ 127, 1.0 }, Row{ 64, 1.0 / 127.0 }, Row{ 0, -1.0 } })
    {
        synth.block (1, { midi (0, 0xE3, 127 - data, data) });
        const double other = keyHz (share > 0 ? 63 : 59);
        expectPitch (keyHz (61) * saw + std::abs (share) * (other - keyHz (61)));
    }
    press (64); // one that was silent meanwhile
    expectPitch (keyHz (65) * saw + keyHz (63) - keyHz (65), 1);
}

TEST_F (PlayTest, ControllersReachTheInstrumentAndAllNotesOffKeepsTheTails)
{
    synth.set (param1Decay, 0.4f);
    synth.set (param2Decay, 0.6f);
    synth.set (param2Attack, 0.3f);
    press (60);
    press (64);
    synth.keys.clear ();
    synth.block (64, { midi (1, 0xB7, 74, 127), midi (2, 0xB0, 1, 0), midi (3, 0xB0, 123, 0) });
    EXPECT_EQ (synth.controllers,
               (std::vector<std::pair<std::uint32_t, float>>{ { 74, 1.0f }, { 1, 0.0f }, { 123, 0.0f } }));
    for (const int voice : { 0, 1 })
    {
        EXPECT_EQ (state (voice), State::release);
        EXPECT_EQ (synth.voice (voice).filterEnv.state (), State::release);
    }
    letGo (60); // is forgotten
    press (60); // and gets a new voice
    EXPECT_EQ (sounding (), 3);
    EXPECT_EQ (synth.keys, (Keys{ { '0', 0 }, { '+', 60 } }));
}

// One voice through the open filter without drive: table x levels x 0.16, constant part included.
TEST_F (PlayTest, LevelsMultiply)
{
    TestEngine real;
    real.load (plainProgram ());
    real.block (2000, { noteOn (1, 48) });
    const double full = levelOf (real.block (44100));
    EXPECT_NEAR (full, levelOf (recordedWaves ().saw.samples) * 0.16 * 0.999, 0.002);
    using Row = std::tuple<int, float, double>;
    for (const auto& [index, value, factor] :
         { Row{ paramVolume, 0.5f, 0.5 }, Row{ paramVolume, 1.0f, 1.0 }, Row{ paramVolType, 0.0f, 1.6 },
           Row{ paramVolType, 0.5f, 1.6 }, Row{ paramVolType, 2.0f, 0.52 }, Row{ paramVolType, 1.5f, 0.52 },
           Row{ paramVolType, 1.0f, 1.0 }, Row{ paramOsc1Vol, 0.25f, 0.25 }, Row{ paramOsc1Vol, 1.0f, 1.0 },
           Row{ paramOsc1Wave, 0.4999f, 0.0 }, Row{ paramOsc1Wave, 0.5f, 1.0 }, Row{ -11, 64, 64.0 / 127.0 },
           Row{ -11, 0, 0.0 }, Row{ -11, 127, 1.0 } }) // expression
    {
        if (index < 0)
            real.block (1, { midi (0, 0xB0, 11, static_cast<int> (value)) });
        else
            real.set (index, value);
        real.block (500);
        EXPECT_NEAR (levelOf (real.block (22050)), full * factor, full * 0.01) << index << " " << value;
    }
    real.set (paramOsc1Vol, 0.0f);
    real.set (paramNoise, 0.5f);
    real.block (500);
    const double noise = levelOf (recordedWaves ().noise.samples) * 0.16;
    EXPECT_NEAR (levelOf (real.block (44100)), noise * 0.5, noise * 0.2); // the filter takes some
    real.set (paramNoise, 0.0f);
    real.set (paramOsc2Vol, 0.5f);
    for (const auto& [wave, factor] : { std::pair{ 0.5f, 0.5 }, std::pair{ 0.4f, 0.0 } })
    {
        real.set (paramOsc2Wave, wave);
        real.block (500);
        EXPECT_NEAR (levelOf (real.block (22050)), full * factor, full * 0.01) << wave;
    }
}

TEST_F (PlayTest, AVibratoThatEndsInsideABlockLeavesNoVoiceBent)
{
    synth.programs = { plainProgram () };
    synth.set (paramLfoWave, 0.6f); // square, at its upper half for long
    synth.set (paramLfoRate, 0.0f);
    synth.set (paramLfoPitch, 1.0f);
    press (60, 100, 2000);
    expectPitch (keyHz (61) * saw * (1.0 + 2.0 / c0));
    synth.block (512, { midi (100, 0xC0, 0, 0) });
    synth.block (64);
    expectPitch (keyHz (61) * saw);
}

// Before it holds any it holds note 0, which stands for a free slot: the first press ends that.
TEST_F (PlayTest, TheKeyboardHoldsOneKey)
{
    synth.set (param1Decay, 0.2f);
    synth.set (paramVelocityAmp, 1.0f);
    synth.engine.playKeyboard (60.0f / 128.0f);
    synth.block (200);
    expectPitch (keyHz (61) * saw);
    EXPECT_NEAR (synth.voice (0).ampEnv.level (), 120.0 * 120.0 / (127.0 * 127.0), 1e-3) << "velocity 120";
    synth.engine.playKeyboard (64.0f / 128.0f); // takes the first key up
    synth.block (50000);
    EXPECT_EQ (sounding (), 1);
    synth.engine.playKeyboard (-1.0f);
    synth.engine.playKeyboard (-1.0f); // holds none any more
    synth.block (50000);
    EXPECT_EQ (sounding (), 0);
    for (const float value : { 5.0f, -7.0f, 1.0f, 1e30f }) // no such keys
        synth.engine.playKeyboard (value);
    EXPECT_EQ (sounding (), 0);
    EXPECT_EQ (synth.keys, (Keys{ { '-', 0 }, { '+', 60 }, { '-', 60 }, { '+', 64 }, { '-', 64 } }));
}
