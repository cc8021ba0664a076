#pragma once

#include <cstdint>

namespace engine
{
// The arithmetic of the voice filter, written once. `Value` is a number, for one voice, or a vector of
// numbers, for several side by side: every one of them goes through exactly the same operations. A comparison
// of vectors is a mask, and ?: then chooses for each element. All of it is inlined, because files that are
// compiled for different processors include it.
namespace filterCore
{
enum Type : std::int32_t
{
    lowPass,
    bandPass,
    highPass
};

// What is the same in all voices.
struct Switches
{
    std::int32_t type = highPass;
    bool smooths = false; // an extra pole behind the low-pass output
    bool drives = true;   // the drive stage
};

struct FixedCoefficients
{
    float dc = 0.0f;     // one-pole low-pass at 10 Hz
    float colour = 0.0f; // state-variable section at 1 kHz
};

template <typename Value>
struct Memory
{
    Value drive = {}; // last drive-stage input
    Value dc = {};    // DC blocker
    Value colourBand = {};
    Value colourLow = {};
    Value band = {};
    Value low = {};
    Value selected = {}; // last output of the main section
    Value smoothCoefficient = {};
    Value smooth = {};
};

// `keep` is what happens to a value on its way into a memory. It has the one guard against denormals: what is
// stored has a normal exponent or is 0.

// Feedback and soft clip: x (1 - |x| / 4a) with a = 2. Beyond 2a it stays at a above and at 1 - a below: the
// lower ceiling is the smaller one, so that loud sounds become lopsided, which the ear takes for warmth.
template <typename Value, typename Keep>
[[gnu::always_inline]] inline Value driven (Memory<Value>& m, Value input, Keep& keep)
{
    constexpr float feedback = 0.4f;
    constexpr float a = 2.0f;

    const Value x = keep (input + feedback * m.drive);
    m.drive = x;
    const Value y = x * (1.0f - keep.magnitude (x) / (4.0f * a));
    const Value limited = x > 2.0f * a ? Value{} + a : y;
    return x < -2.0f * a ? Value{} + (1.0f - a) : limited;
}

// DC blocker, and a band around 1 kHz added for colour.
template <typename Value, typename Keep>
[[gnu::always_inline]] inline Value coloured (Memory<Value>& m, FixedCoefficients fixed, Value input,
                                              Keep& keep)
{
    constexpr float colourDamping = 1.0f;
    constexpr float colourAmount = 0.4f;

    const Value x = input - m.dc;
    m.dc = keep (m.dc + x * fixed.dc);

    const Value high = x - (m.colourLow + m.colourBand * colourDamping);
    const Value band = high * fixed.colour + m.colourBand;
    const Value low = band * fixed.colour + m.colourLow;
    m.colourBand = keep (band);
    m.colourLow = keep (low);
    return x + band * colourDamping * colourAmount;
}

// The state-variable section (one unit delay in each integrator) and its output. `coefficient` is
// 2 pi fc / fs without a sine correction, `damping` 2 x (1 - resonance).
template <typename Value, typename Keep>
[[gnu::always_inline]] inline Value section (Memory<Value>& m, std::int32_t type, Value damping,
                                             Value coefficient, Value x, Keep& keep)
{
    const Value high = x - (m.low + m.band * damping);
    const Value band = high * coefficient + m.band;
    const Value low = band * coefficient + m.low;
    m.band = keep (band);
    m.low = keep (low);

    if (type == lowPass)
        m.selected = low;
    else if (type == bandPass)
        m.selected = band;
    else if (type == highPass)
        m.selected = high;
    return m.selected;
}

// The extra pole; its own coefficient trails the main one by 0.01 a sample.
template <typename Value, typename Keep>
[[gnu::always_inline]] inline Value smoothed (Memory<Value>& m, Value coefficient, Value x, Keep& keep)
{
    constexpr float lowest = 0.02f;
    constexpr float highest = 1.0f;
    constexpr float slew = 0.01f;

    const Value below = highest < m.smoothCoefficient ? Value{} + highest : m.smoothCoefficient;
    const Value c = below < lowest ? Value{} + lowest : below;
    const Value risen = c < coefficient ? c + slew : c;
    m.smoothCoefficient = c > coefficient ? c - slew : risen;
    const Value y = m.smooth + (x - m.smooth) * m.smoothCoefficient;
    m.smooth = keep (y);
    return y;
}
}
}
