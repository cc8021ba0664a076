#include "engine/Renderer.h"

#include <algorithm>

#include "parameters/KnobLaws.h"

namespace engine
{
using namespace parameters;

namespace
{
constexpr float gainScale = 0.32f;    // head room for sixteen voices
constexpr int updateInterval = 11;    // samples between two cutoff or pitch updates
constexpr int fastUpdateInterval = 3; // between two cutoff updates while the LFO makes noise
constexpr double secondsToSleep = 4.0;
}

void Renderer::takeParameters (const ParameterMapping& mapping, float expression, double sampleRate)
{
    const auto value = [&mapping] (Param index) { return mapping.value (index); };
    const auto level = [&value] (Param wave, Param volume)
    { return value (wave) >= lowestSoundingWave ? value (volume) : 0.0f; };
    const float gain = value (paramVolume) * mapping.volTypeGain () * expression * gainScale;
    block.outputGain = gain * 0.5f;
    block.osc1Level = level (paramOsc1Wave, paramOsc1Vol);
    block.osc2Level = level (paramOsc2Wave, paramOsc2Vol);
    block.noiseLevel = value (paramNoise);
    block.env2DelayParam = value (param2Delay);
    block.env2DelaySamples = static_cast<float> (sampleRate) * delaySeconds (value (param2Delay));
    block.fastFilterUpdate = positionIn (lfoWaves, value (paramLfoWave)) == LfoWave::noise;
    block.lfoPitchDepth = lfoPitchDepth (value (paramLfoPitch));
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

// One run, stage by stage. Voices are added in ascending order, so that the samples are exactly those of a
// loop that does everything sample by sample.
void Renderer::renderRun (float* out, int samples)
{
    std::fill_n (out, samples, 0.0f);
    if (asleep)
        return;

    const std::span<VoiceRun> runs = renderAmplitudes (samples);
    int sounding = 0;
    for (const VoiceRun& run : runs)
        sounding = std::max (sounding, run.samples);
    const int awake = sounding + countSilence (samples - sounding);
    for (int n = 0; n < awake; ++n)
        lfoRun[static_cast<std::size_t> (n)] = lfo.tick ();

    for (VoiceRun& run : runs)
    {
        Voice& voice = voices[run.voice];
        renderOscillators (voice, run.signal.data (), run.samples);
        renderCutoff (voice, run.filterCoefficient.data (), run.samples);
    }
    renderFilters (runs);
    for (const VoiceRun& run : runs)
    {
        const float* signal = run.signal.data ();
        const float* amplitude = run.amplitude.data ();
        for (int n = 0; n < run.samples; ++n)
            out[n] += signal[n] * amplitude[n];
    }
    for (int n = 0; n < sounding; ++n)
        out[n] *= block.outputGain;
}

// The amplitude envelopes of the sounding voices. They go first: they tell how long each voice sounds.
std::span<Renderer::VoiceRun> Renderer::renderAmplitudes (int samples)
{
    std::size_t used = 0;
    for (int v = 0; v < voices.count () && used < voiceRuns.size (); ++v)
    {
        VoiceRun& run = voiceRuns[used];
        run.voice = v;
        run.samples = voices[v].ampEnv.render (run.amplitude.data (), samples);
        if (run.samples > 0)
            ++used;
    }
    return { voiceRuns.data (), used };
}

// The filters take most of the time, and one alone leaves the processor waiting for its own last sample;
// several side by side do not.
void Renderer::renderFilters (std::span<VoiceRun> runs)
{
    constexpr std::size_t groupSize = filterCore::lanes;
    std::array<Filter::Run, groupSize> group;
    for (std::size_t start = 0; start < runs.size (); start += groupSize)
    {
        const std::span<VoiceRun> members = runs.subspan (start, std::min (groupSize, runs.size () - start));
        std::transform (members.begin (), members.end (), group.begin (),
                        [this] (VoiceRun& run)
                        {
                            return Filter::Run{ &voices[run.voice].filter, run.signal.data (),
                                                run.filterCoefficient.data (), run.samples };
                        });
        Filter::processGroup ({ group.data (), members.size () });
    }
}

// The sources, in stretches between two moves of the LFO on the pitch. A move acts from the next sample on.
void Renderer::renderOscillators (Voice& voice, float* out, int samples)
{
    std::fill_n (out, samples, 0.0f);
    for (int done = 0; done < samples;)
    {
        const int stretch = std::min (samples - done, updateInterval - voice.pitchUpdateCounter);
        voice.osc1.addRunFull (out + done, stretch, block.osc1Level);
        if (voices.isMono ())
            voice.osc2.addRunFull (out + done, stretch, block.osc2Level);
        else
            voice.osc2.addRun (out + done, stretch, block.osc2Level);
        if (block.noiseLevel > 0.0f)
            voice.noise.addRun (out + done, stretch, block.noiseLevel);
        done += stretch;
        voice.pitchUpdateCounter += stretch;
        if (voice.pitchUpdateCounter < updateInterval)
            continue;
        voice.pitchUpdateCounter = 0;
        if (block.lfoPitchDepth > 0.0f)
            bendByLfo (voice, lfoRun[static_cast<std::size_t> (done - 1)] * block.lfoPitchDepth);
    }
}

void Renderer::bendByLfo (Voice& voice, float shift) const
{
    for (Oscillator* oscillator : { &voice.osc1, &voice.osc2 })
    {
        oscillator->setLfoPitch (shift);
        oscillator->updateIncrement ();
    }
}

// Closed, and standing still, until its delay is over.
void Renderer::renderEnvelope2 (Voice& voice, float* out, int samples) const
{
    int n = 0;
    while (n < samples && block.env2DelayParam > 0.0f &&
           static_cast<float> (voice.env2DelayCounter) < block.env2DelaySamples)
    {
        ++voice.env2DelayCounter;
        out[n++] = 0.0f;
    }
    n += voice.filterEnv.render (out + n, samples - n);
    std::fill (out + n, out + samples, 0.0f); // idle
}

// The filter coefficient of every sample. The cutoff itself moves once per interval.
void Renderer::renderCutoff (Voice& voice, float* out, int samples)
{
    RunBuffer env2;
    renderEnvelope2 (voice, env2.data (), samples);
    const int interval = block.fastFilterUpdate ? fastUpdateInterval : updateInterval;
    const float env2Depth = bipolarAmount (block.env2ToFilter);
    const float lfoDepth = bipolarAmount (block.lfoFilterDepth);
    for (int done = 0; done < samples;)
    {
        // The update acts on the sample that completes the interval.
        const int untilUpdate = std::max (interval - 1 - voice.filterUpdateCounter, 0);
        const int held = std::min (untilUpdate, samples - done);
        std::fill_n (out + done, held, voice.filter.coefficient ());
        voice.filterUpdateCounter += held;
        done += held;
        if (done == samples)
            break;
        const auto n = static_cast<std::size_t> (done);
        const float base = voice.filter.keyTrackedBase (block.filterFreqParam);
        voice.filter.setCutoff (env2[n] * env2Depth + base + (lfoRun[n] + 1.0f) / 2.0f * lfoDepth);
        voice.filterUpdateCounter = 0;
        out[done++] = voice.filter.coefficient ();
    }
}
}
