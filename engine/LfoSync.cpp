#include "engine/LfoSync.h"

#include <algorithm>
#include <cmath>

#include "parameters/KnobLaws.h"

namespace engine
{
// False where tempo or division give no rate; the rate is then left alone.
bool LfoSync::setRate (const Transport& transport, float division)
{
    const double tempo = transport.tempo.value_or (0.0);
    if (!(tempo > 0.0) || !std::isfinite (tempo) || !(division > 0.0f))
        return false;
    lfo.setRateHz (static_cast<float> (tempo / static_cast<double> (division)));
    return true;
}

void LfoSync::eventsArrive (const Transport& transport, float division, double sampleRate)
{
    if (!locked && stopped && transport.samplePosition != linedUpPosition)
        lineUp (transport, division, sampleRate);
}

void LfoSync::lineUp (const Transport& transport, float division, double sampleRate)
{
    const double position = transport.samplePosition;
    linedUpPosition = position;
    const bool hasRate = setRate (transport, division);
    lfo.resetPhase ();
    if (!hasRate || !(position > 0.0) || !std::isfinite (position))
        return;
    const double cycle = sampleRate / (*transport.tempo / static_cast<double> (division));
    const double ticks = std::floor (std::fmod (position, cycle)) + 1.0;
    // The cycle of a rate that the LFO cannot run at (it stops at one cycle a sample) is longer than its own.
    const double most = static_cast<double> (lfo.cycleSamples ()) + 1.0;
    lfo.advance (static_cast<std::int64_t> (std::min (ticks, most)));
}

// The song's place is told for the block's first sample. A host that tells no musical position means one that
// begins at 0 and has kept its tempo.
void LfoSync::follow (const Transport& transport, float division, double sampleRate, std::int32_t samplesInto)
{
    constexpr double secondsInMinute = 60.0;
    const double tempo = transport.tempo.value_or (0.0);
    if (!(tempo > 0.0) || !std::isfinite (tempo) || !(division > 0.0f))
        return;
    const double quartersInSample = tempo / (secondsInMinute * sampleRate);
    const double quarters = transport.quarterPosition.value_or (transport.samplePosition * quartersInSample) +
                            samplesInto * quartersInSample;
    const double cycles = quarters * static_cast<double> (parameters::divisorPerQuarter / division);
    if (std::isfinite (cycles))
        lfo.setCyclePosition (cycles - std::floor (cycles));
}

void LfoSync::blockBegins (const Transport& transport, float division, double sampleRate,
                           std::int32_t samplesInto)
{
    constexpr float atDivision = 0.0001f; // quarter notes after a division that still count as on it
    setRate (transport, division);
    const bool stoodStill = stopped;
    stopped = transport.samplePosition == lastPosition;
    if (stopped)
        return;
    lastPosition = transport.samplePosition;
    if (locked)
    {
        follow (transport, division, sampleRate, samplesInto);
        return;
    }
    if (stoodStill && transport.samplePosition != linedUpPosition)
        lineUp (transport, division, sampleRate);
    if (!transport.quarterPosition || !(division > 0.0f))
        return;
    const float cycle = division / parameters::divisorPerQuarter;
    float into = std::fmod (static_cast<float> (*transport.quarterPosition), cycle);
    if (into < 0.0f)
        into += cycle;
    if (into < atDivision)
        lfo.resetPhase ();
}
}
