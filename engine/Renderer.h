#pragma once

#include <array>
#include <span>

#include "engine/Lfo.h"
#include "engine/ParameterMapping.h"
#include "engine/Voices.h"

namespace engine
{
// Renders the sounding voices, in runs of samples between which nothing changes. Falls asleep after four
// seconds without a sounding voice, and then writes zeros at next to no cost. Audio thread.
class Renderer
{
public:
    static constexpr int longestRun = 64; // samples

    Renderer (Voices& allVoices, Lfo& sharedLfo) : voices (allVoices), lfo (sharedLfo) {}

    // Copies what the sample loop reads. `expression` 0..1, `sampleRate` in Hz.
    void takeParameters (const ParameterMapping& mapping, float expression, double sampleRate);

    // Writes the next samples, longestRun at the most, over out[0 .. samples-1].
    void renderRun (float* out, int samples);

    bool isAsleep () const { return asleep; }
    void wake () { asleep = false; }
    void restartSilence () { silenceCounter = 0.0f; }

private:
    friend class EngineProbe; // the tests' sample-by-sample renderer works on the same state

    struct BlockParameters
    {
        float outputGain = 0.0f;
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
        float samplesToSleep = 0.0f;
    };

    using RunBuffer = std::array<float, longestRun>;

    // One sounding voice in the run being rendered.
    struct VoiceRun
    {
        int voice = 0;
        int samples = 0;             // that the voice sounds for
        RunBuffer amplitude;         // envelope 1
        RunBuffer signal;            // sources, then filtered
        RunBuffer filterCoefficient; // per sample
    };

    int countSilence (int samples);
    std::span<VoiceRun> renderAmplitudes (int samples);
    void renderOscillators (Voice& voice, float* out, int samples);
    void bendByLfo (Voice& voice, float shift) const;
    void renderEnvelope2 (Voice& voice, float* out, int samples) const;
    void renderCutoff (Voice& voice, float* out, int samples);
    void renderFilters (std::span<VoiceRun> runs);

    Voices& voices;
    Lfo& lfo;
    bool asleep = true;
    float silenceCounter = 0.0f; // samples without a sounding voice
    BlockParameters block;

    // Scratch of one run
    RunBuffer lfoRun = {};                                       // LFO values, shared by all voices
    std::array<VoiceRun, parameters::mostVoices> voiceRuns = {}; // the sounding voices, in ascending order
};
}
