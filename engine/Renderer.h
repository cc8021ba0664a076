#pragma once

#include "engine/Lfo.h"
#include "engine/ParameterMapping.h"
#include "engine/SoundingVoices.h"
#include "engine/VoiceKernel.h"
#include "engine/Voices.h"

namespace engine
{
// Renders the sounding voices, in runs of samples between which nothing changes. Falls asleep after four
// seconds without a sounding voice, and then writes zeros at next to no cost. Audio thread.
class Renderer
{
public:
    Renderer (Voices& allVoices, Lfo& sharedLfo, const VoiceKernel& voiceKernel)
        : voices (allVoices),
          lfo (sharedLfo),
          kernel (voiceKernel)
    {
    }

    // What MIDI controllers make of the sound beside the parameters.
    struct Performance
    {
        float gain;              // factor of the output
        float extraVibratoDepth; // added to parameters::lfoPitchDepth
    };

    // Copies what the sample loop reads. `sampleRate` in Hz.
    void takeParameters (const ParameterMapping& mapping, const Performance& performance, double sampleRate);

    // Writes the next samples, longestRun at the most, over out[0 .. samples-1].
    void renderRun (float* out, int samples);

    bool isAsleep () const { return asleep; }
    void wake () { asleep = false; }
    void restartSilence () { silenceCounter = 0.0f; }

private:
    friend class EngineProbe; // the tests' sample-by-sample renderer works on the same state

    struct BlockParameters : SoundingVoices::Settings
    {
        float outputGain = 0.0f;
        float samplesToSleep = 0.0f;
    };

    int countSilence (int samples);

    Voices& voices;
    Lfo& lfo;
    const VoiceKernel& kernel;
    bool asleep = true;
    float silenceCounter = 0.0f; // samples without a sounding voice
    BlockParameters block;
};
}
