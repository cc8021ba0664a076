#pragma once

#include <cstdint>
#include <functional>
#include <span>

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

    // What one parameter may become.
    struct Rule
    {
        std::int32_t parameter;
        bool centred;               // the range lies around 0.5 instead of above 0
        float base;                 // added afterwards
        float range[categoryCount]; // width; a negative one is a fixed value, -range
    };
    static std::span<const Rule> rules (); // ascending by parameter

    explicit RandomSound (std::uint32_t seed) : random (seed) {}

    // Calls `set` once per rule. A category outside the four calls nothing.
    void generate (std::int32_t category, const std::function<void (std::int32_t, float)>& set);

    // The value of one rule, 0..1, from a fraction 0..1 of its range.
    static float valueOf (const Rule& rule, Category category, float fraction);

private:
    engine::Random random;
};
}
