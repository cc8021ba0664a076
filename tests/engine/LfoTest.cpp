#include "engine/Lfo.h"

#include <gtest/gtest.h>

#include "tests/support/Signals.h"

using namespace engine;

namespace
{
Lfo lfo (std::int32_t shape, float hz, float rate = 44100.0f)
{
    Lfo l;
    l.setSampleRate (rate);
    l.setShape (shape);
    l.setRateHz (hz);
    l.resetPhase ();
    return l;
}

std::vector<float> ticks (Lfo l, int samples)
{
    std::vector<float> out;
    for (int n = 0; n < samples; ++n)
        out.push_back (l.tick ());
    return out;
}

// state x 214013 + 2531011, bits 16 to 30, from state 1.
struct Sequence
{
    std::uint32_t state = 1;
    float next ()
    {
        state = state * 214013u + 2531011u;
        return static_cast<float> ((state >> 16) & 0x7FFFu) / 32767.0f * 2.0f - 1.0f;
    }
};
}

// Half a unit a sample, eight samples a cycle. The bouncing shapes step back at their ends, and the saws jump
// to exactly the other end, so a cycle is four units long give or take a step.
TEST (LfoTest, ShapesSampleBySample)
{
    const float sine = std::sin (0.5f);
    const std::pair<Lfo::Shape, std::vector<float>> rows[] = {
        { Lfo::triangle, { -0.5f, 0, 0.5f, 0.5f, 0, -0.5f, -0.5f, 0, 0.5f, 0.5f } },
        { Lfo::roundedTriangle, { -sine, 0, sine, sine, 0, -sine, -sine, 0, sine, sine } },
        { Lfo::square, { 1, 1, 1, 1, -1, -1, -1, 1, 1, 1, -1 } },
        { Lfo::risingSaw, { -0.75f, -0.5f, -0.25f, 0, 0.25f, 0.5f, 0.75f, -1, -0.75f } },
        { Lfo::fallingSaw, { 0.75f, 0.5f, 0.25f, 0, -0.25f, -0.5f, -0.75f, 1, 0.75f } },
    };
    for (const auto& [shape, out] : rows)
    {
        Lfo l = lfo (shape, 1000.0f, 8000.0f);
        l.tick ();
        l.resetPhase (); // a reset one cannot be told from a new one
        for (std::size_t n = 0; n < out.size (); ++n)
            EXPECT_FLOAT_EQ (l.tick (), out[n]) << shape << " sample " << n;
    }
}

TEST (LfoTest, OneCycleTakesItsTime)
{
    for (const Lfo::Shape shape : { Lfo::triangle, Lfo::risingSaw, Lfo::fallingSaw, Lfo::roundedTriangle })
    {
        for (const auto& [rate, hz] :
             { std::pair{ 8000.0f, 0.9f }, std::pair{ 44100.0f, 5.0f }, std::pair{ 96000.0f, 40.0f } })
        {
            const Lfo l = lfo (shape, hz, rate);
            const double samples = static_cast<double> (rate / hz);
            EXPECT_NEAR (periodOf (ticks (l, static_cast<int> (samples * 6.5))), samples,
                         2.5 + samples * 2e-3)
                << shape << " " << hz; // the phase is a 32-bit sum
            EXPECT_FLOAT_EQ (l.cycleSamples (), rate / hz);
        }
    }
    Lfo l;
    l.setRateRange (100.0f, 6.0f);
    for (const auto& [knob, seconds] :
         { std::pair{ 0.0f, 6.0f }, std::pair{ 1.0f, 0.01f }, std::pair{ 0.5f, 6.0f / 300.5f } })
    {
        l.setRate (knob);
        EXPECT_FLOAT_EQ (l.cycleSamples (), seconds * 44100.0f) << knob;
    }
}

TEST (LfoTest, OutputStaysInRangeAndWithoutARateItStands)
{
    for (std::int32_t shape = 0; shape <= 9; ++shape)
    {
        for (const float hz : { 0.0f, 0.1f, 99.0f, 20000.0f, 1e9f })
        {
            const std::vector<float> out = ticks (lfo (shape, hz), 3000);
            ASSERT_LE (peakOf (out), shape == Lfo::roundedTriangle ? 0.8415f : 1.0f) << shape << " at " << hz;
            EXPECT_TRUE (hz > 0.0f || shape == Lfo::noise || out[2] == out[2999]) << shape;
        }
    }
    EXPECT_EQ (ticks (lfo (9, 50.0f), 5000), ticks (lfo (Lfo::sampleAndHold, 50.0f), 5000));
}

TEST (LfoTest, RandomShapesFollowTheOneSequence)
{
    Sequence noise;
    for (const float value : ticks (lfo (Lfo::noise, 0.0f), 1000)) // needs no rate
        ASSERT_FLOAT_EQ (value, noise.next ());

    Sequence held; // the reset draws the first value, each wrap another one
    const std::vector<float> out = ticks (lfo (Lfo::sampleAndHold, 100.0f, 10000.0f), 1000);
    float expected = held.next ();
    int last = -1;
    for (int n = 0; n < 1000; ++n)
    {
        if (out[static_cast<std::size_t> (n)] == expected)
            continue;
        EXPECT_NEAR (n - last, 100, 2); // the phase is a 32-bit sum
        expected = held.next ();
        ASSERT_FLOAT_EQ (out[static_cast<std::size_t> (n)], expected) << n;
        last = n;
    }
    EXPECT_GT (last, 890);
}
