// What sustain pedal, modulation wheel, volume and the exact pitch wheel do once they are switched on, and
// that they do nothing before.
#include "tests/engine/RampTest.h"
#include "tests/support/Signals.h"

using namespace engine;
using namespace parameters;

namespace
{
class PedalAndWheelTest : public RampTest
{
protected:
    PedalAndWheelTest ()
    {
        synth.set (param1Decay, 0.3f);
        synth.engine.setAdditions ({ true, false });
    }

    void send (int status, int data1, int data2) { synth.block (64, { midi (1, status, data1, data2) }); }
    void control (int controller, int value) { send (0xB2, controller, value); }
    void bend (int position) // 0..16383
    {
        send (0xE0, position & 127, position >> 7);
    }
    void chooseBendRange (int semitones)
    {
        for (const auto& [controller, value] : { std::pair{ 101, 0 }, { 100, 0 }, { 6, semitones } })
            control (controller, value);
    }
    double hz (int voice = 0) { return hzOf (synth.voice (voice).osc1, synth.rate); }
};
}

TEST_F (PedalAndWheelTest, ThePedalHoldsKeysThatAreLetGo)
{
    press (60);
    control (64, 64);
    letGo (60);
    press (64);
    letGo (64);
    press (67);
    EXPECT_EQ (state (0), State::sustain);
    EXPECT_EQ (state (1), State::sustain);
    press (64, 40); // a new stroke, not the old note once more
    EXPECT_EQ (state (1), State::release);
    EXPECT_EQ (state (3), State::sustain);
    letGo (64);
    control (64, 63);
    EXPECT_EQ (state (0), State::release);
    EXPECT_EQ (state (2), State::sustain) << "still held by hand";
    EXPECT_EQ (state (3), State::release);
    letGo (67);
    EXPECT_EQ (state (2), State::release);
    EXPECT_EQ (synth.keys.size (), 8u) << "each key has started once a stroke and ended once";
}

// Two channels, or hands, on the same key: in mono both strokes wait for the pedal.
TEST_F (PedalAndWheelTest, ThePedalLetsGoOfEveryStrokeOfAKey)
{
    synth.set (paramGlideMono, 0.5f);
    press (60);
    press (60);
    control (64, 127);
    letGo (60);
    letGo (60);
    EXPECT_EQ (state (0), State::sustain);
    control (64, 0);
    EXPECT_EQ (state (0), State::release);
}

TEST_F (PedalAndWheelTest, ThePedalIsLiftedByResetAllNotesOffAndTheSwitch)
{
    const auto hold = [this]
    {
        synth.block (50000);
        press (60);
        control (64, 127);
        letGo (60);
        EXPECT_EQ (state (0), State::sustain);
    };
    hold ();
    control (121, 0);
    EXPECT_EQ (state (0), State::release);
    hold ();
    control (123, 0);
    EXPECT_EQ (state (0), State::release);
    hold ();
    control (120, 0);
    EXPECT_EQ (state (0), State::idle) << "all sound off leaves no tail";
    control (64, 0);
    hold ();
    synth.engine.setAdditions ({});
    EXPECT_EQ (state (0), State::release);
    press (62);
    letGo (62);
    EXPECT_EQ (state (1), State::release) << "and switched off it holds nothing";
}

// The knob's depth is twice its cube, in Hz at note 12.
TEST_F (PedalAndWheelTest, TheWheelAddsUpToFiftyCentsToTheKnobsVibrato)
{
    synth.set (paramLfoWave, 0.6f); // square, at its upper half for long
    synth.set (paramLfoRate, 0.0f);
    press (60);
    synth.block (2000);
    const double straight = hz ();
    using Row = std::tuple<float, int, double>;
    for (const auto& [knob, wheel, depth] :
         { Row{ 0.0f, 127, 0.479 }, Row{ 0.5f, 127, 0.25 + 0.479 }, Row{ 0.5f, 0, 0.25 }, Row{ 1.0f, 0, 2.0 },
           Row{ 0.0f, 64, 0.2414 }, Row{ 0.0f, 0, 0.0 } })
    {
        if (synth.value (paramLfoPitch) != knob) // setting it would straighten the pitch by itself
            synth.set (paramLfoPitch, knob);
        control (1, wheel);
        synth.block (100);
        EXPECT_NEAR (hz () / straight, 1.0 + depth / c0, 1e-4) << knob << " " << wheel;
    }
    EXPECT_NEAR (1200.0 * std::log2 (1.0 + 0.479 / c0), 50.0, 0.2);
}

// In equal temperament, of all 14 bits, and the same interval for a second oscillator that is tuned apart.
TEST_F (PedalAndWheelTest, ThePitchWheelIsExactAndItsRangeCanBeChosen)
{
    synth.set (paramOsc2Fine, 0.8f);
    press (60);
    const double second = hzOf (synth.voice (0).osc2, synth.rate);
    const auto expectBend = [&] (double semitones, int line)
    {
        const double ratio = std::exp2 (semitones / 12.0);
        EXPECT_NEAR (hz () / (keyHz (61) * saw), ratio, 1e-5) << line;
        EXPECT_NEAR (hzOf (synth.voice (0).osc2, synth.rate) / second, ratio, 1e-5) << line;
    };
    using Row = std::tuple<int, int, double>;
    for (const auto& [range, position, semitones] :
         { Row{ -1, 8192, 0.0 }, Row{ -1, 16383, 2.0 }, Row{ -1, 0, -2.0 }, Row{ -1, 8193, 2.0 / 8191.0 },
           Row{ 12, 16383, 12.0 }, Row{ 24, 0, -24.0 }, Row{ 24, 12288, 24.0 * 4096.0 / 8191.0 },
           Row{ 99, 16383, 24.0 }, Row{ 0, 16383, 0.0 }, Row{ 7, 16383, 7.0 } })
    {
        if (range >= 0)
            chooseBendRange (range);
        bend (position);
        expectBend (semitones, position + range);
    }
    chooseBendRange (7);
    expectBend (7.0, __LINE__); // acts on a wheel that is turned already
    control (101, 127);         // no parameter
    control (6, 1);
    control (101, 0);
    control (98, 0); // a maker's own
    control (6, 3);
    expectBend (7.0, __LINE__);
    control (121, 0);
    expectBend (0.0, __LINE__);
    bend (16383);
    expectBend (7.0, __LINE__); // a reset leaves the range
    synth.engine.setAdditions ({});
    EXPECT_NEAR (hz (), keyHz (61) * saw + keyHz (63) - keyHz (61), 0.01) << "as without the addition";
}

TEST_F (PedalAndWheelTest, VolumeFollowsAndABoundControllerDoesNot)
{
    TestEngine real;
    real.load (plainProgram ());
    real.block (2000, { noteOn (1, 48) });
    const double full = levelOf (real.block (22050));
    const auto expectLevel = [&] (int volume, double factor, int line)
    {
        real.block (500, { midi (0, 0xB0, 7, volume) });
        EXPECT_NEAR (levelOf (real.block (22050)), full * factor, full * 0.01) << line;
    };
    expectLevel (50, 1.0, __LINE__); // switched off
    real.engine.setAdditions ({ true, false });
    expectLevel (50, 0.25, __LINE__);
    expectLevel (127, 1.6129, __LINE__);
    real.boundController = 7;
    expectLevel (0, 1.6129, __LINE__);
    real.engine.setAdditions ({});
    expectLevel (0, 1.0, __LINE__);
}
