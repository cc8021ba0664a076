#pragma once

#include <cstdint>
#include <functional>

#include "engine/Random.h"

namespace editor
{
// Makes up sounds: each parameter of the rule table gets a value from its category's range.
class RandomSound
{
public:
    enum Category : std::int32_t
    {
        bass,
        pad,
        lead,
        effect,
        categoryCount
    };

    explicit RandomSound (std::uint32_t seed) : random (seed) {}

    // Calls `set` once per rule. A category outside the four calls nothing.
    void generate (std::int32_t category, const std::function<void (std::int32_t, float)>& set);

private:
    engine::Random random;
};
}
