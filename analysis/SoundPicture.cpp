#include "analysis/SoundPicture.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace analysis
{
using picture::Colour;

namespace
{
// Level 0..1 to a colour: dark blue, purple, orange, pale yellow.
Colour heat (double level)
{
    static constexpr std::array<Colour, 5> stops = {
        { { 10, 8, 26 }, { 77, 18, 115 }, { 184, 54, 92 }, { 250, 143, 51 }, { 252, 245, 184 } }
    };
    const double place = std::clamp (level, 0.0, 1.0) * (stops.size () - 1);
    const auto below = std::min (static_cast<std::size_t> (place), stops.size () - 2);
    const double share = place - static_cast<double> (below);
    return picture::mix (stops[below], stops[below + 1], share);
}

double decibels (double power)
{
    return 10.0 * std::log10 (std::max (power, 1e-20));
}
}

void drawSpectrogram (picture::Canvas& canvas, double x, double y, int height,
                      const std::vector<std::vector<double>>& columns, double sampleRate)
{
    double loudest = 1e-10; // far below a 16-bit file's last bit: silence stays dark
    for (const std::vector<double>& power : columns)
        loudest = std::max (loudest, *std::ranges::max_element (power));
    for (const std::vector<double>& power : columns)
    {
        for (int row = 0; row < height; ++row)
        {
            const double hz = lowestHz * std::exp2 (octaves * (height - 1 - row) / (height - 1));
            const double bin = hz * spectrumSize / sampleRate;
            const auto below = static_cast<std::size_t> (bin);
            const double share = bin - static_cast<double> (below);
            const bool exists = below + 1 < power.size ();
            const double here = exists ? power[below] * (1.0 - share) + power[below + 1] * share : 0.0;
            canvas.fillRect (x, y + row, 1.0, 1.0,
                             heat (1.0 + (decibels (here) - decibels (loudest)) / range));
        }
        x += 1.0;
    }
}
}
