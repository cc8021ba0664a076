#include "engine/Filter.h"

#include <cmath>
#include <complex>
#include <random>
#include <vector>

#include <gtest/gtest.h>

using namespace engine;

namespace
{
using Complex = std::complex<double>;

constexpr double pi = 3.14159265358979323846;
constexpr float rates[] = { 1000.0f,  2000.0f,  4000.0f,  8000.0f,   11025.0f,  22050.0f,
                            44100.0f, 48000.0f, 96000.0f, 192000.0f, 1000000.0f };

Filter filter (float rate, std::int32_t type, float resonance, bool drives = false)
{
    Filter f;
    f.setSampleRate (rate);
    f.setType (type);
    f.setResonance (resonance);
    f.setKeyTrack (false);
    f.setHighQuality (drives);
    return f;
}

// Response of the section to e^jw, from its difference equations: with z one sample ahead
//   hp = x - low/z - q band/z,  band (1 - 1/z) = f hp,  low (1 - 1/z) = f band.
Complex response (std::int32_t type, double f, double q, double w)
{
    const Complex delay = std::polar (1.0, -w);
    const Complex difference = 1.0 - delay;
    const Complex d = difference * difference + q * f * delay * difference + f * f * delay;
    if (type == filterCore::lowPass)
        return f * f / d;
    return type == filterCore::bandPass ? f * difference / d : difference * difference / d;
}

Complex measure (Filter f, double w, int samples)
{
    Complex sum = 0.0;
    for (int n = 0; n < samples; ++n)
        sum += static_cast<double> (f.process (n == 0 ? 1.0f : 0.0f)) * std::polar (1.0, -w * n);
    return sum;
}

// The whole filter in double precision, step by step as it is described.
class Model
{
public:
    Model (double rate, double f, double q) : fc (f), damping (q), step (6.28319 / rate) {}

    double process (double x)
    {
        x += 0.4 * driveMemory;
        driveMemory = x;
        if (std::abs (x) > 4.0)
            x = x > 0.0 ? 2.0 : -1.0;
        else
            x *= 1.0 - std::abs (x) / 8.0;
        const double oldDc = dc;
        dc += (x - dc) * 10.0 * step;
        x -= oldDc;
        const double high2 = x - (low2 + band2);
        band2 += high2 * 1000.0 * step;
        low2 += band2 * 1000.0 * step;
        x += band2 * 0.4;
        const double high = x - (low + band * damping);
        band += high * fc;
        low += band * fc;
        return low;
    }

private:
    double fc, damping, step;
    double driveMemory = 0.0, dc = 0.0, band2 = 0.0, low2 = 0.0, band = 0.0, low = 0.0;
};
}

TEST (FilterTest, ResponseIsThatOfTheSection)
{
    for (const std::int32_t type : { filterCore::lowPass, filterCore::bandPass, filterCore::highPass })
    {
        for (const float resonance : { 0.0f, 0.5f, 0.9f })
        {
            for (const float control : { 0.1f, 0.4f, 0.8f })
            {
                for (const float rate : { 44100.0f, 96000.0f })
                {
                    Filter f = filter (rate, type, resonance);
                    f.setCutoff (control);
                    const double hz = static_cast<double> (control * control) * 6460.0 + 100.0;
                    EXPECT_NEAR (static_cast<double> (f.cutoffHz ()), hz, 0.01);
                    const double q = 2.0 * (1.0 - std::max (static_cast<double> (resonance), 0.3));
                    for (const double probe : { 50.0, 0.5 * hz, hz, 2.0 * hz, 15000.0 })
                    {
                        const double w = 2.0 * pi * probe / static_cast<double> (rate);
                        const Complex expected =
                            response (type, 2.0 * pi * hz / static_cast<double> (rate), q, w);
                        const Complex measured = measure (f, w, 60000);
                        EXPECT_LT (std::abs (measured - expected), 2e-4 + 2e-4 * std::abs (expected))
                            << "type " << type << ", resonance " << resonance << ", cutoff " << hz << ", at "
                            << probe << " Hz";
                    }
                }
            }
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
        EXPECT_NEAR (static_cast<double> (f.cutoffHz ()), row.hz, 0.001 * row.hz)
            << row.control << " " << row.note;
    }
}

TEST (FilterTest, ResonanceIsHeldWithinItsLimits)
{
    for (const float resonance : { 0.968f, 1.0f, 50.0f })
    {
        Filter f = filter (44100.0f, filterCore::bandPass, resonance);
        f.setCutoff (0.5f);
        const double peak = std::abs (measure (f, 2.0 * pi * 1715.0 / 44100.0, 60000));
        EXPECT_NEAR (peak, 1.0 / (2.0 * (1.0 - 0.968)), 2.0) << resonance; // 1 / q
    }
    Filter low = filter (44100.0f, filterCore::bandPass, -1.0f);
    low.setCutoff (0.5f);
    EXPECT_NEAR (std::abs (measure (low, 2.0 * pi * 1715.0 / 44100.0, 5000)), 1.0 / 1.4, 0.2);
}

// The first sample of a fresh high-pass is the drive stage's own: its clip, and what the 1 kHz band adds.
TEST (FilterTest, DriveStageCeilings)
{
    struct Row
    {
        float in;
        double out;
    };
    for (const Row& row :
         { Row{ 0.0f, 0.0 }, Row{ 1.0f, 0.875 }, Row{ -1.0f, -0.875 }, Row{ 2.0f, 1.5 }, Row{ 4.0f, 2.0 },
           Row{ -4.0f, -2.0 }, Row{ 4.01f, 2.0 }, Row{ -4.01f, -1.0 }, Row{ 1e6f, 2.0 }, Row{ -1e6f, -1.0 } })
    {
        Filter f = filter (44100.0f, filterCore::highPass, 0.5f, true);
        const double band = 1000.0 * 6.28319 / 44100.0;
        EXPECT_NEAR (static_cast<double> (f.process (row.in)), row.out * (1.0 + 0.4 * band), 1e-5) << row.in;
    }
}

TEST (FilterTest, DrivenSoundIsThatOfTheModel)
{
    std::mt19937 random (3);
    std::uniform_real_distribution<float> noise (-6.0f, 6.0f);
    for (const float rate : { 22050.0f, 44100.0f, 96000.0f })
    {
        Filter f = filter (rate, filterCore::lowPass, 0.8f, true);
        f.setCutoff (0.5f);
        Model model (static_cast<double> (rate), 1715.0 * 6.28319 / static_cast<double> (rate), 0.4);
        for (int n = 0; n < 5000; ++n)
        {
            const float in = noise (random);
            ASSERT_NEAR (static_cast<double> (f.process (in)), model.process (static_cast<double> (in)), 1e-3)
                << rate << " sample " << n;
        }
    }
}

TEST (FilterTest, SmoothingAddsOnePoleToTheLowPassAlone)
{
    Filter plain = filter (44100.0f, filterCore::lowPass, 0.3f);
    plain.setCutoff (0.5f); // coefficient 0.244
    Filter smooth = plain;
    smooth.setSmooth (true);
    for (int n = 0; n < 100; ++n) // its coefficient starts at the bottom and trails by 0.01 a sample
        smooth.process (0.0f);
    for (const double hz : { 20.0, 1715.0, 8000.0 })
    {
        const double w = 2.0 * pi * hz / 44100.0;
        const double c = 1715.0 * 2.0 * pi / 44100.0;
        const double pole = c / std::abs (1.0 - (1.0 - c) * std::polar (1.0, -w));
        const double ratio = std::abs (measure (smooth, w, 20000)) / std::abs (measure (plain, w, 20000));
        EXPECT_NEAR (ratio, pole, 0.05 * pole) << hz;
    }
    for (const std::int32_t type : { filterCore::bandPass, filterCore::highPass })
    {
        plain.setType (type);
        smooth.setType (type);
        const double w = 2.0 * pi * 1000.0 / 44100.0;
        Filter a = filter (44100.0f, type, 0.3f);
        Filter b = a;
        b.setSmooth (true);
        EXPECT_EQ (measure (a, w, 1000), measure (b, w, 1000));
    }
}

// The check looks at the type there is, so a foreign number gets in, and stays.
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
            const auto base = static_cast<double> (f.keyTrackedBase (static_cast<float> (target)));
            ASSERT_NEAR (base, expected, 2e-3) << rate << " update " << n;
        }
        EXPECT_NEAR (expected, 0.1, rate > 100000.0f ? 0.7 : 0.05);
    }
    // On the spot, and a hair away from it, nothing divides by zero.
    Filter f = filter (44100.0f, 0, 0.5f);
    for (const float target : { 0.0f, 1e-45f, 0.0f, 1e-30f })
        EXPECT_NEAR (f.keyTrackedBase (target), 0.0f, 1e-6f);
}

TEST (FilterTest, StableAtEveryRateCutoffAndResonance)
{
    std::mt19937 random (9);
    for (const float rate : rates)
    {
        for (const float resonance : { 0.0f, 0.5f, 0.8f, 0.968f })
        {
            for (const float control : { 0.0f, 0.3f, 0.6f, 1.0f })
            {
                for (int variant = 0; variant < 12; ++variant)
                {
                    Filter f = filter (rate, variant % 3, resonance, variant >= 6);
                    f.setSmooth (variant % 6 >= 3);
                    f.setCutoff (control);
                    float largest = 0.0f;
                    for (int n = 0; n < 4000; ++n)
                    {
                        const float in =
                            n < 3000 ? static_cast<float> (random () % 2001u) / 250.0f - 4.0f : 0.0f;
                        const float out = f.process (in);
                        ASSERT_TRUE (std::isfinite (out));
                        largest = std::max (largest, std::abs (out));
                    }
                    EXPECT_LT (largest, 500.0f) << rate << " " << resonance << " " << control;
                }
            }
        }
    }
}

// A resonance turned up after the cutoff is as safe as the other way round.
TEST (FilterTest, StableWhateverIsSetLast)
{
    for (const float rate : rates)
    {
        Filter f = filter (1000000.0f, filterCore::highPass, 0.968f);
        f.setCutoff (1.0f);
        f.setSampleRate (rate);
        f.setCutoff (1.0f);
        f.setResonance (0.0f);
        for (int n = 0; n < 20000; ++n)
            ASSERT_LT (std::abs (f.process (n % 2 == 0 ? 1.0f : -1.0f)), 100.0f) << rate;
    }
}

TEST (FilterTest, DiesAwayToExactZero)
{
    for (const bool drives : { false, true })
    {
        for (std::int32_t type = 0; type < 3; ++type)
        {
            Filter f = filter (44100.0f, type, 0.5f, drives);
            f.setSmooth (true);
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
            EXPECT_EQ (last, 0.0f) << drives << " " << type;
            // The output is not a memory, and may pass through them for a moment.
            EXPECT_LT (denormals, 44100 / 5) << drives << " " << type;
        }
    }
}

TEST (FilterTest, GroupsEqualSingleFilters)
{
    std::mt19937 random (11);
    for (int round = 0; round < 200; ++round)
    {
        const std::size_t members = 1 + random () % filterCore::lanes;
        std::vector<Filter> single;
        std::vector<std::vector<float>> sounds (members);
        std::vector<std::vector<float>> coefficients (members);
        for (std::size_t m = 0; m < members; ++m)
        {
            Filter f = filter (44100.0f, static_cast<std::int32_t> (round % 3), 0.5f, round % 2 == 0);
            f.setSmooth (round % 4 < 2);
            f.setCutoff (0.2f * static_cast<float> (m + 1));
            f.process (1.0f);
            single.push_back (f);
            sounds[m].resize (random () % 60u);
            coefficients[m].assign (sounds[m].size (), f.coefficient ());
            for (float& sample : sounds[m])
                sample = static_cast<float> (random () % 1000u) / 200.0f - 2.5f;
        }
        std::vector<Filter> grouped (single);
        std::vector<std::vector<float>> results (sounds);
        std::vector<Filter::Run> runs;
        for (std::size_t m = 0; m < members; ++m)
            runs.push_back ({ &grouped[m], results[m].data (), coefficients[m].data (),
                              static_cast<int> (results[m].size ()) });
        Filter::processGroup (runs);
        for (std::size_t m = 0; m < members; ++m)
        {
            for (std::size_t n = 0; n < sounds[m].size (); ++n)
                ASSERT_EQ (results[m][n], single[m].process (sounds[m][n])) << round << " " << m << " " << n;
            ASSERT_EQ (grouped[m].process (0.25f), single[m].process (0.25f)) << "memory " << round;
        }
    }
}
