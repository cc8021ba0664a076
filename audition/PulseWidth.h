// The pulse alone at several settings of its width: what the Osc1-PW knob does.
#pragma once

#include "audition/Player.h"

namespace audition
{
inline constexpr double pulseToneHz = 130.748; // what middle C sounds

// Oscillator 1's pulse at middle C with this Osc1-PW (0..1), everything else open and still; two seconds of
// the steady tone. `programs` is any bank.
Audio pulseTone (std::vector<bank::SourceProgram> programs, float pulseWidth);
}
