#include "engine/Oscillator.h"

#include <cmath>
#include <vector>

#include <gtest/gtest.h>

using namespace engine;

namespace
{
constexpr int tableLength = 4096;

// A ramp whose value is its own index, so that what is read tells where it was read.
const std::vector<float>& ramp ()
{
    static const std::vector<float> table = []
    {
        std::vector<float> samples;
        for (int n = 0; n <= tableLength; ++n)
            samples.push_back (static_cast<float> (n));
        return samples;
    }();
    return table;
}

Oscillator rampOscillator (float rate = 44100.0f)
{
    Oscillator oscillator;
    oscillator.setTable (ramp ().data (), tableLength, Oscillator::Mode::singleCycle, 0);
    oscillator.setGlide (0.0f);
    oscillator.setSampleRate (rate);
    return oscillator;
}

double keyHz (double note)
{
    return 440.0 * std::exp2 ((note - 69.0) / 12.0);
}

// Frequency that an oscillator's present increment stands for: table samples per second over 337.123 per Hz.
double hzOf (Oscillator oscillator, float rate)
{
    constexpr int steps = 16;
    double travelled = 0.0;
    double last = static_cast<double> (oscillator.tick ());
    for (int n = 0; n < steps; ++n)
    {
        const double now = static_cast<double> (oscillator.tick ());
        travelled += std::fmod (now - last + tableLength, tableLength);
        last = now;
    }
    return travelled / steps * static_cast<double> (rate) / (4045.476 / 12.0);
}

constexpr double c0 = 16.351598; // Hz, the unit of the pitch factors

struct Pitch
{
    const char* what;
    int note;
    float rate;
    int range;
    float correction;
    float fine;
    float bend;
    float master;
    float lfo;
    double hz; // expected
};

const Pitch pitches[] = {
    { "concert a", 69, 44100, 0, 0, 0, 0, 0, 0, 440.0 },
    { "concert a, 8 kHz", 69, 8000, 0, 0, 0, 0, 0, 0, 440.0 },
    { "concert a, 192 kHz", 69, 192000, 0, 0, 0, 0, 0, 0, 440.0 },
    { "concert a, 1 MHz", 69, 1000000, 0, 0, 0, 0, 0, 0, 440.0 },
    { "lowest", 0, 44100, 0, 0, 0, 0, 0, 0, 8.1758 },
    { "highest", 127, 48000, 0, 0, 0, 0, 0, 0, 12543.854 },
    { "range up", 60, 44100, 13, 0, 0, 0, 0, 0, keyHz (73) },
    { "range down", 60, 44100, -23, 0, 0, 0, 0, 0, keyHz (37) },
    { "past the top of the table it begins anew", 120, 48000, 13, 0, 0, 0, 0, 0, keyHz (5) },
    { "past its bottom it ends", 2, 48000, -11, 0, 0, 0, 0, 0, keyHz (119) },
    { "saw's correction", 60, 44100, 0, 0.441f, 0, 0, 0, 0, keyHz (60) * (1.0 + 0.441 / c0) },
    { "pulse's correction", 60, 44100, 0, 0.396f, 0, 0, 0, 0, keyHz (60) * (1.0 + 0.396 / c0) },
    { "fine at its end", 57, 44100, 0, 0, 1, 0, 0, 0, 440.0 },
    { "fine is linear in Hz", 57, 44100, 0, 0, 0.25f, 0, 0, 0, 275.0 },
    { "fine stops at note 127", 120, 96000, 0, 0, 1, 0, 0, 0, 12543.854 },
    { "negative fine", 69, 44100, 0, 0, -0.5f, 0, 0, 0, 330.0 },
    { "below zero it all but stands", 69, 44100, 0, 0, -12, 0, 0, 0, 0.0 },
    { "full bend up", 69, 44100, 0, 0, 0, 1, 0, 0, keyHz (71) },
    { "full bend down", 69, 44100, 0, 0, 0, -1, 0, 0, keyHz (67) },
    { "half a bend, in Hz", 69, 44100, 0, 0, 0, 0.5f, 0, 0, (440.0 + keyHz (71)) / 2.0 },
    { "bend and fine add", 57, 44100, 0, 0, 1, 1, 0, 0, 440.0 + keyHz (59) - 220.0 },
    { "bend is not scaled by the factors", 69, 44100, 0, 0, 0, 1, 1, 0,
      440.0 * (1.0 + 1.0 / c0) + keyHz (71) - 440.0 },
    { "master up", 69, 44100, 0, 0, 0, 0, 1, 0, 440.0 * (1.0 + 1.0 / c0) },
    { "master down", 69, 44100, 0, 0, 0, 0, -1, 0, 440.0 * (1.0 - 1.0 / c0) },
    { "lfo up", 69, 44100, 0, 0, 0, 0, 0, 2, 440.0 * (1.0 + 2.0 / c0) },
    { "factors multiply", 69, 44100, 0, 0.441f, 0, 0, 1, -2,
      440.0 * (1.0 + 0.441 / c0) * (1.0 + 1.0 / c0) * (1.0 - 2.0 / c0) },
    { "held at the highest note", 127, 96000, 0, 0, 0, 0, 1, 0, 12543.854 },
};
}

TEST (OscillatorTest, PitchFollowsItsSettings)
{
    for (const Pitch& row : pitches)
    {
        Oscillator oscillator = rampOscillator (row.rate);
        oscillator.setRange (row.range, row.correction);
        oscillator.setFine (row.fine);
        oscillator.setPitchBend (row.bend, 2);
        oscillator.setMasterPitch (row.master);
        oscillator.setLfoPitch (row.lfo);
        oscillator.setNote (row.note, true);
        EXPECT_NEAR (hzOf (oscillator, row.rate), row.hz, row.hz * 3e-5 + 1e-3) << row.what;
    }
}

TEST (OscillatorTest, ReadsAtTheTruncatedPhaseOrBetweenTwoSamples)
{
    const std::vector<float> zigzag = { 0.0f, 1.0f, -1.0f, 0.5f, 0.0f }; // four samples and the guard
    for (const bool interpolates : { false, true })
    {
        Oscillator oscillator;
        oscillator.setHighQuality (interpolates);
        oscillator.setSampleRate (88200.0f * 1.9999f); // note 60 moves by a little over half a table sample
        oscillator.setNote (60, true);
        oscillator.setTable (zigzag.data (), 4, Oscillator::Mode::singleCycle, 0);
        oscillator.updateIncrement ();
        Oscillator full = oscillator;
        // A rewound cycle begins one increment in.
        const float plain[] = { 0, 1, 1, -1, -1, 0.5f, 0.5f, 0, 0 };
        const float between[] = { 0.5f, 1, 0, -1, -0.25f, 0.5f, 0.25f, 0, 0.5f };
        for (int n = 0; n < 9; ++n)
        {
            const float expected = interpolates ? between[n] : plain[n];
            EXPECT_NEAR (oscillator.tick (), expected, 2e-3) << "sample " << n;
            EXPECT_NEAR (full.tickFull (), expected, 2e-3) << "sample " << n;
        }
    }
}

// The selected pulse cycle enters through the fraction alone. That is meant.
TEST (OscillatorTest, PulseOffsetScalesTheStepBetweenNeighbours)
{
    std::vector<float> table (2001);
    for (std::size_t n = 0; n < table.size (); ++n)
        table[n] = std::sin (0.3f * static_cast<float> (n));
    Oscillator oscillator;
    oscillator.setTable (table.data (), 2000, Oscillator::Mode::cycleSelect, 10);
    oscillator.setSampleRate (300000.0f);
    oscillator.setNote (60, true);
    oscillator.setTable (table.data (), 2000, Oscillator::Mode::cycleSelect, 10); // rewinds
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
        EXPECT_NEAR (static_cast<double> (oscillator.tickFull ()), expected, 1e-3) << n;
        EXPECT_EQ (rough.tickFull (), table[i]) << n;
    }
}

TEST (OscillatorTest, BusyIsSilentAndStandsStill)
{
    Oscillator oscillator = rampOscillator ();
    oscillator.setNote (60, true);
    oscillator.setTable (nullptr, 0, Oscillator::Mode::cycleSelect, 0); // a missing table: stays busy
    EXPECT_EQ (oscillator.mode (), Oscillator::Mode::singleCycle);
    float run[4] = { 1.0f, 1.0f, 1.0f, 1.0f };
    oscillator.addRun (run, 2, 1.0f);
    oscillator.addRunFull (run + 2, 2, 1.0f);
    for (const float sample : run)
        EXPECT_EQ (sample, 1.0f);
    EXPECT_EQ (oscillator.tick (), 0.0f);
    EXPECT_EQ (oscillator.tickFull (), 0.0f);
    oscillator.setPulseWidth (100.0f); // ignored while busy
    oscillator.setTable (ramp ().data (), tableLength, Oscillator::Mode::singleCycle, 0);
    oscillator.updateIncrement ();
    EXPECT_NEAR (oscillator.tick (), 2.0f, 1e-4f);
}

TEST (OscillatorTest, NotesDoNotRestartTheCycle)
{
    Oscillator oscillator = rampOscillator ();
    oscillator.setNote (60, true);
    Oscillator undisturbed = oscillator;
    for (int n = 0; n < 100; ++n)
        ASSERT_EQ (oscillator.tick (), undisturbed.tick ());
    oscillator.setNote (60, true);
    EXPECT_EQ (oscillator.tick (), undisturbed.tick ());
}

// Without retrigger a gliding oscillator rewinds, but only at the note after.
TEST (OscillatorTest, ANoteWithoutRetriggerRewindsAtTheNextOne)
{
    Oscillator oscillator = rampOscillator ();
    oscillator.setGlide (0.5f);
    oscillator.setNote (60, true);
    for (int n = 0; n < 100; ++n)
        oscillator.tickFull ();
    oscillator.setNote (60, false);
    EXPECT_GT (oscillator.tickFull (), 100.0f);
    oscillator.setNote (60, true);
    EXPECT_NEAR (oscillator.tickFull (), 2.0f, 1e-3f);
}

TEST (OscillatorTest, GlideTakesItsTimeAndSettlesWithinOneStepBelow)
{
    struct Row
    {
        int from;
        int to;
        float glide;
        float rate;
    };
    for (const Row& row : { Row{ 57, 69, 0.3f, 44100.0f }, Row{ 69, 57, 0.3f, 44100.0f },
                            Row{ 60, 61, 0.1f, 8000.0f }, Row{ 30, 100, 1.0f, 22050.0f } })
    {
        Oscillator oscillator = rampOscillator (row.rate);
        oscillator.setGlide (row.glide);
        oscillator.setNote (row.from, true); // the first note jumps
        EXPECT_NEAR (hzOf (oscillator, row.rate), keyHz (row.from), keyHz (row.from) * 1e-4);
        const double samples = static_cast<double> (row.glide * row.glide * row.rate); // time is the square
        const double target = keyHz (row.to);
        const double step = std::abs (target - keyHz (row.from)) / samples;
        oscillator.setNote (row.to, true);
        for (int n = 0; n < static_cast<int> (samples / 2.0); ++n)
            oscillator.tickFull ();
        EXPECT_NEAR (hzOf (oscillator, row.rate), (keyHz (row.from) + target) / 2.0, 4.0 * step);
        for (int n = 0; n < static_cast<int> (samples / 2.0) + 10; ++n)
            oscillator.tickFull ();
        const double settled = hzOf (oscillator, row.rate);
        EXPECT_LE (settled, target * 1.0001) << row.from << " to " << row.to;
        EXPECT_GE (settled, target * 0.9999 - step) << row.from << " to " << row.to;
    }
}

TEST (OscillatorTest, AGlideShorterThanASampleArrives)
{
    Oscillator oscillator = rampOscillator ();
    oscillator.setGlide (0.001f); // a microsecond
    oscillator.setNote (40, true);
    oscillator.setNote (69, true);
    oscillator.tickFull ();
    EXPECT_NEAR (hzOf (oscillator, 44100.0f), 440.0, 0.05);
}

TEST (OscillatorTest, ClearedGlideJumps)
{
    Oscillator oscillator = rampOscillator ();
    oscillator.setGlide (1.0f);
    oscillator.setNote (40, true);
    oscillator.clearGlide ();
    oscillator.setNote (69, true);
    EXPECT_NEAR (hzOf (oscillator, 44100.0f), 440.0, 0.05);
}

TEST (OscillatorTest, VeryFastReadsStayInTheTable)
{
    const std::vector<float> short3 = { 1.0f, 2.0f, 3.0f, 1.0f };
    Oscillator oscillator;
    oscillator.setTable (short3.data (), 3, Oscillator::Mode::singleCycle, 0);
    oscillator.setSampleRate (1000.0f);
    oscillator.setNote (127, true);
    for (int n = 0; n < 1000; ++n)
    {
        const float sample = oscillator.tickFull ();
        ASSERT_TRUE (sample >= 1.0f && sample <= 3.0f);
    }
}

TEST (OscillatorTest, RunsEqualTicks)
{
    for (const float glide : { 0.0f, 0.2f })
    {
        Oscillator ticked = rampOscillator ();
        ticked.setGlide (glide);
        ticked.setNote (50, true);
        ticked.setNote (70, true);
        Oscillator run = ticked;
        for (int length = 1; length < 40; ++length)
        {
            std::vector<float> out (static_cast<std::size_t> (length), 10.0f);
            const bool full = length % 2 == 0;
            if (full)
                run.addRunFull (out.data (), length, 0.3f);
            else
                run.addRun (out.data (), length, 0.3f);
            for (const float sample : out)
                ASSERT_EQ (sample, 10.0f + (full ? ticked.tickFull () : ticked.tick ()) * 0.3f);
        }
    }
}
