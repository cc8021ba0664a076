#pragma once

#include <chrono>
#include <cmath>

namespace editor
{
// Tells the second click of two that belong together. The toolkit's own count for Linux forgets the first
// click of a pair when another one came before it.
class ClickCounter
{
public:
    using Time = std::chrono::steady_clock::time_point;

    // A press at a place in pixels; true when it makes a double click with the one before.
    bool isSecond (double x, double y, Time now)
    {
        constexpr auto longest = std::chrono::milliseconds (400);
        constexpr double furthest = 5.0; // pixels
        const bool second = waits && now - since <= longest && std::abs (x - lastX) <= furthest &&
                            std::abs (y - lastY) <= furthest;
        waits = !second;
        since = now;
        lastX = x;
        lastY = y;
        return second;
    }

private:
    bool waits = false; // for a second one
    Time since;
    double lastX = 0.0;
    double lastY = 0.0;
};
}
