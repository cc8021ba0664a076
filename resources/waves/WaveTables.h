// The three wave tables of the instrument, computed. Every table is made with additions,
// multiplications and roundings only, so that each machine makes the same samples.
#pragma once

#include <cstdint>
#include <vector>

namespace waves
{
using Samples = std::vector<std::int16_t>;

inline constexpr int sawLength = 734;        // samples of the one saw cycle
inline constexpr int pulseCycleLength = 732; // samples of each pulse cycle
inline constexpr int pulseCycles = 257;
inline constexpr int pulseTail = 223; // samples of a 258th cycle that breaks off
inline constexpr int pulseLength = pulseCycles * pulseCycleLength + pulseTail;
inline constexpr int noiseLength = 87650; // read two samples at a time: 0.99 s at 44.1 kHz

// One saw cycle: a capacitor that charges through a resistor and is emptied by a transistor.
// Highest sample 32767 at 518, lowest at 549, spanning -0.838 to 1.0 once scaled.
Samples makeSaw ();

// 257 pulse cycles and the beginning of one more. The duty rises from 50 % in cycle 0 to 92 % in
// cycle 256; the levels stay at -1.0 and 0.769. Only cycle 0 is ever read, and the slopes of its
// plateaus are what the pulse width knob plays with (docs/sound.md).
Samples makePulse ();

// White noise, triangular distribution, spanning -1.0 to 0.980.
Samples makeNoise ();
}
