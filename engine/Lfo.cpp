#include "engine/Lfo.h"

#include <algorithm>
#include <bit>
#include <cmath>

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

// Adds `step` (0 or more) up to `count` times while the phase stays below `end`, and gives exactly what that
// many single additions in 32 bits give. Answers how many were made; the one that would reach the end is not.
//
// Between two powers of two all floats lie equally far apart, and the additions that stay there are all
// rounded by the same amount, but perhaps for the first two (a tie goes to the even neighbour, from where all
// later ties go the same way). So the rest of such a stretch is one multiplication, and a cycle is some fifty
// stretches however many samples it has.
std::int64_t climb (float& phase, float step, float end, std::int64_t count)
{
    const auto inOneStretch = [] (float a, float b)
    { return std::signbit (a) == std::signbit (b) && std::ilogb (a) == std::ilogb (b); };
    std::int64_t made = 0;
    for (int inStretch = 0; made < count; ++made)
    {
        const float next = phase + step;
        if (next >= end)
            break;
        if (next == phase) // the step is lost beside the phase, and so are all that follow
            return count;
        inStretch = inOneStretch (phase, next) ? inStretch + 1 : 0;
        const float before = phase;
        phase = next;
        if (inStretch < 3)
            continue;
        const double each = static_cast<double> (phase) - static_cast<double> (before);
        const double lowerPower = std::ldexp (1.0, std::ilogb (phase));
        const double stretchEnd = phase > 0.0f ? 2.0 * lowerPower : -lowerPower;
        const double room =
            (std::min (stretchEnd, static_cast<double> (end)) - static_cast<double> (phase)) / each;
        const double many = std::min (std::floor (room) - 1.0, static_cast<double> (count - made - 1));
        if (many < 1.0)
            continue;
        phase = static_cast<float> (static_cast<double> (phase) + many * each);
        made += static_cast<std::int64_t> (many);
    }
    return made;
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

double Lfo::cyclePosition () const
{
    switch (shape)
    {
    case risingSaw:
    case sampleAndHold:
        return (static_cast<double> (phase) + 2.0) / 4.0;
    case fallingSaw:
        return (2.0 - static_cast<double> (phase)) / 4.0;
    default:
        return (rising ? static_cast<double> (phase) + 1.0 : 3.0 - static_cast<double> (phase)) / 4.0;
    }
}

void Lfo::setCyclePosition (double fraction)
{
    if (shape == noise)
        return;
    const double position = cyclePosition ();
    double apart = fraction - position;
    apart -= std::round (apart);
    constexpr double nearEnough = 2.0; // steps
    if (std::abs (apart) * static_cast<double> (unitsPerCycle) <= nearEnough * static_cast<double> (step))
        return;
    // A cycle that has begun a little early waits for the song: going back over its start would draw the
    // random level of sample and hold twice.
    constexpr double little = 1.0 / 64.0;
    const bool early = position + apart < 0.0 && apart > -little;
    const auto units = early ? 0.0f : static_cast<float> (fraction) * unitsPerCycle;
    switch (shape)
    {
    case risingSaw:
        phase = 2.0f * startPhase + units;
        break;
    case sampleAndHold:
        phase = 2.0f * startPhase + units;
        if (position + apart >= 1.0 || std::abs (apart) >= little)
            held = random.nextBipolar ();
        break;
    case fallingSaw:
        phase = -2.0f * startPhase - units;
        break;
    default:
        rising = units < 2.0f;
        phase = rising ? startPhase + units : 3.0f - units;
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

// The rising phases; the falling one is their mirror image, down to the rounding.
void Lfo::advanceSaw (std::int64_t ticks)
{
    const float sign = shape == fallingSaw ? -1.0f : 1.0f;
    while (ticks > 0)
    {
        float mirrored = sign * phase;
        ticks -= climb (mirrored, step, sawEnd, ticks);
        phase = sign * mirrored;
        if (ticks > 0)
        {
            tick (); // the step that ends the cycle
            --ticks;
        }
    }
}

void Lfo::advanceBounce (std::int64_t ticks)
{
    while (ticks > 0)
    {
        const float sign = rising ? 1.0f : -1.0f;
        float mirrored = sign * phase;
        ticks -= climb (mirrored, step, bounceEnd, ticks);
        phase = sign * mirrored;
        if (ticks > 0)
        {
            bounce (); // the step that turns
            --ticks;
        }
    }
}

void Lfo::advance (std::int64_t ticks)
{
    switch (shape)
    {
    case noise:
        random.skip (static_cast<std::uint64_t> (std::max<std::int64_t> (ticks, 0)));
        break;
    case risingSaw:
    case fallingSaw:
    case sampleAndHold:
        advanceSaw (ticks);
        break;
    default:
        advanceBounce (ticks);
        break;
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

// The wanted phases of a bouncing shape, if all up to the last and the one before the first lie between the
// same powers of two, 1 being one. Otherwise nothing happens. See climb.
bool Lfo::bounceStraight (float* out, int samples, std::uint64_t wanted)
{
    const float directed = rising ? step : -step;
    const float first = phase + directed;
    const float each = (first + directed) - first;
    const float beyond = first + static_cast<float> (samples) * each;
    constexpr unsigned mantissaBits = 23;
    const bool inOneStretch =
        (std::bit_cast<std::uint32_t> (phase) ^ std::bit_cast<std::uint32_t> (beyond)) >> mantissaBits == 0;
    if (!inOneStretch || std::abs (phase) >= bounceEnd) // beyond it the phase of another shape may be
        return false;
    const auto at = [&] (int n) { return first + static_cast<float> (n) * each; };
    for (; wanted != 0; wanted &= wanted - 1)
        out[std::countr_zero (wanted)] = at (std::countr_zero (wanted));
    phase = at (samples - 1);
    return true;
}

// The sine takes long: it is only taken where it is wanted, and side by side.
void Lfo::roundOff (float* phases, std::uint64_t wanted)
{
    float picked[64];
    const int count = std::popcount (wanted);
    std::uint64_t left = wanted;
    for (int n = 0; n < count; ++n, left &= left - 1)
        picked[n] = phases[std::countr_zero (left)];
    for (int n = 0; n < count; ++n)
        picked[n] = sineOfPhase (picked[n]);
    left = wanted;
    for (int n = 0; n < count; ++n, left &= left - 1)
        phases[std::countr_zero (left)] = picked[n];
}

void Lfo::render (float* out, int samples, std::uint64_t wanted)
{
    Lfo running = *this; // a copy that can live in registers
    switch (shape)
    {
    case triangle:
    case roundedTriangle:
        if (!running.bounceStraight (out, samples, wanted))
        {
            for (int n = 0; n < samples; ++n)
            {
                running.bounce ();
                out[n] = running.phase;
            }
        }
        if (shape == roundedTriangle)
            roundOff (out, wanted);
        break;
    default:
        for (int n = 0; n < samples; ++n)
            out[n] = running.tick ();
        break;
    }
    *this = running;
}
}
