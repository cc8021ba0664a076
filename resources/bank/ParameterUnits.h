// The parameters as the bank source writes them: names without their trailing blanks, and values in
// the units of a musician (ms, Hz, cents, octaves, names of waves) or as knob positions.
#pragma once

#include "parameters/Parameters.h"

#include <optional>
#include <string_view>

using namespace parameters;

namespace bank
{
// The parameter of this name, as a host shows it.
std::optional<Param> parameterNamed (std::string_view name);

// The knob position 0..1 for a written value; nothing if the parameter cannot be written that way or the
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
std::optional<float> knobPosition (Param parameter, std::string_view written);
}
