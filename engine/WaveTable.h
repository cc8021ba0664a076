#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace engine
{
// Samples of one cycle in the pulse table, whose cycles follow one another with rising duty.
inline constexpr std::int32_t pulseCycleLength = 732;

// A recorded waveform: its samples scaled so that the largest magnitude is 1.0, followed by one guard sample
// that repeats the first, so that a reader may interpolate across the end.
struct WaveTable
{
    std::vector<float> samples = { 0.0f }; // length + 1
    std::int32_t length = 0;
};

// From signed 16-bit little-endian mono samples. None give the guard alone; silence stays silent.
WaveTable makeWaveTable (std::span<const std::byte> pcm);

// What the oscillators read.
struct WaveTables
{
    WaveTable pulse;
    WaveTable saw;
    WaveTable noise;
};
}
