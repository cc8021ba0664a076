#include "engine/Oscillator.h"

#include <algorithm>
#include <cmath>

#include "engine/NoteTable.h"
#include "engine/PitchLaw.h"
#include "parameters/KnobLaws.h"

namespace engine
{
namespace
{
using parameters::pitchUnitHz;
static_assert (pitchUnitHz == noteFreq[12]);

constexpr int octave = 12;
constexpr float largestFine = 12.0f;

double wrapped (double phase, double length)
{
    while (phase >= length)
        phase -= length;
    return phase;
}
}

void Oscillator::setSampleRate (float hz)
{
    sampleRate = hz;
}

void Oscillator::setTable (const float* newTable, std::int32_t length, Mode newMode, std::int32_t loop)
{
    silent = length <= 0;
    if (silent)
        return;
    freshTable = true;
    pulseOffset = 0.0f;
    tableMode = newMode;
    table = newTable;
    loopLength = loop != 0 ? loop : length;
    phase = 0.0;
}

void Oscillator::setNote (int newNote, bool retrigger)
{
    if (pendingReset)
    {
        phase = 0.0;
        pendingReset = false;
    }
    if (retrigger && !freshTable)
        phase = 0.0;
    if (!retrigger && glideTime > 0.0f)
        pendingReset = true;
    note = newNote;
    aimGlide (noteHz (note + rangeOffset));
    updateIncrement ();
}

void Oscillator::setGlide (float x)
{
    glideTime = x * x;
    if (glideTime == 0.0f)
        clearGlide ();
}

void Oscillator::clearGlide ()
{
    glideCurrent = 0.0f;
    glideTarget = 0.0f;
    glideDelta = 0.0f;
}

void Oscillator::aimGlide (float targetHz)
{
    const float samples = sampleRate * glideTime;
    const bool jumps = glideCurrent == 0.0f || glideTarget == 0.0f || (glideTime > 0.0f && samples <= 1.0f);
    const float distance = std::abs (targetHz - glideCurrent);
    if (jumps)
        glideCurrent = targetHz;
    glideDelta = jumps || glideTime == 0.0f ? 0.0f : distance / samples;
    glideTarget = targetHz;
    glideStep ();
}

float Oscillator::glideStep ()
{
    if (glideTime == 0.0f)
        return glideTarget;
    glideCurrent = pitchLaw::glided (glideCurrent, glideTarget, glideDelta);
    return glideCurrent;
}

void Oscillator::setRange (int offsetSemitones, float correction)
{
    rangeOffset = offsetSemitones;
    tuneCorrection = 1.0f + correction / pitchUnitHz;
    if (glideTime > 0.0f)
    {
        aimGlide (noteHz (note + rangeOffset));
        updateIncrement ();
    }
}

void Oscillator::setPulseWidth (float cycle)
{
    if (!silent)
        pulseOffset = cycle * static_cast<float> (loopLength);
}

void Oscillator::setLfoPitch (float x)
{
    lfoPitchFactor = 1.0f + x / pitchUnitHz;
}
void Oscillator::setMasterPitch (float x)
{
    masterPitchFactor = 1.0f + x / pitchUnitHz;
}
void Oscillator::setFine (float x)
{
    fineAmount = std::clamp (x, -largestFine, largestFine);
}

void Oscillator::setPitchBend (float x, int semitones)
{
    bendAmount = x;
    bendRange = semitones;
}

void Oscillator::setBendFactor (float ratio)
{
    bendFactor = ratio;
}

// `amount` of the way, in Hz, from this note to another.
float Oscillator::offsetTowards (int otherNote, float amount) const
{
    return amount * (noteHz (otherNote) - noteHz (note + rangeOffset));
}

float Oscillator::fineHz () const
{
    const int key = note + rangeOffset;
    if (fineAmount > 0.0f)
        return bendFactor * offsetTowards (std::min (key + octave, 127), fineAmount);
    if (fineAmount < 0.0f)
        return bendFactor * offsetTowards (std::max (key - octave, 0), -fineAmount);
    return 0.0f;
}

float Oscillator::bendHz () const
{
    const int key = note + rangeOffset;
    if (bendAmount > 0.0f)
        return offsetTowards (key + bendRange, bendAmount);
    if (bendAmount < 0.0f)
        return offsetTowards (key - bendRange, -bendAmount);
    return 0.0f;
}

void Oscillator::updateIncrement ()
{
    const float baseHz = glideTime > 0.0f ? glideStep () : noteHz (note + rangeOffset);
    increment = pitchLaw::incrementOf (baseHz, tuneCorrection, lfoPitchFactor, masterPitchFactor * bendFactor,
                                       bendHz (), fineHz (), pitchLaw::incrementConstant / sampleRate);
    // A rewound cycle starts one increment in: the next read wraps this to `increment`.
    if (increment > 0.0f && phase == 0.0)
        phase = static_cast<double> (increment) + static_cast<double> (loopLength);
}

float Oscillator::tick ()
{
    if (silent)
        return 0.0f;
    phase = wrapped (phase, loopLength);
    const auto i = static_cast<std::int32_t> (phase);
    float out = table[i];
    if (highQuality)
    {
        const double fraction = phase - i;
        out = static_cast<float> (out + fraction * static_cast<double> (table[i + 1] - out));
    }
    phase += static_cast<double> (increment);
    return out;
}

// The samples are those of the table's first cycle whatever cycle is selected. The selected one enters
// through the fraction alone, which it raises by its offset, so that the differences between neighbouring
// samples are scaled up; the filter's drive stage folds the result. That is the sound of this instrument's
// pulse width.
float Oscillator::tickFull ()
{
    if (silent)
        return 0.0f;
    if (glideTime > 0.0f)
        updateIncrement ();
    phase = wrapped (phase, loopLength);
    const auto i = static_cast<std::int32_t> (phase);
    float out = table[i];
    if (highQuality)
        out += (readPosition () - static_cast<float> (i)) * (table[i + 1] - out);
    phase += static_cast<double> (increment);
    return out;
}

float Oscillator::readPosition () const
{
    if (pulseOffset == 0.0f)
        return static_cast<float> (phase);
    // Rounding to 32 bits can land on the end; it wraps like the phase.
    const float end = static_cast<float> (loopLength) + pulseOffset;
    const auto position = static_cast<float> (phase + static_cast<double> (pulseOffset));
    return position >= end ? position - end : position;
}

void Oscillator::describe (OscillatorLanes& lanes) const
{
    lanes.table = silent ? nullptr : table;
    lanes.length = static_cast<double> (loopLength);
    lanes.pulseOffset = pulseOffset;
    lanes.interpolates = highQuality;
    lanes.glides = glideTime > 0.0f;
    lanes.tuneCorrection = tuneCorrection;
    lanes.masterPitchFactor = masterPitchFactor * bendFactor;
    lanes.incrementPerHz = pitchLaw::incrementConstant / sampleRate;
}

void Oscillator::enter (OscillatorLanes& lanes, std::size_t lane) const
{
    // A lane passes as many ends of the cycle in a sample as the sample rate asks for. A phase that stems
    // from a lower rate may be further ahead; the last end is left to the read.
    double start = phase;
    while (start >= 2.0 * lanes.length && !silent)
        start -= lanes.length;
    lanes.phase.of[lane] = start;
    lanes.increment.of[lane] = increment;
    lanes.noteHz.of[lane] = noteHz (note + rangeOffset);
    lanes.bendHz.of[lane] = bendHz ();
    lanes.fineHz.of[lane] = fineHz ();
    lanes.lfoPitchFactor.of[lane] = lfoPitchFactor;
    lanes.glideCurrent.of[lane] = glideCurrent;
    lanes.glideTarget.of[lane] = glideTarget;
    lanes.glideDelta.of[lane] = glideDelta;
}

void Oscillator::leave (const OscillatorLanes& lanes, std::size_t lane)
{
    phase = lanes.phase.of[lane];
    increment = lanes.increment.of[lane];
    lfoPitchFactor = lanes.lfoPitchFactor.of[lane];
    glideCurrent = lanes.glideCurrent.of[lane];
}
}
