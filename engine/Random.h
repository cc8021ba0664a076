#pragma once

#include <cstdint>

namespace engine
{
// Linear congruential generator of integers 0..32767, the same on every platform. Not thread-safe; each
// owner has its own.
class Random
{
public:
    static constexpr int highest = 32767;

    explicit constexpr Random (std::uint32_t seed) : state (seed) {}

    constexpr int next ()
    {
        state = state * 214013u + 2531011u;
        return static_cast<int> ((state >> 16) & 0x7FFFu);
    }

    // -1..+1
    constexpr float nextBipolar () { return static_cast<float> (next ()) / highest * 2.0f - 1.0f; }

private:
    std::uint32_t state;
};
}
