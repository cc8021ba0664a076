#include "engine/Lfo.h"

#include <algorithm>

#include "parameters/KnobLaws.h"

namespace engine
{
namespace
{
// sin x for |x| <= 1.1 to within 1e-11, by its power series. Written out because the systems' libraries
// differ in the last digits, and a render must be the same on both.
float sineOfPhase (float phase)
{
    const double x = phase;
    const double xx = x * x;
    const double series =
        1.0 - xx / 6.0 *
                  (1.0 - xx / 20.0 *
                             (1.0 - xx / 42.0 * (1.0 - xx / 72.0 * (1.0 - xx / 110.0 * (1.0 - xx / 156.0)))));
    return static_cast<float> (x * series);
}

constexpr float sawEnd = 2.0f;    // the saws run between -2 and +2
constexpr float bounceEnd = 1.0f; // the bouncing shapes between -1 and +1
}

void Lfo::setShape (std::int32_t newShape)
{
    shape = std::min<std::int32_t> (newShape, sampleAndHold);
}

void Lfo::setRateRange (float fastestHz, float longestPeriod)
{
    maxHz = fastestHz;
    minPeriod = std::max (longestPeriod, 1.0f);
}

void Lfo::setRate (float x)
{
    step = unitsPerCycle / (sampleRate * minPeriod / parameters::lfoCyclesInPeriod (x, maxHz, minPeriod));
}

void Lfo::setRateHz (float hz)
{
    step = unitsPerCycle / (sampleRate / std::clamp (hz, 0.0f, sampleRate));
}

void Lfo::resetPhase (float steps)
{
    const float offset = steps * step;
    switch (shape)
    {
    case risingSaw:
        phase = 2.0f * startPhase + offset;
        break;
    case sampleAndHold:
        phase = 2.0f * startPhase + offset;
        held = random.nextBipolar ();
        break;
    case fallingSaw:
        phase = -2.0f * startPhase + offset;
        break;
    case noise:
        break;
    default:
        phase = startPhase + offset;
        rising = true;
        break;
    }
}

// At its ends the phase steps back by one step instead of reflecting.
void Lfo::bounce ()
{
    if (rising)
    {
        phase += step;
        if (phase >= bounceEnd)
        {
            phase -= step;
            rising = false;
        }
    }
    else
    {
        phase -= step;
        if (phase <= -bounceEnd)
        {
            phase += step;
            rising = true;
        }
    }
}

float Lfo::tick ()
{
    switch (shape)
    {
    case risingSaw:
        phase += step;
        if (phase >= sawEnd)
            phase = -sawEnd;
        return phase * 0.5f;
    case square:
    {
        // The sample that turns still belongs to the direction it came from.
        const bool wasRising = rising;
        bounce ();
        return wasRising ? 1.0f : -1.0f;
    }
    case fallingSaw:
        phase -= step;
        if (phase <= -sawEnd)
            phase = sawEnd;
        return phase * 0.5f;
    case roundedTriangle:
        bounce ();
        return sineOfPhase (phase);
    case noise:
        return random.nextBipolar ();
    case sampleAndHold:
        phase += step;
        if (phase >= sawEnd)
        {
            phase = -sawEnd;
            held = random.nextBipolar ();
        }
        return held;
    default:
        bounce ();
        return phase;
    }
}
}
