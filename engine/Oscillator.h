#pragma once

#include <cstdint>

#include "engine/VoiceKernel.h"

namespace engine
{
// One sound source of a voice: reads a float table at the pitch of a note. Ticked on the audio thread. It
// runs free: nothing stops it between notes. Without a table it is silent and stands still.
class Oscillator
{
public:
    enum class Mode : std::int32_t
    {
        plain = 0,       // a stretch of sound (noise)
        cycleSelect = 1, // many cycles one after another (pulse)
        singleCycle = 2  // one cycle (saw)
    };

    void setSampleRate (float hz); // above 0; acts at the next updateIncrement

    // Swaps the table and rewinds. `table` holds length + 1 samples (the last a guard) and outlives this
    // object; `loop` is the cycle length in samples, 0 for the whole table. Length 0 (a missing recording):
    // silent.
    void setTable (const float* table, std::int32_t length, Mode newMode, std::int32_t loop);
    Mode mode () const { return tableMode; }

    void setNote (int newNote, bool retrigger); // MIDI note; aims the glide
    void setGlide (float x);                    // glide time = x^2 seconds; 0: notes jump
    void clearGlide ();                         // the next note starts at its own pitch

    // Semitones added to every note, and a constant detuning that makes up for the table's own pitch.
    void setRange (int offsetSemitones, float correction);
    void setPulseWidth (float cycle);           // cycle 0..200 of the pulse table; ignored without a table
    void setLfoPitch (float x);                 // pitch factor 1 + x / 16.35
    void setMasterPitch (float x);              // the same, -1..1: about a semitone each way
    void setFine (float x);                     // 0..1: up to an octave above, linear in Hz
    void setPitchBend (float x, int semitones); // -1..1: down or up to the note so far away, linear in Hz
    void setBendFactor (float ratio);           // bends everything by this interval; 1: not at all
    void setHighQuality (bool on) { highQuality = on; } // interpolate between samples

    // Applies the pitch settings above; in a glide it also advances by one glide step.
    void updateIncrement ();

    float tick ();     // plain read
    float tickFull (); // read with glide and pulse offset

    // What is the same in all oscillators of a kind, whichever voice's this is.
    void describe (OscillatorLanes& lanes) const;

    // Moves what rendering needs and changes into a lane, and back.
    void enter (OscillatorLanes& lanes, std::size_t lane) const;
    void leave (const OscillatorLanes& lanes, std::size_t lane);

private:
    float readPosition () const;
    void aimGlide (float targetHz);
    float glideStep ();
    float offsetTowards (int otherNote, float amount) const;
    float fineHz () const;
    float bendHz () const;

    const float* table = nullptr;
    std::int32_t loopLength = 0; // samples in one cycle, the read limit
    Mode tableMode = Mode::plain;
    bool silent = false; // has no table
    bool highQuality = true;
    float pulseOffset = 0.0f; // start of the selected pulse cycle in the table, samples

    double phase = 0.0;     // read position, table samples
    float increment = 0.0f; // table samples per output sample

    float sampleRate = 44100.0f;
    int note = 0;
    int rangeOffset = 0;         // semitones
    float tuneCorrection = 1.0f; // factors on the pitch
    float lfoPitchFactor = 1.0f;
    float masterPitchFactor = 1.0f;
    float fineAmount = 0.0f; // -12..12 octaves towards the neighbouring one
    float bendAmount = 0.0f; // -1..1
    float bendFactor = 1.0f;
    int bendRange = 2; // semitones

    float glideTime = 0.0f;    // seconds, 0: no glide
    float glideCurrent = 0.0f; // Hz, 0: the next note jumps
    float glideTarget = 0.0f;  // Hz
    float glideDelta = 0.0f;   // Hz per sample

    bool freshTable = false;   // set by setTable and by nothing cleared: a note never restarts the cycle
    bool pendingReset = false; // the next note rewinds
};
}
