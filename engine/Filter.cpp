#include "engine/Filter.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "engine/NoteTable.h"
#include "parameters/KnobLaws.h"

namespace engine
{
using filterCore::FourVoices;
using filterCore::lanes;
using filterCore::OneVoice;

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
    mainCoefficient = std::min (mainCoefficient, highestStableCoefficient ());
}

// The section's poles reach the unit circle where f^2 + 2 q f = 4; stay a little below. That holds for a
// coefficient that stands still; one that jumps, as the LFO's noise makes it, pumps the section up from about
// 1.3 on, which cutoffs reach only below a sample rate of 32.7 kHz.
float Filter::highestStableCoefficient () const
{
    constexpr float highestWhileMoving = 1.25f;
    return std::min (0.98f * (std::sqrt (damping * damping + 4.0f) - damping), highestWhileMoving);
}

void Filter::setCutoff (float control)
{
    cutoff = keyTrack ? parameters::trackedCutoffHz (control, keyTrackFactor[static_cast<std::size_t> (key)])
                      : parameters::cutoffHz (control);
    mainCoefficient = std::min (cutoff * angularStep, highestStableCoefficient ());
}

float Filter::keyTrackedBase (float target)
{
    if (!hasBase)
    {
        base = target;
        hasBase = true;
    }
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

void Filter::heal ()
{
    const float sum = std::abs (memory.drive[0]) + std::abs (memory.dc[0]) + std::abs (memory.colourBand[0]) +
                      std::abs (memory.colourLow[0]) + std::abs (memory.band[0]) + std::abs (memory.low[0]) +
                      std::abs (memory.selected[0]) + std::abs (memory.smoothCoefficient[0]) +
                      std::abs (memory.smooth[0]);
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
    mainCoefficient = std::min (mainCoefficient, highestStableCoefficient ());
}

void Filter::setType (std::int32_t t)
{
    // It is the old type that is looked at. That is meant.
    if (switches.type >= filterCore::lowPass && switches.type <= filterCore::highPass)
        switches.type = t;
}

float Filter::process (float input)
{
    const OneVoice output =
        filterCore::step<OneVoice> (memory, switches, fixed, damping, mainCoefficient, input);
    return output[0];
}

namespace
{
// The fields of a memory, for moving them in and out of lanes.
template <typename Value>
std::array<Value*, 9> fieldsOf (filterCore::Memory<Value>& m)
{
    return { &m.drive, &m.dc,       &m.colourBand,        &m.colourLow, &m.band,
             &m.low,   &m.selected, &m.smoothCoefficient, &m.smooth };
}

void gatherMemory (filterCore::Memory<FourVoices>& wide, int lane, filterCore::Memory<OneVoice>& narrow)
{
    const auto to = fieldsOf (wide);
    const auto from = fieldsOf (narrow);
    for (std::size_t field = 0; field < to.size (); ++field)
        (*to[field])[static_cast<std::size_t> (lane)] = float ((*from[field])[0]);
}

void scatterMemory (filterCore::Memory<FourVoices>& wide, int lane, filterCore::Memory<OneVoice>& narrow)
{
    const auto from = fieldsOf (wide);
    const auto to = fieldsOf (narrow);
    for (std::size_t field = 0; field < to.size (); ++field)
        *to[field] = float ((*from[field])[static_cast<std::size_t> (lane)]);
}
}

void Filter::processTogether (std::span<const Run> group, int begin, int end)
{
    const int used = static_cast<int> (group.size ());
    std::array<Run, lanes> runs; // lanes without a voice read what the first one reads and write nothing
    filterCore::Memory<FourVoices> m;
    for (int lane = 0; lane < lanes; ++lane)
    {
        runs[static_cast<std::size_t> (lane)] = group[static_cast<std::size_t> (lane < used ? lane : 0)];
        gatherMemory (m, lane, runs[static_cast<std::size_t> (lane)].filter->memory);
    }
    const Filter& first = *runs[0].filter;
    const FourVoices damping ([&] (auto lane) { return runs[lane].filter->damping; });
    for (int n = begin; n < end; ++n)
    {
        const FourVoices input ([&] (auto lane) { return runs[lane].samples[n]; });
        const FourVoices coefficient ([&] (auto lane) { return runs[lane].coefficients[n]; });
        const FourVoices output =
            filterCore::step (m, first.switches, first.fixed, damping, coefficient, input);
        for (int lane = 0; lane < used; ++lane)
            runs[static_cast<std::size_t> (lane)].samples[n] = output[static_cast<std::size_t> (lane)];
    }
    for (int lane = 0; lane < used; ++lane)
        scatterMemory (m, lane, runs[static_cast<std::size_t> (lane)].filter->memory);
}

void Filter::processGroup (std::span<Run> group)
{
    // Stretch by stretch, each as long as the shortest run that is left.
    std::sort (group.begin (), group.end (), [] (const Run& a, const Run& b) { return a.count < b.count; });
    int done = 0;
    for (; !group.empty (); group = group.subspan (1))
    {
        const int end = group[0].count;
        if (end > done)
            processTogether (group, done, end);
        done = std::max (done, end);
    }
}
}
