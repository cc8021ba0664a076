#pragma once

#include <cstdint>
#include <vector>

namespace engine
{
// Recorded waveforms: raw signed 16-bit little-endian mono samples, compiled into the library.
inline constexpr int sawWaveId = 165;
inline constexpr int pulseWaveId = 166;
inline constexpr int noiseWaveId = 167;

// Samples of one cycle in the pulse table, whose cycles follow one another with rising duty.
inline constexpr std::int32_t pulseCycleLength = 732;

// The samples of a wave resource scaled so that the largest magnitude is 1.0, followed by one guard sample
// that repeats the first, so that a reader may interpolate across the loop end. A missing resource gives
// the guard alone; a silent one stays silent.
std::vector<float> loadWaveResource (int id);

// Samples of a wave resource without the guard; 0 when it is missing.
std::int32_t waveResourceLength (int id);

struct WaveTable
{
    std::vector<float> samples; // length + 1
    std::int32_t length = 0;
};

inline WaveTable loadWaveTable (int id)
{
    return { loadWaveResource (id), waveResourceLength (id) };
}
}
