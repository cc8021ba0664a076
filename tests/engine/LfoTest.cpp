#include "engine/Lfo.h"

#include <cmath>
#include <set>
#include <vector>

#include <gtest/gtest.h>

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

// Samples between the first and the last upward crossing of 0, per cycle.
double periodOf (const std::vector<float>& out)
{
    int first = -1;
    int last = -1;
    int crossings = 0;
    for (std::size_t n = 1; n < out.size (); ++n)
    {
        if (!(out[n - 1] < 0.0f && out[n] >= 0.0f))
            continue;
        last = static_cast<int> (n);
        first = first < 0 ? last : first;
        ++crossings;
    }
    return crossings > 1 ? static_cast<double> (last - first) / (crossings - 1) : 0.0;
}

constexpr Lfo::Shape periodic[] = { Lfo::triangle, Lfo::risingSaw, Lfo::square, Lfo::fallingSaw,
                                    Lfo::roundedTriangle };
}

TEST (LfoTest, OneCycleTakesItsTime)
{
    for (const Lfo::Shape shape : periodic)
    {
        for (const float rate : { 8000.0f, 44100.0f, 96000.0f })
        {
            for (const float hz : { 0.9f, 5.0f, 40.0f })
            {
                Lfo l = lfo (shape, hz, rate);
                const double samples = static_cast<double> (rate / hz);
                const std::vector<float> out = ticks (l, static_cast<int> (samples * 6.5));
                // A cycle is four units long give or take one step, and the phase is a 32-bit sum.
                EXPECT_NEAR (periodOf (out), samples, 2.5 + samples * 2e-3)
                    << shape << " " << rate << " " << hz;
            }
        }
    }
}

TEST (LfoTest, KnobSpansSixSecondsToAHundredthOfOne)
{
    struct Row
    {
        float x;
        double seconds;
    };
    for (const Row& row : { Row{ 0.0f, 6.0 }, Row{ 1.0f, 0.01 }, Row{ 0.5f, 6.0 / 300.5 } })
    {
        Lfo l;
        l.setSampleRate (10000.0f);
        l.setRateRange (100.0f, 6.0f);
        l.setRate (row.x);
        EXPECT_NEAR (l.cycleSamples (), row.seconds * 10000.0, row.seconds * 1.0) << row.x;
    }
}

TEST (LfoTest, Shapes)
{
    constexpr int cycle = 1000;
    for (const Lfo::Shape shape : periodic)
    {
        Lfo l = lfo (shape, 44.1f);
        const std::vector<float> out = ticks (l, cycle);
        for (int n = 10; n < cycle - 10; ++n)
        {
            // From the reset on: a triangle rises from -1 to 1 and back, the saws cover one ramp.
            const double t = static_cast<double> (n + 1) / cycle;
            const double triangle = t < 0.5 ? 4.0 * t - 1.0 : 3.0 - 4.0 * t;
            double expected = 0.0;
            if (shape == Lfo::triangle)
                expected = triangle;
            else if (shape == Lfo::roundedTriangle)
                expected = std::sin (triangle);
            else if (shape == Lfo::risingSaw)
                expected = 2.0 * t - 1.0;
            else if (shape == Lfo::fallingSaw)
                expected = 1.0 - 2.0 * t;
            else
                expected = t < 0.5 ? 1.0 : -1.0;
            if (shape == Lfo::square && std::abs (n - cycle / 2) < 4)
                continue; // about to turn
            EXPECT_NEAR (static_cast<double> (out[static_cast<std::size_t> (n)]), expected, 0.01)
                << shape << " sample " << n;
        }
    }
}

// Half a unit a sample. The bouncing shapes step back at their ends; the saws jump to exactly the other end.
TEST (LfoTest, ShapesSampleBySample)
{
    struct Row
    {
        Lfo::Shape shape;
        std::vector<float> out;
    };
    const float sine = std::sin (0.5f);
    for (const Row& row :
         { Row{ Lfo::triangle, { -0.5f, 0, 0.5f, 0.5f, 0, -0.5f, -0.5f, 0, 0.5f, 0.5f } },
           Row{ Lfo::roundedTriangle, { -sine, 0, sine, sine, 0, -sine, -sine, 0, sine, sine } },
           Row{ Lfo::square, { 1, 1, 1, 1, -1, -1, -1, 1, 1, 1, -1 } },
           Row{ Lfo::risingSaw, { -0.75f, -0.5f, -0.25f, 0, 0.25f, 0.5f, 0.75f, -1, -0.75f } },
           Row{ Lfo::fallingSaw, { 0.75f, 0.5f, 0.25f, 0, -0.25f, -0.5f, -0.75f, 1, 0.75f } } })
    {
        Lfo l = lfo (row.shape, 1000.0f, 8000.0f);
        for (std::size_t n = 0; n < row.out.size (); ++n)
            EXPECT_FLOAT_EQ (l.tick (), row.out[n]) << row.shape << " sample " << n;
    }
}

TEST (LfoTest, OutputStaysInRange)
{
    for (std::int32_t shape = 0; shape <= 9; ++shape) // above 6 counts as 6
    {
        for (const float hz : { 0.0f, 0.1f, 99.0f, 20000.0f, 1e9f })
        {
            Lfo l = lfo (shape, hz);
            const float limit = shape == Lfo::roundedTriangle ? 0.8415f : 1.0f;
            for (const float sample : ticks (l, 3000))
                ASSERT_LE (std::abs (sample), limit) << shape << " at " << hz;
        }
    }
}

TEST (LfoTest, RandomShapesFollowTheOneSequence)
{
    // state x 214013 + 2531011, bits 16 to 30, from state 1.
    std::uint32_t state = 1;
    const auto next = [&state]
    {
        state = state * 214013u + 2531011u;
        return static_cast<float> ((state >> 16) & 0x7FFFu) / 32767.0f * 2.0f - 1.0f;
    };
    Lfo noise;
    noise.setShape (Lfo::noise); // needs no rate
    for (int n = 0; n < 1000; ++n)
        ASSERT_FLOAT_EQ (noise.tick (), next ());

    state = 1;
    Lfo held = lfo (Lfo::sampleAndHold, 100.0f, 10000.0f); // 100 samples a cycle; the reset draws one
    std::vector<int> changes;
    float last = next ();
    for (int n = 0; n < 1000; ++n)
    {
        const float now = held.tick ();
        if (now != last)
        {
            EXPECT_FLOAT_EQ (now, next ());
            changes.push_back (n);
        }
        last = now;
    }
    EXPECT_NEAR (static_cast<double> (changes.size ()), 9.5, 1.0);
    for (std::size_t n = 1; n < changes.size (); ++n)
        EXPECT_NEAR (changes[n] - changes[n - 1], 100, 1);
}

TEST (LfoTest, ANumberAboveTheShapesIsSampleAndHold)
{
    Lfo nine = lfo (9, 50.0f);
    Lfo six = lfo (Lfo::sampleAndHold, 50.0f);
    EXPECT_EQ (ticks (nine, 5000), ticks (six, 5000));
}

TEST (LfoTest, WithoutARateItStands)
{
    for (const Lfo::Shape shape : periodic)
    {
        Lfo l = lfo (shape, 0.0f);
        const std::vector<float> out = ticks (l, 100);
        EXPECT_EQ (std::set<float> (out.begin () + 2, out.end ()).size (), 1u) << shape;
    }
}
