#include "engine/Oscillator.h"

#include <gtest/gtest.h>

#include "tests/engine/Ramp.h"

using namespace engine;

namespace
{
Oscillator rampOscillator (float rate = 44100.0f)
{
    Oscillator oscillator;
    oscillator.setTable (ramp ().samples.data (), rampLength, Oscillator::Mode::singleCycle, 0);
    oscillator.setGlide (0.0f);
    oscillator.setSampleRate (rate);
    return oscillator;
}

}

// note, rate, range, correction, fine, bend, master, lfo; Hz
TEST (OscillatorTest, PitchFollowsItsSettings)
{
    constexpr double up = 1.0 + 1.0 / c0;
    using Row = std::tuple<int, float, int, float, float, float, float, float, double>;
    for (const auto& [note, rate, range, correction, fine, bend, master, lfo, hz] :
         { Row{ 69, 44100, 0, 0, 0, 0, 0, 0, 440.0 }, Row{ 0, 8000, 0, 0, 0, 0, 0, 0, 8.1758 },
           Row{ 127, 48000, 0, 0, 0, 0, 0, 0, 12543.854 },
           Row{ 120, 48000, 13, 0, 0, 0, 0, 0, keyHz (5) }, // the table begins anew past its ends
           Row{ 2, 48000, -11, 0, 0, 0, 0, 0, keyHz (119) },
           Row{ 57, 44100, 0, 0, 0.25f, 0, 0, 0, 275.0 },  // linear in Hz
           Row{ 120, 96000, 0, 0, 1, 0, 0, 0, 12543.854 }, // stops at note 127
           Row{ 69, 44100, 0, 0, -0.5f, 0, 0, 0, 330.0 },
           Row{ 69, 44100, 0, 0, -12, 0, 0, 0, 0.0 }, // all but stands
           Row{ 69, 44100, 0, 0, 0, 0.5f, 0, 0, (440.0 + keyHz (71)) / 2.0 },
           Row{ 57, 44100, 0, 0, 1, 1, 0, 0,
                440.0 + keyHz (59) - 220.0 }, // bend and fine add, and are not scaled:
           Row{ 69, 44100, 0, 0, 0, 1, 1, 0, 440.0 * up + keyHz (71) - 440.0 },
           Row{ 69, 44100, 0, 0.441f, 0, 0, 1, -2, 440.0 * (1.0 + 0.441 / c0) * up * (1.0 - 2.0 / c0) },
           Row{ 127, 96000, 0, 0, 0, 0, 1, 0, 12543.854 } }) // the highest there is
    {
        Oscillator oscillator = rampOscillator (rate);
        oscillator.setRange (range, correction);
        oscillator.setFine (fine);
        oscillator.setPitchBend (bend, 2);
        oscillator.setMasterPitch (master);
        oscillator.setLfoPitch (lfo);
        oscillator.setNote (note, true);
        EXPECT_NEAR (hzOf (oscillator, rate), hz, hz * 3e-5 + 1e-3)
            << note << " " << range << " " << fine << " " << bend;
    }
}

// The selected pulse cycle enters through the fraction alone: the step to the neighbour is scaled by it.
TEST (OscillatorTest, ReadsAtTheTruncatedPhaseOrBetweenTwoSamples)
{
    const std::vector<float> table = { 0.0f, 1.0f, -1.0f, 0.5f, 0.25f, 0.0f }; // five samples and the guard
    const double increment = keyHz (60) * 4045.476 / 12.0 / 140000.0;          // 0.63 samples
    using Row = std::tuple<bool, Oscillator::Mode, float>;
    for (const auto& [interpolates, mode, cycle] : { Row{ false, Oscillator::Mode::singleCycle, 0.0f },
                                                     Row{ true, Oscillator::Mode::singleCycle, 0.0f },
                                                     Row{ false, Oscillator::Mode::cycleSelect, 14.0f },
                                                     Row{ true, Oscillator::Mode::cycleSelect, 14.0f } })
    {
        Oscillator oscillator;
        oscillator.setHighQuality (interpolates);
        oscillator.setSampleRate (140000.0f);
        oscillator.setNote (60, true);
        oscillator.setTable (table.data (), 5, mode, 5);
        oscillator.setPulseWidth (cycle);
        oscillator.updateIncrement (); // a rewound cycle starts one increment in
        Oscillator full = oscillator;
        double phase = increment;
        for (int n = 0; n < 30; ++n, phase = std::fmod (phase + increment, 5.0))
        {
            const auto i = static_cast<std::size_t> (phase);
            const double share =
                interpolates ? phase - static_cast<double> (i) + 5.0 * static_cast<double> (cycle) : 0.0;
            const double expected =
                static_cast<double> (table[i]) + share * static_cast<double> (table[i + 1] - table[i]);
            EXPECT_NEAR (full.tickFull (), expected, 1e-3) << cycle << " sample " << n;
            if (mode == Oscillator::Mode::singleCycle)
            {
                EXPECT_NEAR (oscillator.tick (), expected, 1e-3) << "sample " << n;
            }
        }
    }
}

TEST (OscillatorTest, WithoutATableItIsSilentAndStandsStill)
{
    Oscillator oscillator = rampOscillator ();
    oscillator.setNote (60, true);
    oscillator.setTable (nullptr, 0, Oscillator::Mode::cycleSelect, 0); // a missing recording
    EXPECT_EQ (oscillator.mode (), Oscillator::Mode::singleCycle);
    EXPECT_EQ (oscillator.tick () + oscillator.tickFull (), 0.0f);
    oscillator.setPulseWidth (100.0f); // ignored
    oscillator.setTable (ramp ().samples.data (), rampLength, Oscillator::Mode::singleCycle, 0);
    oscillator.updateIncrement ();
    EXPECT_NEAR (oscillator.tickFull (), 2.0f, 1e-4f);
}

TEST (OscillatorTest, NotesDoNotRestartTheCycle)
{
    Oscillator oscillator = rampOscillator ();
    oscillator.setNote (60, true);
    for (int n = 0; n < 100; ++n)
        oscillator.tick ();
    Oscillator undisturbed = oscillator;
    oscillator.setNote (60, true);
    EXPECT_EQ (oscillator.tick (), undisturbed.tick ());

    // But without retrigger a gliding one rewinds, at the note after.
    oscillator.setGlide (0.5f);
    oscillator.setNote (60, false);
    EXPECT_GT (oscillator.tickFull (), 100.0f);
    oscillator.setNote (60, true);
    EXPECT_NEAR (oscillator.tickFull (), 2.0f, 1e-3f);
}

// Also a glide of a few samples, or of less than one.
TEST (OscillatorTest, GlideTakesItsTimeAndArrivesExactly)
{
    using Row = std::tuple<int, int, float, float>;
    for (const auto& [from, to, glide, rate] :
         { Row{ 57, 69, 0.3f, 44100 }, Row{ 69, 57, 0.3f, 44100 }, Row{ 60, 61, 0.1f, 8000 },
           Row{ 30, 100, 1.0f, 22050 }, Row{ 36, 96, 0.005f, 44100 }, Row{ 96, 36, 0.005f, 44100 },
           Row{ 36, 96, 0.02f, 44100 }, Row{ 96, 36, 0.02f, 44100 }, Row{ 40, 69, 0.001f, 44100 } })
    {
        Oscillator oscillator = rampOscillator (rate);
        oscillator.setGlide (glide);
        oscillator.setNote (from, true); // the first note jumps
        EXPECT_NEAR (hzOf (oscillator, rate), keyHz (from), keyHz (from) * 1e-4);
        const double samples = static_cast<double> (glide * glide * rate); // time is the square
        const double step = std::abs (keyHz (to) - keyHz (from)) / samples;
        oscillator.setNote (to, true);
        if (samples > 100.0)
        {
            for (int n = 0; n < static_cast<int> (samples / 2.0); ++n)
                oscillator.tickFull ();
            EXPECT_NEAR (hzOf (oscillator, rate), (keyHz (from) + keyHz (to)) / 2.0, 4.0 * step);
        }
        for (int n = 0; n < static_cast<int> (samples) + 20; ++n)
            oscillator.tickFull ();
        EXPECT_NEAR (hzOf (oscillator, rate), keyHz (to), keyHz (to) * 1e-5)
            << from << " to " << to << " in " << glide;
        oscillator.clearGlide ();
        oscillator.setNote (from, true);
        EXPECT_NEAR (hzOf (oscillator, rate), keyHz (from), keyHz (from) * 1e-4) << "cleared, it jumps";
    }
}
