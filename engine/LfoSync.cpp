#include "engine/LfoSync.h"

#include <algorithm>
#include <cmath>

#include "parameters/KnobLaws.h"

namespace engine
{
namespace
{
constexpr float atDivision = 0.0001f; // quarter notes after a division that still count as on it
constexpr double mostCatchUpTicks =
    16777216.0; // 2^24, so that no position can hold the audio thread for long
}

// False where tempo or division give no rate.
bool LfoSync::setRate (const Transport& transport, float division)
{
    if (!(transport.tempo > 0.0) || !(division > 0.0f))
        return false;
    lfo.setRateHz (static_cast<float> (transport.tempo / static_cast<double> (division)));
    return true;
}

void LfoSync::followTransport (const Transport& transport, float division)
{
    const bool hasRate = setRate (transport, division);
    stopped = transport.samplePosition == static_cast<double> (lastSamplePosition);
    if (stopped)
        return;
    lastSamplePosition = static_cast<float> (transport.samplePosition);
    if (!hasRate)
        return;
    const float quarters = static_cast<float> (transport.quarterPosition);
    if (std::fmod (quarters, division / parameters::divisorPerQuarter) < atDivision)
        lfo.resetPhase ();
}

void LfoSync::catchUp (const Transport& transport, float division, double sampleRate)
{
    if (!setRate (transport, division))
        return;
    lfo.resetPhase ();
    if (!(transport.samplePosition > 0.0) || !std::isfinite (transport.samplePosition))
        return;
    const double cycle = sampleRate / (transport.tempo / static_cast<double> (division));
    const double remainder = std::fmod (transport.samplePosition, cycle);
    const double most = std::min (mostCatchUpTicks, static_cast<double> (lfo.cycleSamples ()) + 1.0);
    const auto ticks = static_cast<int> (std::min (std::floor (remainder) + 1.0, most));
    for (int tick = 0; tick < ticks; ++tick)
        lfo.tick ();
}
}
