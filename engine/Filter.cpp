#include "engine/Filter.h"

#include <algorithm>

#include "engine/NoteTable.h"

namespace
{
constexpr float twoPi = 6.28319f;
constexpr float dcHz = 10.0f;
constexpr float colourHz = 1000.0f;
constexpr float largestDcCoefficient = 1.0f;     // above, the DC blocker would overshoot
constexpr float largestColourCoefficient = 1.2f; // above, the colour section would run away

constexpr float lowestCutoffHz = 100.0f;
constexpr float highestCutoffHz = 6500.0f;
constexpr double cutoffSpanHz = 6460.0;
constexpr int trackingStart = 48; // MIDI note
}

void Filter::setSampleRate (float hz)
{
    sampleRate = hz;
    angularStep = twoPi / hz;
    settings.dcCoefficient = std::min (dcHz * angularStep, largestDcCoefficient);
    settings.colourCoefficient = std::min (colourHz * angularStep, largestColourCoefficient);
    if (settings.coefficient == 0.0f)
        settings.coefficient = angularStep;
    settings.coefficient = std::min (settings.coefficient, highestStableCoefficient ());
}

// The section's poles reach the unit circle where f^2 + 2 q f = 4; stay a little below.
float Filter::highestStableCoefficient () const
{
    const float q = settings.damping;
    return 0.98f * (std::sqrt (q * q + 4.0f) - q);
}

void Filter::setCutoff (float control)
{
    const double squared = static_cast<double> (control) * static_cast<double> (control);
    double hz = 0.0;
    if (keyTrack)
        hz = (squared + 0.02) * 0.06 * static_cast<double> (keyTrackFactor[static_cast<std::size_t> (key)]) *
             cutoffSpanHz;
    else
        hz = squared * cutoffSpanHz + static_cast<double> (lowestCutoffHz);
    cutoff = std::clamp (static_cast<float> (hz), lowestCutoffHz, highestCutoffHz);
    settings.coefficient = std::min (cutoff * angularStep, highestStableCoefficient ());
}

float Filter::keyTrackedBase (float target)
{
    const float distance = std::abs (target - base);
    const float slew =
        distance / ((sampleRate / 200.0f) * (1.0f / distance)); // distance^2 x 200 / sample rate
    if (target != base)
    {
        base = std::clamp (base, 0.0f, 1.0f);
        base += target > base ? slew : -slew;
    }
    return base;
}

void Filter::setKey (int note)
{
    key = std::clamp (note - trackingStart, 0, 127);
}

void Filter::setResonance (float r)
{
    settings.damping = 2.0f * (1.0f - std::clamp (r, 0.3f, 0.968f));
    settings.coefficient = std::min (settings.coefficient, highestStableCoefficient ());
}

void Filter::setType (std::int32_t t)
{
    // It is the old type that is looked at. That is meant.
    if (settings.type >= lowPass && settings.type <= highPass)
        settings.type = t;
}

void Filter::processRun (float* samples, const float* coefficients, int count)
{
    Memory m = memory;
    const Settings s = settings;
    for (int n = 0; n < count; ++n)
        samples[n] = step (m, s, coefficients[n], samples[n]);
    memory = m;
}
