#include "parameters/Parameters.h"

#include <algorithm>
#include <cmath>

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
}
