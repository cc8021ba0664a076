#pragma once

#include <cstdint>

#include "engine/Random.h"

namespace engine
{
// The low-frequency oscillator, shared by all voices. One phase counter, 4 units a cycle, drives every
// shape. Ticked once per sample on the audio thread; it runs free across notes.
class Lfo
{
public:
    enum Shape : std::int32_t
    {
        triangle,
        risingSaw,
        square,
        fallingSaw,
        roundedTriangle, // sine of the triangle, so it spans only +-0.841
        noise,
        sampleAndHold
    };

    void setSampleRate (float hz) { sampleRate = hz; } // the step stays until the next rate is set
    void setShape (std::int32_t newShape);             // above 6 counts as 6

    // Fastest rate in Hz and longest period in seconds (at least 1) that setRate spans.
    void setRateRange (float fastestHz, float longestPeriod);
    void setRate (float x);    // 0..1: from one cycle in the longest period to the fastest rate
    void setRateHz (float hz); // 0..one cycle per sample

    // Back to the start of a cycle, plus `steps` steps; noise has none.
    void resetPhase (float steps = 0.0f);

    // Moves to a place in the cycle, 0..1, from which the next tick steps on; two steps or less off is near
    // enough and left alone, so that rounding moves nothing to and fro. Noise has no place.
    void setCyclePosition (double fraction);

    float tick (); // the next value, -1..+1

    // The next values into out[0 .. samples-1], 64 at the most; those whose bit in `wanted` is clear may be
    // left out.
    void render (float* out, int samples, std::uint64_t wanted);

    // Leaves everything, the random generator too, as that many ticks would, in a time that grows with the
    // number of cycles and not with the ticks.
    void advance (std::int64_t ticks);
    float cycleSamples () const { return step > 0.0f ? unitsPerCycle / step : 0.0f; }

private:
    static constexpr float unitsPerCycle = 4.0f;

    double cyclePosition () const;
    void bounce ();
    bool bounceStraight (float* out, int samples, std::uint64_t wanted);
    static void roundOff (float* phases, std::uint64_t wanted);
    void advanceSaw (std::int64_t ticks);
    void advanceBounce (std::int64_t ticks);

    float sampleRate = 44100.0f;
    std::int32_t shape = triangle;
    float maxHz = 100.0f;
    float minPeriod = 1.0f; // seconds
    float step = 0.0f;      // phase units per sample

    static constexpr float startPhase = -1.0f;
    float phase = startPhase;
    bool rising = true; // direction of the bouncing shapes
    float held = 0.0f;  // level of sample and hold
    Random random{ 1 };
};
}
