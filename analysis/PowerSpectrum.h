#pragma once

#include <cstddef>
#include <span>
#include <vector>

namespace analysis
{
// Power by frequency: a Hann window over `size` samples from `start` on (zeros beyond the end), size / 2 + 1
// bins.
inline constexpr int spectrumSize = 2048;
std::vector<double> powerSpectrum (std::span<const float> audio, std::size_t start, int size = spectrumSize);
}
