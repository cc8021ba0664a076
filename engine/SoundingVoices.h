#pragma once

#include <array>

#include "engine/Lfo.h"
#include "engine/Voice.h"
#include "engine/VoiceKernel.h"

namespace engine
{
// Moves the sounding voices into lanes, where the kernel renders them together, and back. They stay there
// from run to run until somebody wants to see one of the voices; who hands them out calls leave() before.
// Audio thread.
class SoundingVoices
{
public:
    // What a run takes from the parameters.
    struct Settings
    {
        float osc1Level = 0.0f;
        float osc2Level = 0.0f;
        float noiseLevel = 0.0f;
        float env2DelayParam = 0.0f;
        float env2DelaySamples = 0.0f;
        bool fastFilterUpdate = false;
        float lfoPitchDepth = 0.0f;
        float env2ToFilter = 0.0f;
        float lfoFilterDepth = 0.0f;
        float filterFreqParam = 0.0f;
    };

    // Moves the voices of `all` that sound into lanes, unless they are there. False: none sounds.
    bool enter (std::span<Voice> all);

    // Every voice is itself again.
    void leave ();

    // For how many of the next samples all of those voices sound.
    int soundingFor (int samples) const;

    // Renders that many samples and adds them to out; `lfo` moves on as far. `isMono` as Voices::isMono.
    void render (const VoiceKernel& kernel, const Settings& settings, bool isMono, Lfo& lfo, float* out,
                 int samples);

private:
    void take (const Settings& settings, bool isMono);
    unsigned schedule (DueLanes& due, std::int32_t Voice::*counter, int interval, int samples);
    void prepareEnvelopes (const Settings& settings, int samples);
    int waitForEnvelope2 (Voice& voice, const Settings& settings, int samples) const;
    void finishEnvelopes ();

    bool areInLanes = false;
    std::array<Voice*, mostLanes> sounding = {}; // by lane
    VoiceLanes lanes;
};
}
