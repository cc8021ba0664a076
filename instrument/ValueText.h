#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace instrument
{
// What a parameter's value means, in the words and units of its field.

// What else a value's meaning hangs on.
struct ValueContext
{
    bool synced = false;    // the LFO follows the host's tempo
    bool keyTracks = false; // the cutoff follows the keys; it is told for middle C then
};

// The LFO's rate as its display shows it: a division while it is synced to the host, else Hz. False when the
// value names no division; the display then keeps what it shows.
bool lfoRateText (float knob, bool synced, std::string& text);

// Any parameter, for the hover help: "-12 semitones", "1.20 s", "-6.0 dB".
std::string valueText (std::int32_t parameter, float value, const ValueContext& context);

// The way back, for what is typed: a name of a position ("pulse", "1/8"), or a number, with or without its
// unit (then that of the parameter; ms and kHz are understood). A number beyond the travel gives its end.
// Null where the text says neither.
std::optional<float> valueFromText (std::int32_t parameter, const std::string& text,
                                    const ValueContext& context);
}
