// The pulse alone at several settings of its width: what the Osc1-PW knob does, and how clean it stays.
#pragma once

#include "audition/Player.h"
#include "resources/bank/BankSource.h"

#include <cmath>

namespace audition
{
// What a key sounds with its oscillator at +0oct, in Hz: middle C is C3.
inline double pulseToneHz (int key)
{
    return 130.748 * std::exp2 ((key - 60) / 12.0);
}

// Oscillator 1's pulse on this key with this Osc1-PW (0..1), everything else open and still; two seconds of
// the steady tone.
Audio pulseTone (float pulseWidth, int key = 60);

// The same of a program of the bank: its oscillator 1 through its filter, with all that moves taken out.
Audio steadyPulse (bank::SourceProgram program, int key);
}
