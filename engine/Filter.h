#pragma once

#include "engine/FilterCore.h"
#include "engine/VoiceKernel.h"

namespace engine
{
// The filter of one voice: drive stage, state-variable section with three outputs, and an extra low-pass
// pole for the low-pass output. Ticked on the audio thread; its memories carry over from note to note. The
// setters may come from the user-interface thread.
class Filter
{
public:
    Filter () { setSampleRate (44100.0f); }

    // Above 0. Recomputes the fixed corner frequencies; the cutoff follows at the next setCutoff.
    void setSampleRate (float hz);

    // Control 0..1 (may leave it) to the cutoff frequency, 100..6500 Hz.
    void setCutoff (float control);

    // Moves the base of the cutoff control one step towards `target` (0..1) and answers it. Called once per
    // cutoff update. Large distances go fast at first and settle smoothly. The first target of all is taken
    // at once, so that the first note after loading has its own filter.
    float keyTrackedBase (float target);

    bool takeFirstBase (float target); // true when it is the first

    void setKey (int note);        // MIDI note; key tracking counts from note 48
    void setResonance (float r);   // limited to 0.3..0.968
    void setType (std::int32_t t); // filterCore::Type; once a foreign number is stored it no longer changes
    void setSmooth (bool on) { switches.smooths = on; }
    void setKeyTrack (bool on) { keyTrack = on; }
    void setHighQuality (bool on) { switches.drives = on; } // drive stage on or off

    float process (float input);

    // A note begins: memories that are no numbers any more, whatever made them so, start clean. Others carry
    // over.
    void heal ();

    float coefficient () const { return mainCoefficient; } // 2 pi x cutoff / sample rate
    float cutoffHz () const { return cutoff; }

    // What is the same in the filters of all voices.
    void describe (VoiceLanes& lanes) const;

    // Moves what rendering needs and changes into a lane, and back.
    void enter (VoiceLanes& lanes, std::size_t lane) const;
    void leave (const VoiceLanes& lanes, std::size_t lane);

private:
    static float highestStableCoefficient (float damping);
    float slewDivisor () const { return sampleRate / 200.0f; }

    filterCore::Switches switches;
    filterCore::FixedCoefficients fixed;
    float damping = 1.0f; // 2 x (1 - resonance)
    float highestCoefficient = highestStableCoefficient (damping);
    float mainCoefficient = 0.0f; // angular step x cutoff
    filterCore::Memory<float> memory;
    float sampleRate = 44100.0f;
    float angularStep = 0.0f; // 2 pi / sample rate
    float base = 0.0f;        // slewed base of the cutoff control, 0..1
    bool hasBase = false;     // had its first target
    float cutoff = 0.0f;      // Hz
    int key = 24;             // 0..127
    bool keyTrack = true;
};
}
