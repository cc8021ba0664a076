#include "engine/Filter.h"

#include <cmath>
#include <complex>
#include <random>

#include <gtest/gtest.h>

using namespace engine;

namespace
{
using Complex = std::complex<double>;

constexpr double twoPi = 6.28318530717958648;
constexpr float rates[] = { 1000.0f,  2000.0f,  4000.0f,  8000.0f,   11025.0f,  22050.0f,
                            44100.0f, 48000.0f, 96000.0f, 192000.0f, 1000000.0f };

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
    struct Row
    {
        std::int32_t type;
        float resonance;
        double damping; // 2 (1 - r), r within 0.3 .. 0.968
        float control;
        float rate;
        bool drives;
        bool smooths;
    };
    using namespace filterCore;
    for (const Row& row : { Row{ lowPass, 0.5f, 1.0, 0.4f, 44100, false, false },
                            Row{ lowPass, 0.0f, 1.4, 0.1f, 96000, true, false },
                            Row{ bandPass, 1.0f, 0.064, 0.5f, 44100, false, false },
                            Row{ bandPass, -3.0f, 1.4, 0.8f, 48000, true, true },
                            Row{ highPass, 0.9f, 0.2, 0.8f, 44100, true, true },
                            Row{ highPass, 0.5f, 1.0, 0.1f, 96000, false, true },
                            Row{ lowPass, 0.5f, 1.0, 0.5f, 44100, false, true },
                            Row{ lowPass, 0.8f, 0.4, 0.3f, 44100, true, true } })
    {
        Filter f = filter (row.rate, row.type, row.resonance, row.drives, row.smooths);
        f.setCutoff (row.control);
        for (int n = 0; n < 200; ++n) // the extra pole trails the cutoff by 0.01 a sample
            f.process (0.0f);
        const auto rate = static_cast<double> (row.rate);
        const double hz = static_cast<double> (row.control * row.control) * 6460.0 + 100.0;
        for (const double probe : { 5.0, 0.5 * hz, hz, 2.0 * hz, 15000.0 })
        {
            const double w = twoPi * probe / rate;
            Complex expected = section (row.type, twoPi * hz / rate, row.damping, w);
            if (row.drives)
                expected *= smallDrive (rate, w);
            double tolerance = 1e-3 * std::abs (expected) + 1e-3;
            if (row.smooths && row.type == lowPass) // on the others it has no effect
            {
                expected *= pole (twoPi * hz / rate, w);
                tolerance += 0.03 * std::abs (expected); // its coefficient sways about the cutoff by a step
            }
            EXPECT_LT (std::abs (measure (f, w) - expected), tolerance)
                << "type " << row.type << ", cutoff " << hz << ", drive " << row.drives << ", at " << probe;
        }
    }
}

TEST (FilterTest, CutoffByControlAndKey)
{
    struct Row
    {
        float control;
        bool tracks;
        int note;
        double hz;
    };
    const auto tracked = [] (double control, int key)
    { return (control * control + 0.02) * 0.06 * 440.0 * std::exp2 ((key - 69) / 12.0) * 6460.0; };
    for (const Row& row :
         { Row{ 0.0f, false, 60, 100.0 }, Row{ 1.0f, false, 60, 6500.0 }, Row{ -0.5f, false, 60, 1715.0 },
           Row{ 3.0f, false, 60, 6500.0 }, Row{ 0.3f, true, 60, tracked (0.3, 12) },
           Row{ 0.3f, true, 84, tracked (0.3, 36) }, Row{ 0.2f, true, 20, tracked (0.2, 0) },
           Row{ 0.0f, true, 48, 100.0 }, Row{ 1.0f, true, 127, 6500.0 } })
    {
        Filter f = filter (44100.0f, 0, 0.5f);
        f.setKeyTrack (row.tracks);
        f.setKey (row.note);
        f.setCutoff (row.control);
        EXPECT_NEAR (f.cutoffHz (), row.hz, 0.001 * row.hz) << row.control << " " << row.note;
    }
}

// The first sample of a fresh high-pass is the drive stage's own: its clip, and what the band adds to it.
TEST (FilterTest, DriveStageCeilings)
{
    for (const auto& [in, out] :
         { std::pair{ 1.0f, 0.875 }, std::pair{ -1.0f, -0.875 }, std::pair{ 2.0f, 1.5 },
           std::pair{ 4.0f, 2.0 }, std::pair{ -4.0f, -2.0 }, std::pair{ 4.01f, 2.0 },
           std::pair{ -4.01f, -1.0 }, std::pair{ 1e6f, 2.0 }, std::pair{ -1e6f, -1.0 } })
    {
        Filter f = filter (44100.0f, filterCore::highPass, 0.5f, true);
        EXPECT_NEAR (f.process (in), out * (1.0 + 0.4 * twoPi * 1000.0 / 44100.0), 1e-5) << in;
    }
}

// The check looks at the type that there is, so a foreign number gets in, and stays.
TEST (FilterTest, AForeignTypeRepeatsTheLastSampleForGood)
{
    Filter f = filter (44100.0f, filterCore::lowPass, 0.5f);
    f.setCutoff (0.5f);
    const float last = f.process (1.0f);
    f.setType (7);
    EXPECT_EQ (f.process (0.5f), last);
    f.setType (filterCore::lowPass);
    EXPECT_EQ (f.process (-0.5f), last);
}

// The base of the cutoff moves by the square of its distance, so fast first, and settles.
TEST (FilterTest, BaseMovesFastFirstAndSettles)
{
    for (const float rate : rates)
    {
        Filter f = filter (rate, 0, 0.5f);
        double expected = 0.0;
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

TEST (FilterTest, StableAtEveryRateWhateverIsSetLast)
{
    std::mt19937 random (9);
    for (const float rate : rates)
    {
        for (int variant = 0; variant < 96; ++variant)
        {
            const float resonance = std::vector{ 0.0f, 0.5f, 0.8f, 0.968f }[random () % 4u];
            Filter f = filter (1000000.0f, variant % 3, 0.968f, variant % 2 == 0, variant % 4 < 2);
            f.setCutoff (1.0f);
            f.setSampleRate (rate);
            if (variant % 8 < 4)
                f.setCutoff (static_cast<float> (random () % 4u) / 3.0f);
            f.setResonance (resonance);
            float largest = 0.0f;
            for (int n = 0; n < 4000; ++n)
                largest = std::max (
                    largest, std::abs (f.process (static_cast<float> (random () % 2001u) / 250.0f - 4.0f)));
            EXPECT_LT (largest, 500.0f) << rate << " " << resonance << " variant " << variant; // also not NaN
        }
    }
}

TEST (FilterTest, DiesAwayToExactZero)
{
    for (int variant = 0; variant < 6; ++variant)
    {
        Filter f = filter (44100.0f, variant % 3, 0.5f, variant < 3, true);
        f.setCutoff (0.3f);
        for (int n = 0; n < 1000; ++n)
            f.process (n % 50 < 25 ? 1.0f : -1.0f);
        int denormals = 0;
        float last = 1.0f;
        for (int n = 0; n < 44100 * 4; ++n)
        {
            last = f.process (0.0f);
            denormals += std::fpclassify (last) == FP_SUBNORMAL ? 1 : 0;
        }
        EXPECT_EQ (last, 0.0f) << variant;
        EXPECT_LT (denormals, 44100 / 5) << variant; // the output is no memory and may pass through them
    }
}
