#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

#include "engine/FilterCore.h"

namespace engine
{
inline constexpr std::size_t mostLanes = 16;
inline constexpr int longestRun = 64; // samples

// One number of each sounding voice.
template <typename Number>
struct alignas (64) Lanes
{
    Number of[mostLanes] = {};
};

// The same sound source of every sounding voice. What is no array is the same for all of them.
struct OscillatorLanes
{
    const float* table = nullptr; // null: silent, and stands still
    double length = 0.0;          // samples in one cycle
    float level = 0.0f;
    bool isFull = false;      // the read with glide and pulse offset
    float pulseOffset = 0.0f; // samples
    bool interpolates = true;

    bool glides = false;
    float tuneCorrection = 1.0f; // factors on the pitch
    float masterPitchFactor = 1.0f;
    float incrementPerHz = 0.0f;

    Lanes<double> phase;    // table samples
    Lanes<float> increment; // table samples per output sample
    Lanes<float> noteHz;
    Lanes<float> bendHz;
    Lanes<float> fineHz;
    Lanes<float> lfoPitchFactor;
    Lanes<float> glideCurrent; // Hz
    Lanes<float> glideTarget;
    Lanes<float> glideDelta; // Hz per sample
};

// An envelope of every sounding voice during a run. Mostly it is a ramp; what else it may do comes as a
// column of levels.
struct EnvelopeLanes
{
    Lanes<float> level;
    Lanes<float> step;         // level per sample
    std::uint16_t columns = 0; // bit n: lane n has a column
    float column[mostLanes][longestRun];
};

// Which lanes are due at which samples of a run.
struct DueLanes
{
    std::uint64_t samples = 0;            // bit n: some lane is due at sample n
    std::uint16_t lanes[longestRun] = {}; // of a sample; bit n: lane n is due at it
};

// The state of all sounding voices side by side, in ascending order of the voices: one number of each in a
// row, as vector instructions want it.
struct VoiceLanes
{
    OscillatorLanes osc1;
    OscillatorLanes osc2;
    OscillatorLanes noise;
    EnvelopeLanes amplitude;
    EnvelopeLanes env2;
    filterCore::Memory<Lanes<float>> filter;
    Lanes<float> damping;
    Lanes<float> coefficient; // main section
    Lanes<float> highestCoefficient;
    Lanes<float> cutoffHz;
    Lanes<float> cutoffBase; // 0..1
    Lanes<float> keyFactor;

    float lfo[longestRun] = {}; // -1..1
    DueLanes cutoffDue;         // the cutoff follows its modulation at this sample
    DueLanes pitchDue;          // the pitch follows the LFO after this sample

    std::size_t used = 0;
    filterCore::Switches filterSwitches;
    filterCore::FixedCoefficients filterFixed;
    float angularStep = 0.0f;  // 2 pi / sample rate
    float slewDivisor = 1.0f;  // sample rate / 200
    float cutoffTarget = 0.0f; // of the base
    float env2ToCutoff = 0.0f; // depths, -1..1
    float lfoToCutoff = 0.0f;
    float lfoPitchDepth = 0.0f;
    bool keyTracks = true;
    bool noiseSounds = false;
};

// Renders the next samples, longestRun at the most, of all lanes and adds them to out[0 .. samples-1].
using RenderLanes = void (VoiceLanes& lanes, float* out, int samples);

// The same kernel, compiled for an instruction set.
struct VoiceKernel
{
    std::string_view name;
    bool isSupported; // by this machine
    RenderLanes* render;
};

// From the plainest to the widest.
std::span<const VoiceKernel> voiceKernels ();

// The widest that this machine has, or the one that the environment variable BRIMVALE_KERNEL names.
const VoiceKernel& preferredKernel ();
}
