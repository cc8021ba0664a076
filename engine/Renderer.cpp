#include "engine/Renderer.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "parameters/KnobLaws.h"

namespace engine
{
using namespace parameters;

namespace
{
constexpr float gainScale = 0.32f; // head room for sixteen voices
constexpr double secondsToSleep = 4.0;

// The last guard: a host's mixer would carry one sample that is no number to everything that is playing.
float numberOrSilence (float sample)
{
    return std::abs (sample) <= std::numeric_limits<float>::max () ? sample : 0.0f;
}
}

void Renderer::takeParameters (const ParameterMapping& mapping, const Performance& performance,
                               double sampleRate)
{
    const auto value = [&mapping] (Param index) { return mapping.value (index); };
    const auto level = [&value] (Param wave, Param volume)
    { return value (wave) >= lowestSoundingWave ? value (volume) : 0.0f; };
    const float gain = value (paramVolume) * mapping.volTypeGain () * performance.gain * gainScale;
    block.outputGain = gain * 0.5f;
    block.osc1Level = level (paramOsc1Wave, paramOsc1Vol);
    block.osc2Level = level (paramOsc2Wave, paramOsc2Vol);
    block.noiseLevel = value (paramNoise);
    block.env2DelayParam = value (param2Delay);
    block.env2DelaySamples = static_cast<float> (sampleRate) * delaySeconds (value (param2Delay));
    block.fastFilterUpdate = positionIn (lfoWaves, value (paramLfoWave)) == LfoWave::noise;
    block.lfoPitchDepth = lfoPitchDepth (value (paramLfoPitch)) + performance.extraVibratoDepth;
    block.env2ToFilter = value (param2ToFilter);
    block.lfoFilterDepth = value (paramLfoFilter);
    block.filterFreqParam = value (paramFilterFreq);
    block.samplesToSleep = static_cast<float> (sampleRate * secondsToSleep);
}

// Counts samples without a sounding voice; answers after how many of them the engine has fallen asleep, or
// all of them.
int Renderer::countSilence (int samples)
{
    for (int n = 0; n < samples; ++n)
    {
        silenceCounter += 1.0f;
        if (silenceCounter > block.samplesToSleep)
        {
            silenceCounter = 0.0f;
            asleep = true;
            return n + 1;
        }
    }
    return samples;
}

// In stretches for which the same voices sound. The samples are exactly those of a loop that does everything
// sample by sample and voice by voice.
void Renderer::renderRun (float* out, int samples)
{
    std::fill_n (out, samples, 0.0f);
    for (int done = 0; done < samples && !asleep;)
    {
        if (SoundingVoices* const sounding = voices.enterLanes ())
        {
            const int stretch = sounding->soundingFor (samples - done);
            sounding->render (kernel, block, voices.isMono (), lfo, out + done, stretch);
            std::transform (out + done, out + done + stretch, out + done,
                            [this] (float sample) { return numberOrSilence (sample * block.outputGain); });
            done += stretch;
        }
        else
        {
            const int silent = countSilence (samples - done);
            lfo.advance (silent);
            done += silent;
        }
    }
}
}
