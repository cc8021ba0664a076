// A line on standard error that fills up while a song is rendered.
#pragma once

#include <chrono>

namespace host
{
class ProgressBar
{
public:
    explicit ProgressBar (bool newVisible) : visible (newVisible) {}
    ~ProgressBar (); // takes the line away

    // Seconds of the song; redraws a few times a second at most.
    void show (double done, double all);

private:
    bool visible;
    bool drawn = false;
    std::chrono::steady_clock::time_point lastDrawn;
};
}
