#include "engine/Filter.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "engine/NoteTable.h"
#include "parameters/KnobLaws.h"

namespace engine
{
namespace
{
constexpr float twoPi = 6.28319f;
constexpr float dcHz = 10.0f;
constexpr float colourHz = 1000.0f;
constexpr float largestDcCoefficient = 1.0f;     // above, the DC blocker would overshoot
constexpr float largestColourCoefficient = 1.2f; // above, the colour section would run away

}

void Filter::setSampleRate (float hz)
{
    sampleRate = hz;
    angularStep = twoPi / hz;
    fixed.dc = std::min (dcHz * angularStep, largestDcCoefficient);
    fixed.colour = std::min (colourHz * angularStep, largestColourCoefficient);
    if (mainCoefficient == 0.0f)
        mainCoefficient = angularStep;
    mainCoefficient = std::min (mainCoefficient, highestCoefficient);
}

// The section's poles reach the unit circle where f^2 + 2 q f = 4; stay a little below. That holds for a
// coefficient that stands still; one that jumps, as the LFO's noise makes it, pumps the section up from about
// 1.3 on, which cutoffs reach only below a sample rate of 32.7 kHz.
float Filter::highestStableCoefficient (float damping)
{
    constexpr float highestWhileMoving = 1.25f;
    return std::min (0.98f * (std::sqrt (damping * damping + 4.0f) - damping), highestWhileMoving);
}

void Filter::setCutoff (float control)
{
    cutoff = keyTrack ? parameters::trackedCutoffHz (control, keyTrackFactor[static_cast<std::size_t> (key)])
                      : parameters::cutoffHz (control);
    mainCoefficient = std::min (cutoff * angularStep, highestCoefficient);
}

bool Filter::takeFirstBase (float target)
{
    if (hasBase)
        return false;
    base = target;
    hasBase = true;
    return true;
}

float Filter::keyTrackedBase (float target)
{
    takeFirstBase (target);
    const float distance = std::abs (target - base);
    const float slew = distance / (slewDivisor () * (1.0f / distance)); // distance^2 x 200 / sample rate
    if (target != base)
    {
        base = std::clamp (base, 0.0f, 1.0f);
        base += target > base ? slew : -slew;
    }
    return base;
}

void Filter::heal ()
{
    const float sum = std::abs (memory.drive) + std::abs (memory.dc) + std::abs (memory.colourBand) +
                      std::abs (memory.colourLow) + std::abs (memory.band) + std::abs (memory.low) +
                      std::abs (memory.selected) + std::abs (memory.smoothCoefficient) +
                      std::abs (memory.smooth);
    if (!std::isfinite (sum))
        memory = {};
}

void Filter::setKey (int note)
{
    key = std::clamp (note - parameters::trackingStart, 0, 127);
}

void Filter::setResonance (float r)
{
    damping = parameters::filterDamping (r);
    highestCoefficient = highestStableCoefficient (damping);
    mainCoefficient = std::min (mainCoefficient, highestCoefficient);
}

void Filter::setType (std::int32_t t)
{
    // It is the old type that is looked at: a foreign number still gets in, and then stays until the end, so
    // that a damaged setting is heard as the last good output and not as a jump back and forth.
    if (switches.type >= filterCore::lowPass && switches.type <= filterCore::highPass)
        switches.type = t;
}

namespace
{
// Stores 0 for a denormal.
struct Flushing
{
    static float magnitude (float x) { return std::abs (x); }
    float operator() (float x) const { return magnitude (x) < std::numeric_limits<float>::min () ? 0.0f : x; }
};
}

float Filter::process (float input)
{
    Flushing keep;
    const float x = switches.drives
                        ? filterCore::coloured (memory, fixed, filterCore::driven (memory, input, keep), keep)
                        : input;
    const float y = filterCore::section (memory, switches.type, damping, mainCoefficient, x, keep);
    return switches.smooths && switches.type == filterCore::lowPass
               ? filterCore::smoothed (memory, mainCoefficient, y, keep)
               : y;
}

void Filter::describe (VoiceLanes& lanes) const
{
    lanes.filterSwitches = switches;
    lanes.filterFixed = fixed;
    lanes.keyTracks = keyTrack;
    lanes.angularStep = angularStep;
    lanes.slewDivisor = slewDivisor ();
}

void Filter::enter (VoiceLanes& lanes, std::size_t lane) const
{
    lanes.damping.of[lane] = damping;
    lanes.coefficient.of[lane] = mainCoefficient;
    lanes.highestCoefficient.of[lane] = highestCoefficient;
    lanes.cutoffHz.of[lane] = cutoff;
    lanes.cutoffBase.of[lane] = base;
    lanes.keyFactor.of[lane] = keyTrackFactor[static_cast<std::size_t> (key)];
    lanes.filter.drive.of[lane] = memory.drive;
    lanes.filter.dc.of[lane] = memory.dc;
    lanes.filter.colourBand.of[lane] = memory.colourBand;
    lanes.filter.colourLow.of[lane] = memory.colourLow;
    lanes.filter.band.of[lane] = memory.band;
    lanes.filter.low.of[lane] = memory.low;
    lanes.filter.selected.of[lane] = memory.selected;
    lanes.filter.smoothCoefficient.of[lane] = memory.smoothCoefficient;
    lanes.filter.smooth.of[lane] = memory.smooth;
}

void Filter::leave (const VoiceLanes& lanes, std::size_t lane)
{
    mainCoefficient = lanes.coefficient.of[lane];
    cutoff = lanes.cutoffHz.of[lane];
    base = lanes.cutoffBase.of[lane];
    memory.drive = lanes.filter.drive.of[lane];
    memory.dc = lanes.filter.dc.of[lane];
    memory.colourBand = lanes.filter.colourBand.of[lane];
    memory.colourLow = lanes.filter.colourLow.of[lane];
    memory.band = lanes.filter.band.of[lane];
    memory.low = lanes.filter.low.of[lane];
    memory.selected = lanes.filter.selected.of[lane];
    memory.smoothCoefficient = lanes.filter.smoothCoefficient.of[lane];
    memory.smooth = lanes.filter.smooth.of[lane];
}
}
