#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <optional>

#include "parameters/Parameters.h"

// What a knob's position means, each law once: the engine sets itself by these, the panel's texts and the
// builder of the factory bank tell and read the same figures. `knob` is a usable value: 0..1, or anything
// finite for the parameters that are not clamped. The engine's arithmetic is 32-bit float in the order
// written here; another order would round otherwise and be heard in comparisons of renders. Any thread.
namespace parameters
{
constexpr float cubed (float x)
{
    return x * x * x;
}

// Switches share the knob's travel: value x (positions - 1), truncated, so that the last position is only at
// 1.0. Empty outside the positions.
template <typename T, std::size_t positions>
constexpr std::optional<T> positionIn (const T (&table)[positions], float knob)
{
    const std::int32_t k = positionOf (knob, static_cast<float> (positions - 1));
    return k >= 0 && k < static_cast<std::int32_t> (positions) ? std::optional<T> (table[k]) : std::nullopt;
}

// --- Level

constexpr float sustainLevel (float knob)
{
    return knob * knob;
}
inline double knobOfSustainLevel (double level)
{
    return std::sqrt (level);
}
static_assert (sustainLevel (0.5f) == 0.25f);

// Decibels of a level factor; minus infinity for 0.
inline double decibels (double level)
{
    return 20.0 * std::log10 (level);
}

// Output gain by VolType. Other values leave the gain as it was.
constexpr std::optional<float> volTypeGain (float knob)
{
    if (knob == 0.0f)
        return 1.6f;
    if (knob == 1.0f)
        return 1.0f;
    return knob == 2.0f ? std::optional (0.52f) : std::nullopt;
}

// --- Envelopes. The envelopes square what they are set to, which the knobs' laws have squared before.

inline constexpr float longestAttack = 10.0f; // seconds, also of the decay
inline constexpr float longestRelease = 14.0f;

constexpr float attackSeconds (float control)
{
    return control * control * longestAttack;
}
constexpr float decaySeconds (float control)
{
    return control * control * longestAttack;
}
constexpr float releaseSeconds (float control)
{
    return control * control * longestRelease;
}

// The amplitude envelope's controls. The feet keep the shortest times from clicking: 0.81 ms and 0.36 ms.
inline constexpr double attackFoot = 0.009;
inline constexpr double decayFoot = 0.006;
constexpr float ampAttackControl (float knob)
{
    return static_cast<float> (static_cast<double> (knob * knob) + attackFoot);
}
constexpr float ampDecayControl (float knob)
{
    return static_cast<float> (static_cast<double> (knob * knob) + decayFoot);
}
constexpr float filterTimeControl (float knob)
{
    return knob * knob;
}
static_assert (attackSeconds (filterTimeControl (0.5f)) == 0.625f);
static_assert (attackSeconds (ampAttackControl (1.0f)) > 10.18f &&
               attackSeconds (ampAttackControl (1.0f)) < 10.181f);

// The knob for a time of attack or decay; `foot` is 0 for the filter's envelope. The shortest for times
// below.
inline double knobOfEnvelopeSeconds (double seconds, double foot)
{
    const double longest = static_cast<double> (longestAttack);
    return std::sqrt (std::max (0.0, std::sqrt (seconds / longest) - foot));
}

// Delay of the filter's envelope.
constexpr float delaySeconds (float knob)
{
    return knob;
}

// --- Pitch. The factors count in the frequency of note 12.

inline constexpr float pitchUnitHz = 16.3515987f;

// Time that a glide takes, whatever the distance. 0: no glide.
constexpr float glideSeconds (float knob)
{
    return knob * knob;
}
inline double knobOfGlideSeconds (double seconds)
{
    return std::sqrt (seconds);
}

inline constexpr float rangeSemitones[] = { -24.0f, -12.0f, 0.0f, 12.0f, 24.0f };
static_assert (*positionIn (rangeSemitones, 0.5f) == 0.0f && *positionIn (rangeSemitones, 1.0f) == 24.0f);

constexpr float knobOfOctaves (float octaves)
{
    return (octaves + 2.0f) / 4.0f;
}
static_assert (*positionIn (rangeSemitones, knobOfOctaves (-1.0f)) == -12.0f);

// The tables' own pitch is a little low; each has its correction, in Hz at note 12.
inline constexpr float sawCorrection = 0.441f;
inline constexpr float pulseCorrection = 0.396f;

// -1..1 x about a semitone, linear in Hz.
constexpr float masterPitch (float knob)
{
    return 2.0f * knob - 1.0f;
}
inline double masterCents (float knob)
{
    return 1200.0 *
           std::log2 (1.0 + static_cast<double> (masterPitch (knob)) / static_cast<double> (pitchUnitHz));
}

// Part of an octave that oscillator 2 is raised by, linear in Hz.
constexpr float fineAmount (float knob)
{
    return cubed (knob);
}
static_assert (fineAmount (0.5f) == 0.125f);

inline double ratioAbove (double cents)
{
    return std::exp2 (cents / 1200.0) - 1.0;
}

// The fine offset is added beside the tuning correction of the saw, so that an octave's worth raises the
// pitch by 1 / 1.027.
inline constexpr double sawTuning = 1.0 + 0.441 / 16.3515987;
inline double fineCents (float knob)
{
    return 1200.0 * std::log2 (1.0 + static_cast<double> (fineAmount (knob)) / sawTuning);
}
inline double knobOfFineCents (double cents)
{
    return std::cbrt (ratioAbove (cents) * sawTuning);
}

// Full swing of the LFO on the pitch, in Hz at note 12.
constexpr float lfoPitchDepth (float knob)
{
    return 2.0f * cubed (knob);
}
static_assert (lfoPitchDepth (0.5f) == 0.25f);

// What a modulation wheel at its upper end adds to it: 50 cents.
inline constexpr float fullWheelPitchDepth = 0.479f;

inline double vibratoCents (float knob)
{
    return 1200.0 *
           std::log2 (1.0 + static_cast<double> (lfoPitchDepth (knob)) / static_cast<double> (pitchUnitHz));
}
inline double knobOfVibratoCents (double cents)
{
    return std::cbrt (ratioAbove (cents) * static_cast<double> (pitchUnitHz) / 2.0);
}

// Gain of a MIDI channel's volume, 0..127: 40 dB a decade. 100 leaves the sound as it is, 127 adds 4 dB.
constexpr float channelGain (float volume)
{
    constexpr float unityVolume = 100.0f;
    return volume / unityVolume * (volume / unityVolume);
}
static_assert (channelGain (100.0f) == 1.0f && channelGain (50.0f) == 0.25f);

// --- Waves

enum class OscillatorWave
{
    off,
    saw,
    pulse
};
inline constexpr OscillatorWave oscillatorWaves[] = { OscillatorWave::off, OscillatorWave::saw,
                                                      OscillatorWave::pulse };

// An oscillator whose wave knob stands below this is mute and keeps the table that it had.
inline constexpr float lowestSoundingWave = 0.5f;

// Cycle of the pulse table, 200 (knob at 0) down to 0 (at 1).
constexpr float pulseCycle (float knob)
{
    constexpr float cycles = 200.0f;
    return static_cast<float> (truncateToInt ((1.0f - knob) * cycles));
}
static_assert (pulseCycle (0.0f) == 200.0f && pulseCycle (1.0f) == 0.0f);

// --- Filter

inline constexpr float lowestCutoffHz = 100.0f;
inline constexpr float highestCutoffHz = 6500.0f;
inline constexpr double cutoffSpanHz = 6460.0;

// `control` is the knob with the modulation added; it may leave 0..1.
constexpr float cutoffHz (float control)
{
    const double squared = static_cast<double> (control) * static_cast<double> (control);
    const double hz = squared * cutoffSpanHz + static_cast<double> (lowestCutoffHz);
    return std::clamp (static_cast<float> (hz), lowestCutoffHz, highestCutoffHz);
}
static_assert (cutoffHz (0.0f) == 100.0f && cutoffHz (0.5f) == 1715.0f && cutoffHz (1.0f) == 6500.0f);

inline double knobOfCutoffHz (double hz)
{
    return std::sqrt ((hz - static_cast<double> (lowestCutoffHz)) / cutoffSpanHz);
}

// With key tracking: `keyFactor` is the frequency of the key counted from trackingStart, in Hz.
inline constexpr int trackingStart = 48; // MIDI note
inline constexpr double trackedFoot =
    0.02; // added to the squared control, so that a closed filter follows the keys
inline constexpr double trackedScale = 0.06;
constexpr float trackedCutoffHz (float control, float keyFactor)
{
    const double squared = static_cast<double> (control) * static_cast<double> (control);
    const double hz = (squared + trackedFoot) * trackedScale * static_cast<double> (keyFactor) * cutoffSpanHz;
    return std::clamp (static_cast<float> (hz), lowestCutoffHz, highestCutoffHz);
}

// Resonance is limited on both sides; damping = 2 x (1 - resonance).
constexpr float filterDamping (float knob)
{
    return 2.0f * (1.0f - std::clamp (knob, 0.3f, 0.968f));
}

inline constexpr std::int32_t filterTypes[] = { 0, 1, 2 }; // low-pass, band-pass, high-pass

// -1..1: modulation of the cutoff, and the amounts that the panel shows in per cent.
constexpr float bipolarAmount (float knob)
{
    return 2.0f * knob - 1.0f;
}
constexpr double knobOfBipolarAmount (double amount)
{
    return 0.5 + amount / 2.0;
}
static_assert (bipolarAmount (0.5f) == 0.0f && knobOfBipolarAmount (-1.0) == 0.0);

// --- LFO

inline constexpr float lfoFastestHz = 100.0f;
inline constexpr float lfoLongestPeriod = 6.0f; // seconds

constexpr float lfoRateControl (float knob)
{
    return cubed (knob);
}

// Cycles in the longest period: 1 at control 0, up to fastest x longest at 1.
constexpr float lfoCyclesInPeriod (float control, float fastestHz, float longestPeriod)
{
    return (fastestHz * longestPeriod - 1.0f) * control + 1.0f;
}
constexpr float lfoHz (float knob)
{
    return lfoCyclesInPeriod (lfoRateControl (knob), lfoFastestHz, lfoLongestPeriod) / lfoLongestPeriod;
}
static_assert (lfoHz (1.0f) == 100.0f && lfoHz (0.0f) * 6.0f == 1.0f);
inline double knobOfLfoHz (double hz)
{
    const double fastest = static_cast<double> (lfoFastestHz);
    const double longest = static_cast<double> (lfoLongestPeriod);
    return std::cbrt ((longest * hz - 1.0) / (fastest * longest - 1.0));
}

// Positions of LfoWave x 5.
enum class LfoWave
{
    triangle,
    risingSaw,
    fallingSaw,
    square,
    noise,
    sampleAndHold
};
inline constexpr LfoWave lfoWaves[] = { LfoWave::triangle, LfoWave::risingSaw, LfoWave::fallingSaw,
                                        LfoWave::square,   LfoWave::noise,     LfoWave::sampleAndHold };

// One position of the tempo-synced LFO rate.
struct SyncDivision
{
    float divisor;     // tempo / divisor = cycles per second: 60 x the cycle's length in quarter notes
    const char* label; // what the panel shows
};

// The divisions by LfoRate x 17, truncated.
inline constexpr float syncDivisionSteps = 17.0f;
inline constexpr SyncDivision syncDivisions[] = {
    { 1920.0f, "32/4" }, { 960.0f, "16/4" }, { 480.0f, "8/4" },        { 420.0f, "7/4" }, { 360.0f, "6/4" },
    { 300.0f, "5/4" },   { 240.0f, "4/4" },  { 210.0f, "7/8" },        { 180.0f, "3/4" }, { 120.0f, "2/4" },
    { 60.0f, "1/4" },    { 30.0f, "1/8" },   { 24.0f, "1/10" },        { 20.0f, "1/12" }, { 15.0f, "1/16" },
    { 10.0f, "1/24" },   { 7.5f, "1/32" },   { 20.0f / 3.0f, "1/36" },
};
constexpr float divisorPerQuarter = 60.0f;

// The division for an LfoRate value; empty for values that name none.
constexpr std::optional<SyncDivision> syncDivisionFor (float knob)
{
    return positionIn (syncDivisions, knob);
}
static_assert (syncDivisionFor (1.0f)->divisor == 20.0f / 3.0f && syncDivisionFor (0.0f)->divisor == 1920.0f);

// --- Voices

inline constexpr std::int32_t mostVoices = 16;

// Voice count for a Voices value: steps of two, 2..16; empty for values that name none.
constexpr std::optional<std::int32_t> voiceCountFor (float knob)
{
    const std::int32_t k = positionOf (knob, 15.0f);
    return k >= 0 && k <= 15 ? std::optional (2 * (k / 2) + 2) : std::nullopt;
}
static_assert (voiceCountFor (0.0f) == 2 && voiceCountFor (0.95f) == 16 && !voiceCountFor (3.0f));
}
