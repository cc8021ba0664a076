// One sound, struck many times, each time with another past: what a take has by chance (where the oscillators
// stand to each other, where the LFO is) differs, and what belongs to the sound stays.
#pragma once

#include "audition/Player.h"

#include <span>

namespace audition
{
inline constexpr double heldSeconds = 2.5;      // how long each take's keys are held
inline constexpr double afterglowSeconds = 0.5; // how long a take goes on behind that

// The audio of each take, from its first sample on. One take for each velocity (1..127), all on the same
// keys.
std::vector<Audio> playTakes (const bank::SourceProgram& program, const std::vector<int>& keys,
                              std::span<const int> velocities);
}
