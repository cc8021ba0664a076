#include "tests/render/Signals.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace
{
double loopHz (int key, double correction, double loopLength)
{
    constexpr double c0 = 16.351598; // Hz
    return 440.0 * std::exp2 ((key + 1 - 69) / 12.0) * (1.0 + correction / c0) * (4045.476 / 12.0) /
           loopLength;
}
}

double sawHz (int key)
{
    return loopHz (key, 0.441, 734.0);
}
double pulseHz (int key)
{
    return loopHz (key, 0.396, 732.0);
}

double frequencyOf (const std::vector<float>& samples, double rate, double about)
{
    const double mean =
        std::accumulate (samples.begin (), samples.end (), 0.0) / static_cast<double> (samples.size ());
    // The lag is many periods long, for a fine answer, and leaves half of the sound to compare.
    const int periods =
        std::clamp (static_cast<int> (static_cast<double> (samples.size ()) * about / rate / 2.0), 1, 24);
    const int from = static_cast<int> (rate / about * periods * 0.97);
    const int to = static_cast<int> (rate / about * periods * 1.03) + 2;
    const auto correlation = [&] (int lag)
    {
        double sum = 0.0;
        for (std::size_t n = 0; n + static_cast<std::size_t> (to) + 1 < samples.size (); ++n)
            sum += (static_cast<double> (samples[n]) - mean) *
                   (static_cast<double> (samples[n + static_cast<std::size_t> (lag)]) - mean);
        return sum;
    };
    int best = from;
    for (int lag = from; lag <= to; ++lag)
        best = correlation (lag) > correlation (best) ? lag : best;
    const double before = correlation (best - 1);
    const double at = correlation (best);
    const double after = correlation (best + 1);
    const double shift = 0.5 * (before - after) / (before - 2.0 * at + after); // top of the parabola
    return rate * periods / (best + shift);
}

int firstSound (const std::vector<float>& samples)
{
    int n = 0;
    while (n < static_cast<int> (samples.size ()) && samples[static_cast<std::size_t> (n)] == 0.0f)
        ++n;
    return n;
}
