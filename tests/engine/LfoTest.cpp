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

std::vector<float> ticks (Lfo& l, int samples)
{
    std::vector<float> out;
    for (int n = 0; n < samples; ++n)
        out.push_back (l.tick ());
    return out;
}
}

// Half a unit a sample, eight samples a cycle. The bouncing shapes step back at their ends, and the saws jump
// to exactly the other end, so a cycle is four units long give or take a step.
TEST (LfoTest, ShapesSampleBySample)
{
    const float sine = std::sin (0.5f);
    // The random ones draw bits 16 to 30 of state x 214013 + 2531011 from state 1 on, one of which was drawn
    // before the second reset.
    const auto drawn = [] (int bits) { return static_cast<float> (bits) / 32767.0f * 2.0f - 1.0f; };
    const float first = drawn (18467);
    using Row = std::tuple<Lfo::Shape, std::vector<float>>;
    for (const auto& [shape, out] :
         { Row{ Lfo::triangle, { -0.5f, 0, 0.5f, 0.5f, 0, -0.5f, -0.5f, 0, 0.5f, 0.5f } },
           Row{ Lfo::roundedTriangle, { -sine, 0, sine, sine, 0, -sine, -sine, 0, sine, sine } },
           Row{ Lfo::square, { 1, 1, 1, 1, -1, -1, -1, 1, 1, 1, -1 } },
           Row{ Lfo::risingSaw, { -0.75f, -0.5f, -0.25f, 0, 0.25f, 0.5f, 0.75f, -1, -0.75f } },
           Row{ Lfo::fallingSaw, { 0.75f, 0.5f, 0.25f, 0, -0.25f, -0.5f, -0.75f, 1, 0.75f } },
           Row{ Lfo::noise, { first, drawn (6334), drawn (26500), drawn (19169), drawn (15724) } },
           Row{ Lfo::sampleAndHold, { first, first, first, first, first, first, first, drawn (6334) } } })
    {
        Lfo l = lfo (shape, 1000.0f, 8000.0f);
        l.tick ();
        l.resetPhase (); // a reset one cannot be told from a new one
        for (std::size_t n = 0; n < out.size (); ++n)
            EXPECT_FLOAT_EQ (l.tick (), out[n]) << shape << " sample " << n;
    }
}

TEST (LfoTest, WithoutARateItStandsAndAtAnyRateItStaysInRange)
{
    for (std::int32_t shape = 0; shape <= Lfo::sampleAndHold; ++shape)
    {
        for (const float hz : { 0.0f, 99.0f, 20000.0f, 1e9f })
        {
            Lfo l = lfo (shape, hz);
            const std::vector<float> out = ticks (l, 3000);
            ASSERT_LE (peakOf (out), shape == Lfo::roundedTriangle ? 0.8415f : 1.0f) << shape << " at " << hz;
            EXPECT_TRUE (hz > 0.0f || shape == Lfo::noise || out[2] == out[2999]) << shape;
        }
    }
}

// In far fewer steps, whatever the shape, the rate and the place to begin at.
TEST (LfoTest, AdvancingIsTicking)
{
    for (std::int32_t shape = Lfo::triangle; shape <= Lfo::sampleAndHold; ++shape)
    {
        for (const float hz : { 0.0f, 1e-7f, 0.03f, 1.7f, 440.0f, 20000.0f })
        {
            Lfo ticked = lfo (shape, hz);
            Lfo advanced = ticked;
            for (const int count : { 1, 7, 500, 33333, 1000000 })
            {
                ticks (ticked, count);
                advanced.advance (count);
                for (int n = 0; n < 3; ++n)
                    ASSERT_NEAR (advanced.tick (), ticked.tick (), 1e-4)
                        << shape << " at " << hz << " after " << count;
            }
        }
    }
    Lfo far = lfo (Lfo::noise, 1.0f); // 2^40 draws at once: the generator has gone round 256 times
    Lfo near = far;
    far.advance (std::int64_t{ 1 } << 40);
    EXPECT_EQ (ticks (far, 5), ticks (near, 5));
}
