#include "engine/Oscillator.h"

#include <algorithm>
#include <cmath>

#include "engine/NoteTable.h"
#include "parameters/KnobLaws.h"

namespace engine
{
namespace
{
// Table samples per second and Hz, times 12: note 60 reads 88200 table samples a second, two per output
// sample at 44.1 kHz.
constexpr float incrementConstant = 4045.476f;
constexpr float incrementDivisor = 12.0f;

using parameters::pitchUnitHz;
static_assert (pitchUnitHz == noteFreq[12]);

constexpr int octave = 12;
constexpr float highestHz = noteFreq[127];
constexpr float lowestHz = 1e-12f; // stands in for frequencies below 0
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

// One step towards the target; what remains of one or less arrives exactly.
float Oscillator::glideStep ()
{
    if (glideTime == 0.0f)
        return glideTarget;
    const float remaining = glideTarget - glideCurrent;
    if (std::abs (remaining) <= glideDelta)
        glideCurrent = glideTarget;
    else
        glideCurrent += remaining > 0.0f ? glideDelta : -glideDelta;
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

// `amount` of the way, in Hz, from this note to another.
float Oscillator::offsetTowards (int otherNote, float amount) const
{
    return amount * (noteHz (otherNote) - noteHz (note + rangeOffset));
}

void Oscillator::updateIncrement ()
{
    const int key = note + rangeOffset;
    float fineHz = 0.0f;
    if (fineAmount > 0.0f)
        fineHz = offsetTowards (std::min (key + octave, 127), fineAmount);
    else if (fineAmount < 0.0f)
        fineHz = offsetTowards (std::max (key - octave, 0), -fineAmount);
    float bendHz = 0.0f;
    if (bendAmount > 0.0f)
        bendHz = offsetTowards (key + bendRange, bendAmount);
    else if (bendAmount < 0.0f)
        bendHz = offsetTowards (key - bendRange, -bendAmount);

    const float baseHz = glideTime > 0.0f ? glideStep () : noteHz (key);
    float hz = baseHz * tuneCorrection * lfoPitchFactor * masterPitchFactor + bendHz + fineHz;
    if (hz < 0.0f)
        hz = lowestHz;
    hz = std::min (hz, highestHz);

    increment = hz * (incrementConstant / sampleRate) / incrementDivisor;
    // A rewound cycle starts one increment in: the next read wraps this to `increment`.
    if (increment > 0.0f && phase == 0.0)
        phase = static_cast<double> (increment) + static_cast<double> (loopLength);
}

// A read's settings and its phase apart from the object, so that a run keeps them in registers.
struct Oscillator::Reader
{
    const float* table;
    double loopLength;
    double increment;
    float pulseOffset;
    bool interpolates;
    double phase;

    float plain ()
    {
        phase = wrapped (phase, loopLength);
        const auto i = static_cast<std::int32_t> (phase);
        float out = table[i];
        if (interpolates)
        {
            const double fraction = phase - i;
            out = static_cast<float> (out + fraction * static_cast<double> (table[i + 1] - out));
        }
        phase += increment;
        return out;
    }

    // Meant as it stands: the samples are those of the table's first cycle whatever cycle is selected. The
    // selected one enters through the fraction alone, which it raises by its offset, so that the
    // differences between neighbouring samples are scaled up; the filter's drive stage folds the result.
    float full ()
    {
        phase = wrapped (phase, loopLength);
        const auto i = static_cast<std::int32_t> (phase);
        float out = table[i];
        if (interpolates)
            out += (readPosition () - static_cast<float> (i)) * (table[i + 1] - out);
        phase += increment;
        return out;
    }

    float readPosition () const
    {
        if (pulseOffset == 0.0f)
            return static_cast<float> (phase);
        // Rounding to 32 bits can land on the end; it wraps like the phase.
        const float end = static_cast<float> (loopLength) + pulseOffset;
        const auto position = static_cast<float> (phase + static_cast<double> (pulseOffset));
        return position >= end ? position - end : position;
    }
};

Oscillator::Reader Oscillator::reader () const
{
    return {
        table, static_cast<double> (loopLength), static_cast<double> (increment), pulseOffset, highQuality,
        phase
    };
}

float Oscillator::tick ()
{
    if (silent)
        return 0.0f;
    Reader read = reader ();
    const float out = read.plain ();
    phase = read.phase;
    return out;
}

float Oscillator::tickFull ()
{
    if (silent)
        return 0.0f;
    if (glideTime > 0.0f)
        updateIncrement ();
    Reader read = reader ();
    const float out = read.full ();
    phase = read.phase;
    return out;
}

void Oscillator::addRun (float* out, int samples, float level)
{
    if (silent)
        return;
    Reader read = reader ();
    for (int n = 0; n < samples; ++n)
        out[n] += read.plain () * level;
    phase = read.phase;
}

void Oscillator::addRunFull (float* out, int samples, float level)
{
    if (silent)
        return;
    if (glideTime > 0.0f)
    {
        for (int n = 0; n < samples; ++n)
            out[n] += tickFull () * level;
        return;
    }
    Reader read = reader ();
    for (int n = 0; n < samples; ++n)
        out[n] += read.full () * level;
    phase = read.phase;
}
}
