// Playing: poly and mono, glide, bend, controllers, levels, the panel's keyboard.
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
class PlayTest : public testing::Test
{
protected:
    PlayTest () { synth.load (plainProgram ()); }

    std::vector<float> press (int key, int velocity = 100, int frames = 64)
    {
        return synth.block (
            frames, { { 1, 0x90, static_cast<unsigned char> (key), static_cast<unsigned char> (velocity) } });
    }
    void letGo (int key, int frames = 64)
    {
        synth.block (frames, { { 1, 0x85, static_cast<unsigned char> (key), 64 } });
    }

    Envelope::State state (int voice) { return EngineProbe::voice (synth.engine, voice).ampEnv.state (); }
    int sounding ()
    {
        int voices = 0;
        for (int v = 0; v < voiceSlots; ++v)
            voices += state (v) != Envelope::State::idle ? 1 : 0;
        return voices;
    }

    // Hz of what sounds now, near `about`.
    double hear (double about) { return frequencyOf (synth.block (20000), 44100.0, about); }
    void expectPitch (double hz) { EXPECT_NEAR (hear (hz), hz, hz * 1e-3); }

    TestEngine synth;
};
}

TEST_F (PlayTest, EachKeyTakesAVoiceAndAStruckKeyItsOwn)
{
    synth.set (param1Decay, 0.3f);
    press (60);
    press (64);
    press (67);
    EXPECT_EQ (sounding (), 3);
    press (64);
    EXPECT_EQ (sounding (), 3);
    letGo (64);
    EXPECT_EQ (state (1), Envelope::State::release);
    EXPECT_EQ (state (0), Envelope::State::sustain);
    press (67, 0); // velocity 0 lets go
    EXPECT_EQ (state (2), Envelope::State::release);
    letGo (99); // was never down
    EXPECT_EQ (state (0), Envelope::State::sustain);
}

TEST_F (PlayTest, MoreKeysThanVoicesSteal)
{
    synth.set (paramVoices, 0.3f); // 6
    for (int key = 40; key < 80; ++key)
    {
        press (key);
        EXPECT_LE (sounding (), 6);
    }
    for (int key = 40; key < 80; ++key)
        letGo (key, 5000);
    EXPECT_EQ (sounding (), 0); // nothing hangs
}

TEST_F (PlayTest, ReleasedVoicesAreTakenWhenIdleOnly)
{
    synth.set (param1Decay, 0.5f);
    press (60);
    letGo (60);
    press (62);
    EXPECT_EQ (state (0), Envelope::State::release);
    EXPECT_EQ (state (1), Envelope::State::sustain);
}

TEST_F (PlayTest, MonoLegatoReturnsToTheKeyStillHeld)
{
    synth.set (paramGlideMono, 0.2f); // 0.04 s
    synth.set (param1Decay, 0.3f);
    press (60);
    expectPitch (sawHz (60));
    const float level = EngineProbe::voice (synth.engine, 0).ampEnv.level ();
    press (72, 20, 2000);
    EXPECT_EQ (state (0), Envelope::State::sustain); // no retrigger
    EXPECT_EQ (EngineProbe::voice (synth.engine, 0).ampEnv.level (), level);
    expectPitch (sawHz (72));
    press (67, 100, 2000);
    letGo (72, 2000); // not the newest
    expectPitch (sawHz (67));
    letGo (67, 2000);
    expectPitch (sawHz (60));
    EXPECT_EQ (state (0), Envelope::State::sustain);
    letGo (60);
    EXPECT_EQ (state (0), Envelope::State::release);
    EXPECT_EQ (sounding (), 1);
}

TEST_F (PlayTest, GlideAutoGlidesBetweenOverlappingNotesOnly)
{
    for (const bool automatic : { true, false })
    {
        for (const bool overlaps : { true, false })
        {
            TestEngine fresh;
            fresh.load (plainProgram ());
            fresh.set (paramGlideAuto, automatic ? 1.0f : 0.0f);
            fresh.set (paramGlideMono, 0.9f); // 0.81 s
            fresh.block (2000, { { 1, 0x90, 48, 100 } });
            if (!overlaps)
                fresh.block (5000, { { 1, 0x80, 48, 0 } });
            fresh.block (64, { { 1, 0x90, 60, 100 } });
            const double hz =
                frequencyOf (fresh.block (6000), 44100.0, overlaps || !automatic ? sawHz (49) : sawHz (60));
            if (overlaps || !automatic)
                EXPECT_LT (hz, sawHz (51)); // still on its way
            else
                EXPECT_NEAR (hz, sawHz (60), 0.2);
        }
    }
}

TEST_F (PlayTest, MonoUsesOscillator2InFullAndBothGlide)
{
    synth.set (paramOsc2Wave, 0.5f);
    synth.set (paramOsc1Wave, 0.0f);
    synth.set (paramGlideMono, 0.3f); // 0.09 s
    press (48);
    press (60, 100, 5000);
    expectPitch (sawHz (60));
}

TEST_F (PlayTest, PitchBendUsesItsUpperByteAndReachesTwoKeys)
{
    press (60);
    const double bent = sawHz (62) / (1.0 + 0.441 / 16.351598); // the bend's part is not corrected
    const double correction = sawHz (60) - sawHz (60) / (1.0 + 0.441 / 16.351598);
    synth.block (1, { { 1, 0xE3, 0, 127 } });
    expectPitch (bent + correction);
    synth.block (1, { { 1, 0xE3, 127, 64 } }); // the centre bends a little: 1/127 of two keys
    const double plain = sawHz (60) / (1.0 + 0.441 / 16.351598);
    EXPECT_NEAR (hear (sawHz (60)) - sawHz (60), (bent - plain) / 127.0, 0.02);
    synth.block (1, { { 1, 0xE3, 0, 0 } });
    expectPitch (sawHz (58) / (1.0 + 0.441 / 16.351598) + correction);
}

TEST_F (PlayTest, TuningKnobs)
{
    constexpr double unit = 16.351598; // Hz
    synth.set (paramOsc2Wave, 0.5f);
    synth.set (paramOsc1Vol, 0.0f);
    press (60, 100, 2000);
    for (const auto& [value, shift] :
         { std::pair{ 1.0f, 1.0 }, std::pair{ 0.0f, -1.0 }, std::pair{ 0.5f, 0.0 } })
    {
        synth.set (paramMasterP, value);
        expectPitch (sawHz (60) * (1.0 + shift / unit));
    }
    const double uncorrected = sawHz (60) / (1.0 + 0.441 / unit);
    for (const auto& [value, share] : { std::pair{ 1.0f, 1.0 }, std::pair{ 0.5f, 0.125 } }) // cubed
    {
        synth.set (paramOsc2Fine, value);
        expectPitch (sawHz (60) + uncorrected * share);
    }
}

TEST_F (PlayTest, AllNotesOffKeepsTheTails)
{
    synth.set (param1Decay, 0.4f);
    press (60);
    press (64);
    synth.block (64, { { 1, 0xB0, 123, 0 } });
    EXPECT_EQ (state (0), Envelope::State::release);
    EXPECT_EQ (state (1), Envelope::State::release);
    EXPECT_GT (peakOf (synth.block (100)), 0.0f);
    press (60); // forgotten by the allocator: a new voice
    EXPECT_EQ (sounding (), 3);
}

TEST_F (PlayTest, ControllersReachTheInstrument)
{
    synth.block (64, { { 1, 0xB7, 74, 127 }, { 2, 0xB0, 1, 0 } });
    ASSERT_EQ (synth.controllers.size (), 2u);
    EXPECT_EQ (synth.controllers[0], std::pair (74u, 1.0f));
    EXPECT_EQ (synth.controllers[1], std::pair (1u, 0.0f));
}

TEST_F (PlayTest, LevelsMultiply)
{
    press (60);
    synth.block (2000);
    const auto level = [this] { return std::sqrt (powerOf (synth.block (44100))); };
    const double full = level ();
    struct Row
    {
        int index;
        float value;
        double factor;
    };
    for (const Row& row : { Row{ paramVolume, 0.5f, 0.5 }, Row{ paramVolType, 0.0f, 1.6 },
                            Row{ paramVolType, 2.0f, 0.52 }, Row{ paramOsc1Vol, 0.25f, 0.25 } })
    {
        const float before = synth.value (row.index);
        synth.set (row.index, row.value);
        synth.block (500); // the filter has no drive here, so levels scale
        EXPECT_NEAR (level (), full * row.factor, full * 0.01) << row.index << " " << row.value;
        synth.set (row.index, before);
        synth.block (500);
    }
    synth.block (64, { { 1, 0xB0, 11, 64 } });
    EXPECT_NEAR (level (), full * 64.0 / 127.0, full * 0.01);
    synth.block (64, { { 1, 0xB0, 11, 0 } });
    EXPECT_EQ (peakOf (synth.block (1000)), 0.0f);
    synth.block (64, { { 1, 0xB0, 11, 127 } });
    EXPECT_NEAR (level (), full, full * 0.01);
}

// One voice through the open filter: table x volumes x 0.32 / 2, DC included.
TEST_F (PlayTest, AbsoluteLevel)
{
    press (48);
    const std::vector<float> sound = synth.block (44100);
    double mean = 0.0;
    for (const float sample : sound)
        mean += static_cast<double> (sample) / 44100.0;
    const WaveTable saw = loadWaveTable (sawWaveId);
    double tableMean = 0.0;
    for (std::int32_t n = 0; n < saw.length; ++n)
        tableMean += static_cast<double> (saw.samples[static_cast<std::size_t> (n)]) / saw.length;
    EXPECT_NEAR (mean, tableMean * 0.16, 0.001);
}

TEST_F (PlayTest, TheKeyboardsPseudoParameterPlays)
{
    synth.set (param1Decay, 0.2f);
    synth.set (commandKeyboard, 60.0f / 128.0f);
    synth.block (200);
    EXPECT_EQ (sounding (), 1);
    expectPitch (sawHz (60));
    synth.set (commandKeyboard, 64.0f / 128.0f); // takes the first key up
    EXPECT_EQ (state (0), Envelope::State::release);
    synth.block (50000);
    EXPECT_EQ (sounding (), 1);
    synth.set (commandKeyboard, -1.0f);
    synth.block (50000);
    EXPECT_EQ (sounding (), 0);
    for (const float value : { 5.0f, -7.0f, 1.0f, 1e30f }) // no such keys
        synth.set (commandKeyboard, value);
    synth.block (64);
    EXPECT_EQ (sounding (), 0);
}

// The key held at the start is 0, not "none", so the first press ends note 0 first.
TEST_F (PlayTest, TheFirstKeyOfTheKeyboardEndsNoteZero)
{
    press (70); // voice 0; the first free slot, 1, answers for note 0
    press (71);
    letGo (71, 20000);
    EXPECT_EQ (sounding (), 1);
    synth.set (commandKeyboard, 60.0f / 128.0f);
    synth.block (64);
    EXPECT_EQ (sounding (), 2);
    EXPECT_EQ (state (0), Envelope::State::sustain);
}

TEST_F (PlayTest, VelocityShapesBothEnvelopes)
{
    synth.set (paramVelocityAmp, 1.0f);
    press (60, 64);
    EXPECT_NEAR (EngineProbe::voice (synth.engine, 0).ampEnv.level (), 0.2547f, 1e-3f);
    press (62, 127);
    EXPECT_NEAR (EngineProbe::voice (synth.engine, 1).ampEnv.level (), 1.0f, 1e-3f);
}

TEST_F (PlayTest, KeyTrackingFollowsTheKey)
{
    synth.set (paramFilterKeyTrak, 1.0f);
    synth.set (paramFilterFreq, 0.0f);
    press (84, 100, 200000); // long enough for the base to come to rest near 0
    const float high = EngineProbe::voice (synth.engine, 0).filter.cutoffHz ();
    EXPECT_NEAR (high, 0.02 * 0.06 * 440.0 * std::exp2 ((36 - 69) / 12.0) * 6460.0, 15.0);
}

// The LFO bends the pitch until the end of the block in which its depth becomes 0. No voice stays bent.
TEST_F (PlayTest, VibratoThatEndsInsideABlockLeavesNoVoiceOutOfTune)
{
    synth.programs = { plainProgram () };
    synth.set (paramLfoPitch, 1.0f);
    synth.set (paramLfoWave, 0.6f); // square: always fully bent
    press (60, 100, 5000);
    const double bent = hear (sawHz (60) * 1.12);
    EXPECT_GT (bent, sawHz (60) * 1.05);
    synth.block (512, { { 100, 0xC0, 0, 0 } }); // to the plain program
    expectPitch (sawHz (60));
}
