#pragma once

#include <algorithm>
#include <cmath>
#include <numeric>
#include <tuple>
#include <vector>

// What a sound is, measured.

inline float peakOf (const std::vector<float>& samples)
{
    float peak = 0.0f;
    for (const float sample : samples)
        peak = std::max (peak, std::abs (sample));
    return peak;
}

inline bool isFinite (const std::vector<float>& samples)
{
    return std::all_of (samples.begin (), samples.end (), [] (float x) { return std::isfinite (x); });
}

inline double meanOf (const std::vector<float>& samples)
{
    return std::accumulate (samples.begin (), samples.end (), 0.0) / static_cast<double> (samples.size ());
}

// Root of the mean square.
inline double levelOf (const std::vector<float>& samples)
{
    const double power = std::inner_product (samples.begin (), samples.end (), samples.begin (), 0.0);
    return std::sqrt (power / static_cast<double> (samples.size ()));
}

// Index of the first sample that is not 0, or the size.
inline int firstSound (const std::vector<float>& samples)
{
    const auto sounds = [] (float sample) { return sample != 0.0f; };
    return static_cast<int> (std::find_if (samples.begin (), samples.end (), sounds) - samples.begin ());
}

// Samples per cycle of a steady sound that rises through its mean once a cycle; 0 for less than two cycles.
inline double periodOf (const std::vector<float>& samples)
{
    const auto mean = static_cast<float> (meanOf (samples));
    double first = 0.0;
    double last = 0.0;
    int cycles = -1;
    for (std::size_t n = 1; n < samples.size (); ++n)
    {
        const float before = samples[n - 1] - mean;
        const float after = samples[n] - mean;
        if (!(before < 0.0f && after >= 0.0f))
            continue;
        last = static_cast<double> (n) - static_cast<double> (after / (after - before));
        first = ++cycles == 0 ? last : first;
    }
    return cycles > 0 ? (last - first) / cycles : 0.0;
}
