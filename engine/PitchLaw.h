#pragma once

#include "engine/NoteTable.h"
#include "parameters/KnobLaws.h"

namespace engine
{
// The arithmetic of an oscillator's pitch, written once for a number or a vector of numbers, as that of the
// filter (FilterCore.h).
namespace pitchLaw
{
// Table samples per second and Hz, times 12: note 60 reads 88200 table samples a second, two per output
// sample at 44.1 kHz.
inline constexpr float incrementConstant = 4045.476f;
inline constexpr float incrementDivisor = 12.0f;

inline constexpr float highestHz = noteFreq[127];
inline constexpr float lowestHz = 1e-12f; // stands in for frequencies below 0

// Ratio of frequencies for an interval in semitones, written out because the systems' libraries differ in the
// last digits: whole semitones one by one, and the power series of the exponential for the rest.
constexpr double ratioOfSemitones (double semitones)
{
    if (semitones < 0.0)
        return 1.0 / ratioOfSemitones (-semitones);
    constexpr double logarithm = 0.057762265046662109; // of one semitone, natural
    double ratio = 1.0;
    while (semitones >= 1.0)
    {
        ratio *= semitoneRatio;
        semitones -= 1.0;
    }
    const double x = semitones * logarithm;
    return ratio * (1.0 + x * (1.0 + x / 2.0 * (1.0 + x / 3.0 * (1.0 + x / 4.0 * (1.0 + x / 5.0)))));
}
static_assert (ratioOfSemitones (12.0) - 2.0 < 1e-12 && 2.0 - ratioOfSemitones (12.0) < 1e-12);
static_assert (ratioOfSemitones (0.5) * ratioOfSemitones (0.5) - semitoneRatio < 1e-9 &&
               ratioOfSemitones (-0.5) * ratioOfSemitones (0.5) == 1.0);

// One step of `delta` from `current` towards `target`; what remains of one or less arrives exactly.
template <typename Value>
[[gnu::always_inline]] inline Value glided (Value current, Value target, Value delta)
{
    const Value remaining = target - current;
    const Value moved = remaining > 0.0f ? current + delta : current - delta;
    return (remaining <= delta) & (-remaining <= delta) ? target : moved;
}

// Table samples per output sample. `perHz` is incrementConstant / sample rate.
template <typename Value>
[[gnu::always_inline]] inline Value incrementOf (Value baseHz, float tuneCorrection, Value lfoFactor,
                                                 float masterFactor, Value bendHz, Value fineHz, float perHz)
{
    const Value hz = baseHz * tuneCorrection * lfoFactor * masterFactor + bendHz + fineHz;
    const Value raised = hz < 0.0f ? Value{} + lowestHz : hz;
    const Value limited = raised > highestHz ? Value{} + highestHz : raised;
    return limited * perHz / incrementDivisor;
}
}
}
