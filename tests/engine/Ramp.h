#pragma once

#include <cmath>
#include <tuple>

#include "engine/WaveTable.h"

// Tables whose samples are their own indices, so that what an oscillator reads tells where it reads.

inline constexpr int rampLength = 4096;

inline const engine::WaveTable& ramp ()
{
    static const engine::WaveTable table = []
    {
        engine::WaveTable made{ {}, rampLength };
        made.samples.clear ();
        for (int n = 0; n <= rampLength; ++n)
            made.samples.push_back (static_cast<float> (n));
        return made;
    }();
    return table;
}

// The unit of the pitch factors in Hz, and the tuning corrections of the recorded waves.
inline constexpr double c0 = 16.351598;
inline constexpr double saw = 1.0 + 0.441 / c0;
inline constexpr double pulse = 1.0 + 0.396 / c0;

// Equal temperament.
inline double keyHz (double note)
{
    return 440.0 * std::exp2 ((note - 69.0) / 12.0);
}

// Frequency that an oscillator's present increment stands for: on the ramp, table samples per second over
// 337.123 per Hz.
template <typename Oscillator>
double hzOf (Oscillator oscillator, float rate)
{
    constexpr int steps = 16;
    const int loop =
        oscillator.mode () == Oscillator::Mode::cycleSelect ? engine::pulseCycleLength : rampLength;
    oscillator.setHighQuality (true);
    double travelled = 0.0;
    double last = static_cast<double> (oscillator.tick ());
    for (int n = 0; n < steps; ++n)
    {
        const double now = static_cast<double> (oscillator.tick ());
        travelled += std::fmod (now - last + loop, loop);
        last = now;
    }
    return travelled / steps * static_cast<double> (rate) / (4045.476 / 12.0);
}
