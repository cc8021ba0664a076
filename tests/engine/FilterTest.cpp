#include "engine/Filter.h"

#include <cmath>
#include <complex>
#include <random>
#include <tuple>

#include <gtest/gtest.h>

using namespace engine;

namespace
{
using Complex = std::complex<double>;

constexpr double twoPi = 6.28318530717958648;
Filter filter (float rate, std::int32_t type, float resonance, bool drives = false, bool smooths = false)
{
    Filter f;
    f.setSampleRate (rate);
    f.setType (type);
    f.setResonance (resonance);
    f.setKeyTrack (false);
    f.setHighQuality (drives);
    f.setSmooth (smooths);
    return f;
}

// What the section does to e^jw, from its difference equations: with z one sample ahead
//   hp = x - low/z - q band/z,  band (1 - 1/z) = f hp,  low (1 - 1/z) = f band.
Complex section (std::int32_t type, double f, double q, double w)
{
    const Complex delay = std::polar (1.0, -w);
    const Complex difference = 1.0 - delay;
    const Complex d = difference * difference + q * f * delay * difference + f * f * delay;
    if (type == filterCore::lowPass)
        return f * f / d;
    return type == filterCore::bandPass ? f * difference / d : difference * difference / d;
}

// One pole towards the input; and for signals too small to be clipped the drive stage: feedback, DC blocker
// (a sample late), and a share of a band.
Complex pole (double c, double w)
{
    return c / (1.0 - (1.0 - c) * std::polar (1.0, -w));
}
Complex smallDrive (double rate, double w)
{
    const Complex delay = std::polar (1.0, -w);
    const Complex band = section (filterCore::bandPass, twoPi * 1000.0 / rate, 1.0, w);
    return (1.0 - delay * pole (twoPi * 10.0 / rate, w)) * (1.0 + 0.4 * band) / (1.0 - 0.4 * delay);
}

Complex measure (Filter f, double w)
{
    constexpr float size = 1.0f / 1024.0f;
    Complex sum = 0.0;
    for (int n = 0; n < 60000; ++n)
        sum += static_cast<double> (f.process (n == 0 ? size : 0.0f) / size) * std::polar (1.0, -w * n);
    return sum;
}
}

TEST (FilterTest, ResponseIsThatOfItsStages)
{
    using namespace filterCore;
    // type, resonance and its damping 2 (1 - r) with r within 0.3 .. 0.968, control, rate, drive, smoothing
    using Row = std::tuple<std::int32_t, float, double, float, float, bool, bool>;
    for (const auto& [type, resonance, damping, control, rate, drives, smooths] :
         { Row{ lowPass, 0.5f, 1.0, 0.4f, 44100, false, false },
           Row{ lowPass, 0.0f, 1.4, 0.1f, 96000, true, false },
           Row{ bandPass, 1.0f, 0.064, 0.5f, 44100, false, false },
           Row{ bandPass, -3.0f, 1.4, 0.8f, 48000, true, true },
           Row{ highPass, 0.9f, 0.2, 0.8f, 44100, true, true },
           Row{ lowPass, 0.8f, 0.4, 0.3f, 44100, true, true } })
    {
        Filter f = filter (rate, type, resonance, drives, smooths);
        f.setCutoff (control);
        for (int n = 0; n < 200; ++n) // the extra pole trails the cutoff by 0.01 a sample
            f.process (0.0f);
        const double hz = static_cast<double> (control * control) * 6460.0 + 100.0;
        const double coefficient = twoPi * hz / static_cast<double> (rate);
        for (const double probe : { 5.0, 0.5 * hz, hz, 2.0 * hz, 15000.0 })
        {
            const double w = twoPi * probe / static_cast<double> (rate);
            Complex expected = section (type, coefficient, damping, w);
            if (drives)
                expected *= smallDrive (static_cast<double> (rate), w);
            double tolerance = 1e-3 * std::abs (expected) + 1e-3;
            if (smooths && type == lowPass) // on the others it has no effect
            {
                expected *= pole (coefficient, w);
                tolerance += 0.03 * std::abs (expected); // its coefficient sways about the cutoff by a step
            }
            EXPECT_LT (std::abs (measure (f, w) - expected), tolerance)
                << type << " " << hz << " at " << probe;
        }
    }
}

// The first sample of a fresh high-pass is the drive stage's own: its clip, and what the band adds to it. The
// lower ceiling is the smaller one.
TEST (FilterTest, DriveStageCeilings)
{
    using Row = std::tuple<float, double>;
    for (const auto& [in, out] :
         { Row{ 1.0f, 0.875 }, Row{ -1.0f, -0.875 }, Row{ 2.0f, 1.5 }, Row{ 4.0f, 2.0 }, Row{ -4.0f, -2.0 },
           Row{ 4.01f, 2.0 }, Row{ -4.01f, -1.0 }, Row{ 1e6f, 2.0 }, Row{ -1e6f, -1.0 } })
    {
        Filter f = filter (44100.0f, filterCore::highPass, 0.5f, true);
        EXPECT_NEAR (f.process (in), out * (1.0 + 0.4 * twoPi * 1000.0 / 44100.0), 1e-5) << in;
    }
}

// The first target is taken at once. From then on the base moves by the square of its distance: fast first.
TEST (FilterTest, BaseOfTheCutoffMovesFastFirstAndSettles)
{
    for (const float rate : { 1000.0f, 44100.0f, 192000.0f })
    {
        Filter f = filter (rate, 0, 0.5f);
        double expected = 0.3;
        EXPECT_EQ (f.keyTrackedBase (0.3f), 0.3f);
        for (int n = 0; n < 20000; ++n)
        {
            const double target = n < 10000 ? 0.8 : 0.1;
            const double distance = target - expected;
            expected += std::copysign (distance * distance * 200.0 / static_cast<double> (rate), distance);
            ASSERT_NEAR (f.keyTrackedBase (static_cast<float> (target)), expected, 2e-3) << rate << " " << n;
        }
    }
    Filter f = filter (44100.0f, 0, 0.5f); // on the spot, and a hair away from it, nothing divides by zero
    for (const float target : { 0.0f, 1e-45f, 0.0f, 1e-30f })
        EXPECT_NEAR (f.keyTrackedBase (target), 0.0f, 1e-6f);
}

// Whatever is set last, and with a cutoff that jumps all the time, which pumps the section up at low rates.
TEST (FilterTest, StableAtEveryRate)
{
    std::mt19937 random (9);
    const auto upTo = [&random] (unsigned end) { return static_cast<float> (random () % (end + 1)); };
    for (const float rate : { 1e3f, 2e3f, 4e3f, 8e3f, 11025.0f, 16e3f, 22050.0f, 32e3f, 44100.0f, 1e6f })
    {
        for (int variant = 0; variant < 48; ++variant)
        {
            Filter f = filter (1000000.0f, variant % 3, 0.968f, variant % 2 == 0, variant % 4 < 2);
            f.setCutoff (1.0f);
            f.setSampleRate (rate);
            f.setResonance (upTo (3) / 3.0f);
            float largest = 0.0f;
            for (int n = 0; n < 8000; ++n)
            {
                if (variant % 8 < 4 && n % 3 == 0)
                    f.setCutoff (upTo (100) / 100.0f);
                largest = std::max (largest, std::abs (f.process (upTo (2000) / 1000.0f - 1.0f)));
            }
            // Also not NaN.
            EXPECT_LT (largest, rate > 4e3f && rate < 44100.0f ? 30.0f : 500.0f) << rate << " " << variant;
        }
    }
}

TEST (FilterTest, DiesAwayToExactZeroAndHeals)
{
    for (int variant = 0; variant < 6; ++variant)
    {
        Filter f = filter (44100.0f, variant % 3, 0.5f, variant < 3, true);
        f.setCutoff (0.3f);
        float last = 1.0f;
        int denormals = 0;
        for (int n = 0; n < 44100 * 4; ++n)
        {
            last = f.process (n < 1000 ? 1.0f : 0.0f);
            denormals += std::fpclassify (last) == FP_SUBNORMAL ? 1 : 0;
        }
        EXPECT_EQ (last, 0.0f) << variant;
        EXPECT_LT (denormals, 44100 / 5) << variant; // the output is no memory and may pass through them

        f.process (1.0f);
        Filter healed = f;
        healed.heal ();
        EXPECT_EQ (healed.process (0.5f), f.process (0.5f)) << "what is a number carries over";
        f.process (std::numeric_limits<float>::quiet_NaN ());
        f.heal ();
        EXPECT_TRUE (std::isfinite (f.process (1.0f))) << variant;
    }
}
