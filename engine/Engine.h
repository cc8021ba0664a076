#pragma once

#include <array>
#include <cstdint>
#include <span>

#include "engine/EngineHost.h"
#include "engine/Lfo.h"
#include "engine/Voice.h"
#include "engine/VoiceAllocator.h"
#include "engine/WaveTable.h"
#include "plugin/vst2.h"

namespace engine
{
inline constexpr int voiceSlots = 17; // one more than can sound; every setting goes to all of them
inline constexpr int mostVoices = 16;

// The synthesis engine: turns parameters and MIDI into audio. The audio thread calls processEvents and
// renderBlock; parameters come on either thread, without locks. After initialise nothing allocates.
//
// Sources: Engine.cpp builds it, ParameterMapping.cpp applies parameters, Events.cpp plays MIDI, and
// RenderLoop.cpp renders.
class Engine
{
public:
    explicit Engine (EngineHost& owner) : host (owner) {}
    Engine (const Engine&) = delete;
    Engine& operator= (const Engine&) = delete;

    // Loads the wave tables and brings every voice to its start state, asleep.
    void initialise ();

    // What a parameter change does before its value is stored: keyboard notes, mono mode, gains.
    void parameterChanging (std::int32_t index, float value);

    // What it does after: voices, LFO, oscillators, envelopes and filters follow. `value` is the usable value
    // as stored. False when the change was none and nobody needs to hear of it.
    bool parameterChanged (std::int32_t index, float value);

    // Takes the events of the next block. The list is read in place and must outlive the next renderBlock.
    void processEvents (const VstEvents* events);

    // Writes the next frames into both outputs (null ones are left out) and applies the pending events.
    void renderBlock (float* const* outputs, std::int32_t frames);

    // A key goes down or up; notes outside 0..127 are ignored.
    void noteEvent (int note, std::uint32_t velocity, bool isNoteOn);

    void refreshVoiceFilters ();

    bool isAsleep () const { return asleep; }
    int voicesInUse () const { return voiceCount; }

private:
    friend class EngineProbe; // tests look at the state behind the public seam

    // The parameters that the sample loop reads, copied once per block.
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
    };

    static constexpr int longestRun = 64; // samples rendered at a time between events
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

    // Engine.cpp
    void resetGlobals ();
    void setSampleRateOfAll (float hz);

    // ParameterMapping.cpp
    void playKeyboard (float value);
    void switchMono (float glideMono);
    void silenceVoices (bool clearGlides);
    bool setVoices (float value);
    void mapToLfo (std::int32_t index, float value);
    void mapToVoice (Voice& voice, std::int32_t index, float value);
    void setWave (Oscillator& oscillator, float value, float rangeSemis);
    void applyRange (Oscillator& oscillator, float rangeSemis);

    // Events.cpp
    bool isPending () const;
    std::int32_t nextOffset () const;
    void applyPendingEvents (std::int32_t n);
    void applyMidiEvent ();
    void applyController (std::uint32_t controller, float value);
    void applyPitchBend (float bend);
    void startNote (int note, std::uint32_t velocity);
    void endNote (int note);
    void wake ();
    void catchUpLfo (const VstTimeInfo& time);
    bool setSyncedRate (const VstTimeInfo& time);

    // RenderLoop.cpp
    void beginBlock ();
    void followSampleRate ();
    void followTransport ();
    void copyParameters ();
    std::int32_t runLength (std::int32_t done, std::int32_t frames) const;
    void renderRun (float* out, int samples);
    int countSilence (int samples);
    std::span<VoiceRun> renderAmplitudes (int samples);
    void renderOscillators (Voice& voice, float* out, int samples);
    void bendByLfo (Voice& voice, float shift) const;
    void endBendByLfo ();
    void renderEnvelope2 (Voice& voice, float* out, int samples) const;
    void renderCutoff (Voice& voice, float* out, int samples);
    void renderFilters (std::span<VoiceRun> runs);

    EngineHost& host;

    // Settings, written by parameter changes
    float voicesParam = 1.0f;             // Voices as last applied
    std::int32_t voiceCount = mostVoices; // 1: mono
    float glideAuto = 0.0f;
    float volTypeGain = 0.5f;
    float syncDivision = 0.0f;   // tempo / this = LFO cycles per second; 0: none chosen yet
    float osc1RangeSemis = 0.0f; // semitones
    float osc2RangeSemis = 0.0f;
    std::int32_t keyboardNote = 0; // held through the on-screen keyboard, -1: none

    // State of the audio thread
    double sampleRate = 44100.0; // Hz, as last taken over from the host
    bool asleep = true;
    float expression = 1.0f;     // controller 11, 0..1
    float silenceCounter = 0.0f; // samples without a sounding voice
    bool transportStopped = true;
    float lastSamplePos = -1.0f;
    const VstEvents* blockEvents = nullptr;
    std::int32_t nextEventIndex = -1; // -1: none pending
    BlockParameters block;

    Lfo lfo;
    VoiceAllocator voiceAllocator;
    std::array<Voice, voiceSlots> voices;
    WaveTable pulseTable;
    WaveTable sawTable;
    WaveTable noiseTable;

    // Scratch of one run
    RunBuffer lfoRun = {};                           // LFO values, shared by all voices
    std::array<VoiceRun, mostVoices> voiceRuns = {}; // the sounding voices, in ascending order
};
}
