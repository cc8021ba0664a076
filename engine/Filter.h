#pragma once

#include <span>

#include "engine/FilterCore.h"

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

    // A stretch of sound for one of the filters of a group.
    struct Run
    {
        Filter* filter;
        float* samples;            // replaced by the output
        const float* coefficients; // main coefficient of each sample
        int count;
    };

    // Processes 1 to filterCore::lanes filters side by side, reordering `group` on the way. All of them have
    // the same switches (type, smoothing, drive) and sample rate, as the voices of one engine do.
    static void processGroup (std::span<Run> group);

    float coefficient () const { return mainCoefficient; } // 2 pi x cutoff / sample rate
    float cutoffHz () const { return cutoff; }

private:
    using Memory = filterCore::Memory<filterCore::OneVoice>;

    static void processTogether (std::span<const Run> group, int begin, int end);
    float highestStableCoefficient () const;

    filterCore::Switches switches;
    filterCore::FixedCoefficients fixed;
    float damping = 1.0f;         // 2 x (1 - resonance)
    float mainCoefficient = 0.0f; // angular step x cutoff
    Memory memory;
    float sampleRate = 44100.0f;
    float angularStep = 0.0f; // 2 pi / sample rate
    float base = 0.0f;        // slewed base of the cutoff control, 0..1
    bool hasBase = false;     // had its first target
    float cutoff = 0.0f;      // Hz
    int key = 24;             // 0..127
    bool keyTrack = true;
};
}
