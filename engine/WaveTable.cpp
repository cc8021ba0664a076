#include "engine/WaveTable.h"

#include <algorithm>
#include <cmath>

namespace engine
{
namespace
{
constexpr std::size_t bytesPerSample = 2;

float sampleAt (std::span<const std::byte> pcm, std::size_t n)
{
    const auto low = std::to_integer<unsigned> (pcm[n * bytesPerSample]);
    const auto high = std::to_integer<unsigned> (pcm[n * bytesPerSample + 1]);
    return static_cast<float> (static_cast<std::int16_t> (low | (high << 8)));
}
}

WaveTable makeWaveTable (std::span<const std::byte> pcm)
{
    const std::size_t length = pcm.size () / bytesPerSample;
    std::vector<float> samples (length + 1, 0.0f);
    float peak = 0.0f;
    for (std::size_t n = 0; n < length; ++n)
    {
        samples[n] = sampleAt (pcm, n);
        peak = std::max (peak, std::abs (samples[n]));
    }
    samples[length] = samples[0];
    if (peak > 0.0f)
    {
        const float scale = 1.0f / peak;
        for (float& sample : samples)
            sample *= scale;
    }
    return { std::move (samples), static_cast<std::int32_t> (length) };
}
}
