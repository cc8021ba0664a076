#pragma once

#include <cstdint>
#include <string>

namespace editor
{
// What a parameter's value means, in the words and units of its field.

// The LFO's rate as its display shows it: a division while it is synced to the host, else Hz. False when the
// value names no division; the display then keeps what it shows.
bool lfoRateText (float rate, bool synced, std::string& text);

// Any parameter, for the hover help: "-12 semitones", "1.2 s", "50 %". `synced` matters to the LFO rate
// alone.
std::string valueText (std::int32_t parameter, float value, bool synced);
}
