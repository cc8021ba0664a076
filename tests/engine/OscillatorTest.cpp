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

TEST (OscillatorTest, GlideTakesItsTime)
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
        const double start = keyHz (row.from);
        const double target = keyHz (row.to);
        EXPECT_NEAR (hzOf (oscillator, row.rate), start, start * 1e-4);
        const double samples = static_cast<double> (row.glide * row.glide * row.rate); // time is the square
        const double step = std::abs (target - start) / samples;
        oscillator.setNote (row.to, true);
        for (int n = 0; n < static_cast<int> (samples / 2.0); ++n)
            oscillator.tickFull ();
        EXPECT_NEAR (hzOf (oscillator, row.rate), (start + target) / 2.0, 4.0 * step);
        for (int n = 0; n < static_cast<int> (samples / 2.0) + 10; ++n)
            oscillator.tickFull ();
        EXPECT_NEAR (hzOf (oscillator, row.rate), target, target * 1e-4 + step)
            << row.from << " to " << row.to;
        oscillator.clearGlide ();
        oscillator.setNote (row.from, true);
        EXPECT_NEAR (hzOf (oscillator, row.rate), start, start * 1e-4) << "cleared, it jumps";
    }
}

TEST (OscillatorTest, VeryFastReadsStayInTheTable)
{
    const std::vector<float> table = { 1.0f, 2.0f, 3.0f, 1.0f };
    Oscillator oscillator;
    oscillator.setTable (table.data (), 3, Oscillator::Mode::singleCycle, 0);
    oscillator.setSampleRate (1000.0f);
    oscillator.setNote (127, true);
    for (int n = 0; n < 1000; ++n)
    {
        const float sample = oscillator.tickFull ();
        ASSERT_TRUE (sample >= 1.0f && sample <= 3.0f);
    }
}
