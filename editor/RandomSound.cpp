#include "editor/RandomSound.h"

#include <algorithm>

#include "parameters/Parameters.h"

namespace editor
{
using namespace parameters;

namespace
{
// What one parameter may become.
struct Rule
{
    std::int32_t parameter;
    bool centred;                            // the range lies around 0.5 instead of above 0
    float base;                              // added afterwards
    float range[RandomSound::categoryCount]; // width; a negative one is a fixed value, -range
};

// parameter, centred, base, range for bass / pad / lead / effects
constexpr Rule rules[] = {
    { paramOsc1Vol, false, 0.0f, { -1.0f, -1.0f, -1.0f, -1.0f } },
    { paramOsc1Wave, false, 0.5f, { 1.0f, 1.0f, 1.0f, 1.0f } },
    { paramOsc1PW, false, 0.0f, { 1.0f, 1.0f, 1.0f, 1.0f } },
    { paramOsc1Range, true, 0.0f, { 0.1f, 0.2f, 0.1f, 1.0f } },
    { paramOsc2Vol, false, 0.4f, { -1.0f, 1.0f, 1.0f, 1.0f } },
    { paramOsc2Wave, false, 0.5f, { 1.0f, 1.0f, 1.0f, 1.0f } },
    { paramOsc2Fine, false, 0.0f, { 0.1f, 0.1f, 0.1f, 1.0f } },
    { paramOsc2Range, true, 0.0f, { 0.1f, 0.1f, 0.1f, 1.0f } },
    { paramNoise, false, 0.0f, { 0.0f, 0.0f, 0.0f, 1.0f } },
    { param1Attack, false, 0.0f, { 0.0f, 1.0f, 0.0f, 0.0f } },
    { param1Sustain, false, 0.0f, { 0.001f, 1.0f, 1.0f, 1.0f } },
    { param1Decay, false, 0.3f, { 0.1f, 1.0f, 1.0f, 1.0f } },
    { param2Attack, false, 0.0f, { 0.0f, 1.0f, 1.0f, 1.0f } },
    { param2Decay, false, 0.3f, { 0.1f, 1.0f, 1.0f, 1.0f } },
    { param2Delay, false, 0.0f, { 0.0f, 1.0f, 1.0f, 1.0f } },
    { param2ToFilter, false, 0.0f, { 1.0f, 0.4f, 0.4f, 1.0f } },
    { paramFilterFreq, false, 0.0f, { 1.0f, 1.0f, 1.0f, 1.0f } },
    { paramFilterRez, false, 0.0f, { 1.0f, 1.0f, 1.0f, 1.0f } },
    { paramFilterType, false, 0.1f, { -0.1f, 1.0f, 0.6f, 1.0f } },
    { paramLfoRate, false, 0.0f, { 0.1f, 0.4f, 0.4f, 1.0f } },
    { paramLfoWave, false, 0.0f, { 0.5f, 1.0f, 1.0f, 1.0f } },
    { paramLfoPitch, false, 0.0f, { 0.0f, 0.0f, 0.1f, 1.0f } },
    { paramLfoFilter, true, 0.0f, { 0.2f, 0.2f, 0.2f, 1.0f } },
    { paramGlideMono, false, 0.0f, { 0.0f, 0.0f, 0.8f, 0.0f } },
    { paramVelocityAmp, false, 0.0f, { 1.0f, 1.0f, 1.0f, 1.0f } },
    { paramVelocityFilter, false, 0.0f, { 1.0f, 1.0f, 1.0f, 1.0f } },
};

// 0..1, from a fraction 0..1 of the rule's range.
float valueOf (const Rule& rule, std::int32_t category, float fraction)
{
    const float range = rule.range[category];
    if (range < 0.0f)
        return -range;
    const float offset = fraction * range;
    const float x = rule.centred ? 0.5f + range / 2.0f - offset : offset;
    return std::clamp (x + rule.base, 0.0f, 1.0f);
}
}

void RandomSound::generate (std::int32_t category, const std::function<void (std::int32_t, float)>& set)
{
    if (category < 0 || category >= categoryCount)
        return;
    for (const Rule& rule : rules)
    {
        // Fixed values draw no number.
        const bool fixed = rule.range[category] < 0.0f;
        const float fraction =
            fixed ? 0.0f : static_cast<float> (random.next ()) / static_cast<float> (engine::Random::highest);
        set (rule.parameter, valueOf (rule, category, fraction));
    }
}
}
