#include "parameters/Parameters.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace parameters
{
float usableValue (std::int32_t index, float value)
{
    if (!std::isfinite (value))
        return 0.0f;
    return paramTable[static_cast<std::size_t> (index)].unclamped ? value : std::clamp (value, 0.0f, 1.0f);
}

float storableValue (std::int32_t index, float value, bool unclamped)
{
    // The detent of the bipolar amounts: both ends of the zone are outside it.
    constexpr float detentBelow = 0.48f;
    constexpr float detentAbove = 0.52f;
    if ((index == param2ToFilter || index == paramLfoFilter) && value > detentBelow && value < detentAbove)
        value = 0.5f;
    if (!isParameter (index) || unclamped)
        return value;
    return std::clamp (value, 0.0f, 1.0f);
}

std::int32_t truncateToInt (float value)
{
    using Limits = std::numeric_limits<std::int32_t>;
    if (std::isnan (value))
        return 0;
    if (value >= 2147483648.0f) // 2^31, the first float above the range
        return Limits::max ();
    if (value < -2147483648.0f)
        return Limits::min ();
    return static_cast<std::int32_t> (value);
}

const SyncDivision* syncDivisionFor (float lfoRate)
{
    const std::int32_t k = positionOf (lfoRate, syncDivisionSteps);
    if (k < 0 || k >= static_cast<std::int32_t> (syncDivisions.size ()))
        return nullptr;
    return &syncDivisions[static_cast<std::size_t> (k)];
}
}
