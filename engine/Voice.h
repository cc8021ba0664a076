#pragma once

#include "engine/Envelope.h"
#include "engine/Filter.h"
#include "engine/Oscillator.h"

namespace engine
{
// Everything that one voice owns.
struct Voice
{
    Oscillator osc1;
    Oscillator osc2;
    Oscillator noise;
    Envelope ampEnv;    // envelope 1: amplitude, and whether the voice sounds at all
    Envelope filterEnv; // envelope 2: cutoff
    Filter filter;
    std::int32_t filterUpdateCounter = 0; // samples since the cutoff was set
    std::int32_t pitchUpdateCounter = 0;  // samples since the LFO moved the pitch
    std::int32_t env2DelayCounter = 0;    // samples that envelope 2 has waited
};
}
