#include "host/ProgressBar.h"

#include <algorithm>
#include <cstdio>
#include <string>

namespace host
{
namespace
{
constexpr int width = 40; // characters
constexpr auto interval = std::chrono::milliseconds (100);
constexpr const char* clearLine = "\r\033[K";
}

ProgressBar::~ProgressBar ()
{
    if (drawn)
        std::fputs (clearLine, stderr);
}

// The first look starts the clock, so that a short render shows no bar at all.
void ProgressBar::show (double done, double all)
{
    const auto now = std::chrono::steady_clock::now ();
    if (lastDrawn == std::chrono::steady_clock::time_point ())
        lastDrawn = now;
    if (!visible || now - lastDrawn < interval)
        return;
    lastDrawn = now;
    drawn = true;
    const double part = all > 0.0 ? std::clamp (done / all, 0.0, 1.0) : 1.0;
    const auto filled = static_cast<std::size_t> (part * width);
    const std::string bar = std::string (filled, '#') + std::string (width - filled, '.');
    std::fprintf (stderr, "%s[%s] %3.0f %%  %.0f s", clearLine, bar.c_str (), part * 100.0, done);
    std::fflush (stderr);
}
}
