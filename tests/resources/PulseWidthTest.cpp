#include "audition/PulseWidth.h"
#include "audition/Measures.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

namespace
{
constexpr int partialCount = 40; // to 5.2 kHz at middle C

std::vector<double> partialsAt (double width)
{
    return audition::partialLevels (audition::pulseTone (static_cast<float> (width)),
                                    audition::pulseToneHz (60), partialCount);
}

// How far two spectra are apart: root mean square of the amplitude differences, as a share of the louder one.
double apart (const std::vector<double>& a, const std::vector<double>& b)
{
    double difference = 0.0;
    double powerA = 0.0;
    double powerB = 0.0;
    for (std::size_t n = 0; n < a.size (); ++n)
    {
        const double x = std::pow (10.0, a[n] / 20.0);
        const double y = std::pow (10.0, b[n] / 20.0);
        difference += (x - y) * (x - y);
        powerA += x * x;
        powerB += y * y;
    }
    return std::sqrt (difference / std::max (powerA, powerB));
}

TEST (PulseWidth, TurnsSmoothlyFromSquareToThinPulse)
{
    constexpr int steps = 40;
    std::vector<double> last = partialsAt (1.0);
    for (int step = 1; step <= steps; ++step)
    {
        const double width = 1.0 - static_cast<double> (step) / steps;
        const std::vector<double> now = partialsAt (width);
        EXPECT_LT (apart (now, last), 0.15) << "at " << width;
        last = now;
    }
}

TEST (PulseWidth, ChangesTheTimbreOverMostOfItsTravel)
{
    const std::vector<double> square = partialsAt (1.0);
    EXPECT_LT (square[1], square[0] - 35.0); // no even partials
    EXPECT_GT (apart (partialsAt (0.75), square), 0.25);
    EXPECT_GT (apart (partialsAt (0.5), partialsAt (0.75)), 0.25);
    EXPECT_GT (apart (partialsAt (0.25), partialsAt (0.5)), 0.05);
    const std::vector<double> thin = partialsAt (0.0);
    EXPECT_GT (thin[1], thin[0] - 3.0);
}

// Hard steps land on whole samples, which costs a pulse some 25 dB at middle C; scattered steps in the table
// would cost far more.
TEST (PulseWidth, MakesNoNoise)
{
    for (const double width : { 1.0, 0.995, 0.9, 0.75, 0.5, 0.25, 0.0 })
        EXPECT_LT (audition::inharmonicShare (audition::pulseTone (static_cast<float> (width)),
                                              audition::pulseToneHz (60)),
                   -22.0)
            << "at " << width;
}
}
