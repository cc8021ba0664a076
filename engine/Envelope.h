#pragma once

#include <cstdint>

#include "engine/VoiceKernel.h"

namespace engine
{
// Linear attack, decay, sustain and release for one voice. Every segment moves the level by a fixed step a
// sample and takes its set time when it spans the full range. Audio thread; the setters may be called between
// any two ticks.
class Envelope
{
public:
    enum class State : std::int32_t
    {
        attack,
        decay,
        sustain,
        release,
        idle,
        fadeOut // a sounding level is brought down before the attack of the next note
    };

    void setSampleRate (float hz);              // above 0; recomputes the steps
    void setAttack (float x);                   // x^2 x 10 seconds
    void setDecay (float x);                    // x^2 x 10 seconds
    void setRelease (float x);                  // x^2 x 14 seconds
    void setSustain (float level);              // 0..1; below 0.001 counts as 0 unless the loop flag is set
    void setVelocitySensitivity (float amount); // 0..1: none to velocity squared
    void setLoop (bool on) { loop = on; }       // repeat attack and decay while sustain is exactly 0

    void trigger (std::uint32_t velocity); // starts a note, 0..127
    void release ();
    void kill (); // silent at once

    State state () const { return current.state; }
    bool isIdle () const { return current.state == State::idle; }
    float level () const { return current.level; }
    float tick (); // the level after this sample's step

    // The next samples into out[0 .. samples-1], ending early with the sample on which the envelope falls
    // idle. Answers how many samples it was not idle for.
    int render (float* out, int samples);

    // Whether the next samples from that level on certainly are nothing but one step after the other, and so
    // leave the state as it is.
    bool staysOnRamp (float level, int samples) const;

    // Moves level and step into a lane, and the level back.
    void enter (EnvelopeLanes& lanes, std::size_t lane) const;
    void leave (const EnvelopeLanes& lanes, std::size_t lane) { current.level = lanes.level.of[lane]; }

private:
    struct Position
    {
        float level = 0.0f;
        State state = State::idle;
    };

    struct Steps
    {
        float attack = 0.01f; // level per sample
        float decay = 0.01f;
        float release = 0.01f;
        float peak = 1.0f; // level that the attack aims at
        float sustainTarget = 1.0f;
        bool repeats = false; // decay leads back to attack
    };

    static void advance (Position& position, const Steps& steps);
    static int renderSegment (Position& position, const Steps& steps, float* out, int samples);
    Steps stepsNow () const;
    float rampStep () const;
    void recomputeSteps ();
    float stepFor (float seconds) const;

    float sampleRate = 44100.0f;
    float attackTime = 0.001f; // seconds
    float decayTime = 0.0f;
    float sustainLevel = 1.0f;
    float releaseTime = 0.001f;
    float velocitySensitivity = 1.0f;
    float velocityGain = 1.27f; // level factor of the current note
    bool loop = false;
    Steps steps;
    Position current;
};
}
