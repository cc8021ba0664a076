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

constexpr double c0 = 16.351598; // Hz, the unit of the pitch factors
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

TEST (OscillatorTest, ReadsAtTheTruncatedPhaseOrBetweenTwoSamples)
{
    const std::vector<float> zigzag = { 0.0f, 1.0f, -1.0f, 0.5f, 0.0f }; // four samples and the guard
    const float plain[] = { 0, 1, 1, -1, -1, 0.5f, 0.5f, 0, 0 };
    const float between[] = { 0.5f, 1, 0, -1, -0.25f, 0.5f, 0.25f, 0, 0.5f };
    for (const bool interpolates : { false, true })
    {
        Oscillator oscillator;
        oscillator.setHighQuality (interpolates);
        oscillator.setSampleRate (88200.0f * 1.9999f); // note 60 moves by a little over half a table sample
        oscillator.setNote (60, true);
        oscillator.setTable (zigzag.data (), 4, Oscillator::Mode::singleCycle, 0);
        oscillator.updateIncrement (); // a rewound cycle starts one increment in
        Oscillator full = oscillator;
        for (int n = 0; n < 9; ++n)
        {
            EXPECT_NEAR (oscillator.tick (), (interpolates ? between : plain)[n], 2e-3) << "sample " << n;
            EXPECT_NEAR (full.tickFull (), (interpolates ? between : plain)[n], 2e-3) << "sample " << n;
        }
    }
}

// The selected pulse cycle enters through the fraction alone: the step to the neighbour is scaled by it.
TEST (OscillatorTest, PulseOffsetScalesTheStepBetweenNeighbours)
{
    std::vector<float> table (2001);
    for (std::size_t n = 0; n < table.size (); ++n)
        table[n] = std::sin (0.3f * static_cast<float> (n));
    Oscillator oscillator;
    oscillator.setSampleRate (300000.0f);
    oscillator.setNote (60, true);
    oscillator.setTable (table.data (), 2000, Oscillator::Mode::cycleSelect, 10);
    oscillator.updateIncrement ();
    oscillator.setPulseWidth (7.0f); // offset 70
    Oscillator rough = oscillator;
    rough.setHighQuality (false);
    const double increment = keyHz (60) * 4045.476 / 12.0 / 300000.0;
    double phase = increment;
    for (int n = 0; n < 100; ++n, phase = std::fmod (phase + increment, 10.0))
    {
        const auto i = static_cast<std::size_t> (phase);
        const double step = static_cast<double> (table[i + 1] - table[i]);
        const double expected =
            static_cast<double> (table[i]) + (phase + 70.0 - static_cast<double> (i)) * step;
        EXPECT_NEAR (oscillator.tickFull (), expected, 1e-3) << n;
        EXPECT_EQ (rough.tickFull (), table[i]) << n;
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
