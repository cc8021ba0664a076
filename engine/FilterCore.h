#pragma once

#include <cstdint>
#include <experimental/simd>
#include <limits>

namespace engine
{
// The arithmetic of the voice filter, written once for one voice and for four side by side. Every lane
// computes exactly what a single voice would.
namespace filterCore
{
namespace stdx = std::experimental;

inline constexpr int lanes = 4;
using OneVoice = stdx::simd<float, stdx::simd_abi::scalar>;
using FourVoices = stdx::simd<float, stdx::simd_abi::deduce_t<float, lanes>>;

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
    Value drive = 0.0f; // last drive-stage input
    Value dc = 0.0f;    // DC blocker
    Value colourBand = 0.0f;
    Value colourLow = 0.0f;
    Value band = 0.0f;
    Value low = 0.0f;
    Value selected = 0.0f; // last output of the main section
    Value smoothCoefficient = 0.0f;
    Value smooth = 0.0f;
};

// The one guard against denormals: what is stored as a memory has a normal exponent or is 0.
template <typename Value>
inline Value flushed (Value x)
{
    where (abs (x) < std::numeric_limits<float>::min (), x) = 0.0f;
    return x;
}

// x (1 - |x| / 4a) with a = 2. Beyond 2a it stays at a above and at 1 - a below: the lower ceiling is meant
// to be the smaller one.
template <typename Value>
inline Value softClip (Value x)
{
    constexpr float a = 2.0f;
    Value y = x * (1.0f - abs (x) / (4.0f * a));
    where (x > 2.0f * a, y) = a;
    where (x < -2.0f * a, y) = 1.0f - a;
    return y;
}

// Feedback, soft clip, DC blocker, and a band around 1 kHz added for colour.
template <typename Value>
inline Value drive (Memory<Value>& m, FixedCoefficients fixed, Value input)
{
    constexpr float feedback = 0.4f;
    constexpr float colourDamping = 1.0f;
    constexpr float colourAmount = 0.4f;

    Value x = flushed<Value> (input + feedback * m.drive);
    m.drive = x;
    x = softClip (x);

    const Value dc = m.dc;
    m.dc = flushed<Value> (dc + (x - dc) * fixed.dc);
    x -= dc;

    const Value high = x - (m.colourLow + m.colourBand * colourDamping);
    const Value band = high * fixed.colour + m.colourBand;
    const Value low = band * fixed.colour + m.colourLow;
    m.colourBand = flushed (band);
    m.colourLow = flushed (low);
    return x + band * colourDamping * colourAmount;
}

// The extra pole; its own coefficient trails the main one by 0.01 a sample.
template <typename Value>
inline Value smooth (Memory<Value>& m, Value coefficient)
{
    constexpr float lowest = 0.02f;
    constexpr float highest = 1.0f;
    constexpr float slew = 0.01f;

    const Value c = max (min (m.smoothCoefficient, Value (highest)), Value (lowest));
    m.smoothCoefficient = c;
    where (c < coefficient, m.smoothCoefficient) = c + slew;
    where (c > coefficient, m.smoothCoefficient) = c - slew;
    const Value y = m.smooth + (m.selected - m.smooth) * m.smoothCoefficient;
    m.smooth = flushed (y);
    return y;
}

// One sample of the state-variable filter (one unit delay in each integrator). `coefficient` is 2 pi fc / fs
// without a sine correction, `damping` 2 x (1 - resonance).
template <typename Value>
inline Value step (Memory<Value>& m, Switches switches, FixedCoefficients fixed, Value damping,
                   Value coefficient, Value input)
{
    const Value x = switches.drives ? drive (m, fixed, input) : input;
    const Value high = x - (m.low + m.band * damping);
    const Value band = high * coefficient + m.band;
    const Value low = band * coefficient + m.low;
    m.band = flushed (band);
    m.low = flushed (low);

    if (switches.type == lowPass)
        m.selected = low;
    else if (switches.type == bandPass)
        m.selected = band;
    else if (switches.type == highPass)
        m.selected = high;
    return switches.smooths && switches.type == lowPass ? smooth (m, coefficient) : m.selected;
}
}
}
