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
        state = state * multiplier + increment;
        return static_cast<int> ((state >> 16) & 0x7FFFu);
    }

    // Leaves the generator where that many calls of next would: n steps of state x a + c are one step with
    // other factors, which are found by doubling.
    constexpr void skip (std::uint64_t calls)
    {
        std::uint32_t factor = multiplier;
        std::uint32_t term = increment;
        for (; calls != 0; calls >>= 1u)
        {
            if ((calls & 1u) != 0)
                state = state * factor + term;
            term = term * factor + term;
            factor *= factor;
        }
    }

    // -1..+1
    constexpr float nextBipolar () { return static_cast<float> (next ()) / highest * 2.0f - 1.0f; }

private:
    static constexpr std::uint32_t multiplier = 214013u;
    static constexpr std::uint32_t increment = 2531011u;

    std::uint32_t state;
};
}
