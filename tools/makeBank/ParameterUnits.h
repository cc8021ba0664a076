// The 38 parameters as the bank source names them, and the way from a value in the units of a
// musician (ms, Hz, cents, octaves, names of waves) to the knob position 0..1 that a program stores.
#pragma once

#include <optional>
#include <string_view>

namespace makeBank
{
inline constexpr int parameterCount = 38;

// Index 0..37 of a parameter by its name without the trailing blanks, as a host shows it.
std::optional<int> parameterIndex (std::string_view name);

std::string_view parameterName (int index);

// The knob position for a written value; nothing if the parameter cannot be written that way or the
// knob does not reach it. A bare number is a knob position. Otherwise:
//   Osc1-Wave, Osc2-Wave    off, saw, pulse
//   Osc1-Range, Osc2-Range  -2oct, -1oct, +0oct, +1oct, +2oct
//   Osc2-Fine, LfoPitch     cents ("12ct"): upwards from oscillator 1; peak of the LFO's full swing
//   1-Attack .. 2-Delay     "250ms" or "1.5s": the time of a full-range segment
//   Glide-Mono              the same
//   1-Sustain               "40%" of the peak level
//   2-ToFilter, LfoFilter   "+30%" or "-30%" of the cutoff's whole range
//   FilterFreq              "800Hz", 100 to 6560
//   FilterType              lowpass, bandpass, highpass
//   LfoWave                 triangle, rising, falling, square, noise, random (sample and hold)
//   LfoRate                 "5Hz", or a length in bars ("1/16") when LfoBmpSync is on
//   SmothFilt, FilterKeyTrak, LfoBmpSync  on, off
std::optional<float> knobPosition (int index, std::string_view written);
}
