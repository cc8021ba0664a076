#include <algorithm>
#include <cmath>

#include "engine/Engine.h"
#include "parameters/Parameters.h"

namespace engine
{
using namespace parameters;

namespace
{
constexpr float gainScale = 0.32f;        // head room for sixteen voices
constexpr int updateInterval = 11;        // samples between two cutoff or pitch updates
constexpr int fastUpdateInterval = 3;     // between two cutoff updates while the LFO makes noise
constexpr std::int32_t noisePosition = 4; // LfoWave x 5 of the LFO's noise
constexpr float wavePosition = 0.5f;      // an oscillator's wave setting below this mutes it
constexpr double secondsToSleep = 4.0;
constexpr float atDivision = 0.0001f; // quarter notes after a division that still count as on it
constexpr float divisorPerQuarter = 60.0f;
}

// What a block prepares before its first sample while the engine is awake.
void Engine::beginBlock ()
{
    followSampleRate ();
    if (host.parameterValue (paramLfoBmpSync) != 0.0f)
        followTransport ();
    copyParameters ();
}

void Engine::followSampleRate ()
{
    const float hz = host.hostSampleRate ();
    if (static_cast<double> (hz) == sampleRate)
        return;
    sampleRate = static_cast<double> (hz);
    setSampleRateOfAll (hz);
    host.reselectProgram ();
}

// The LFO takes its rate from the tempo, and starts anew when a block begins on a division of a moving
// transport; divisions within a block do not restart it.
void Engine::followTransport ()
{
    const VstTimeInfo* time = host.timeInfo ();
    if (time == nullptr)
        return;
    const bool hasRate = setSyncedRate (*time);
    transportStopped = time->samplePos == static_cast<double> (lastSamplePos);
    if (transportStopped)
        return;
    lastSamplePos = static_cast<float> (time->samplePos);
    if (!hasRate)
        return;
    const float quarters = static_cast<float> (time->ppqPos);
    if (std::fmod (quarters, syncDivision / divisorPerQuarter) < atDivision)
        lfo.resetPhase ();
}

void Engine::copyParameters ()
{
    const auto value = [this] (Param index) { return host.parameterValue (index); };
    const float gain = value (paramVolume) * volTypeGain * expression * gainScale;
    block.outputGain = gain * 0.5f;
    block.osc1Level = value (paramOsc1Wave) >= wavePosition ? value (paramOsc1Vol) : 0.0f;
    block.osc2Level = value (paramOsc2Wave) >= wavePosition ? value (paramOsc2Vol) : 0.0f;
    block.noiseLevel = value (paramNoise);
    block.env2DelayParam = value (param2Delay);
    block.env2DelaySamples = static_cast<float> (sampleRate) * value (param2Delay);
    block.fastFilterUpdate = positionOf (value (paramLfoWave), 5.0f) == noisePosition;
    const float lfoPitch = value (paramLfoPitch);
    const float depthBefore = block.lfoPitchDepth;
    block.lfoPitchDepth = 2.0f * (lfoPitch * lfoPitch * lfoPitch);
    if (depthBefore > 0.0f && block.lfoPitchDepth == 0.0f)
        endBendByLfo ();
    block.env2ToFilter = value (param2ToFilter);
    block.lfoFilterDepth = value (paramLfoFilter);
    block.filterFreqParam = value (paramFilterFreq);
}

void Engine::renderBlock (float* const* outputs, std::int32_t frames)
{
    if (!asleep)
        beginBlock ();
    float* left = outputs != nullptr ? outputs[0] : nullptr;
    float* right = outputs != nullptr ? outputs[1] : nullptr;
    RunBuffer mono;
    for (std::int32_t done = 0; done < frames;)
    {
        applyPendingEvents (done + 1);
        const std::int32_t run = runLength (done, frames);
        renderRun (mono.data (), run);
        if (left != nullptr)
            std::copy_n (mono.data (), run, left + done);
        if (right != nullptr)
            std::copy_n (mono.data (), run, right + done);
        done += run;
    }
    nextEventIndex = -1;
    blockEvents = nullptr;
}

// Samples from `done` on that no event interrupts.
std::int32_t Engine::runLength (std::int32_t done, std::int32_t frames) const
{
    std::int32_t end = std::min (frames, done + longestRun);
    if (isPending () && nextOffset () > done + 1)
        end = std::min (end, nextOffset () - 1);
    return end - done;
}

// Counts samples without a sounding voice; answers after how many of them the engine has fallen asleep, or
// all of them.
int Engine::countSilence (int samples)
{
    const float limit = static_cast<float> (sampleRate * secondsToSleep);
    for (int n = 0; n < samples; ++n)
    {
        silenceCounter += 1.0f;
        if (silenceCounter > limit)
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
void Engine::renderRun (float* out, int samples)
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
        Voice& voice = voices[static_cast<std::size_t> (run.voice)];
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
std::span<Engine::VoiceRun> Engine::renderAmplitudes (int samples)
{
    std::size_t used = 0;
    for (int v = 0; v < voiceCount && used < voiceRuns.size (); ++v)
    {
        VoiceRun& run = voiceRuns[used];
        run.voice = v;
        run.samples = voices[static_cast<std::size_t> (v)].ampEnv.render (run.amplitude.data (), samples);
        if (run.samples > 0)
            ++used;
    }
    return { voiceRuns.data (), used };
}

// The filters take most of the time, and one alone leaves the processor waiting for its own last sample;
// several side by side do not.
void Engine::renderFilters (std::span<VoiceRun> runs)
{
    constexpr std::size_t groupSize = filterCore::lanes;
    std::array<Filter::Run, groupSize> group;
    for (std::size_t start = 0; start < runs.size (); start += groupSize)
    {
        const std::span<VoiceRun> members = runs.subspan (start, std::min (groupSize, runs.size () - start));
        std::transform (members.begin (), members.end (), group.begin (),
                        [this] (VoiceRun& run)
                        {
                            return Filter::Run{ &voices[static_cast<std::size_t> (run.voice)].filter,
                                                run.signal.data (), run.filterCoefficient.data (),
                                                run.samples };
                        });
        Filter::processGroup ({ group.data (), members.size () });
    }
}

// The sources, in stretches between two moves of the LFO on the pitch. A move acts from the next sample on.
void Engine::renderOscillators (Voice& voice, float* out, int samples)
{
    std::fill_n (out, samples, 0.0f);
    for (int done = 0; done < samples;)
    {
        const int stretch = std::min (samples - done, updateInterval - voice.pitchUpdateCounter);
        voice.osc1.addRunFull (out + done, stretch, block.osc1Level);
        if (voiceCount <= 1)
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

void Engine::bendByLfo (Voice& voice, float shift) const
{
    for (Oscillator* oscillator : { &voice.osc1, &voice.osc2 })
    {
        oscillator->setLfoPitch (shift);
        oscillator->updateIncrement ();
    }
}

// A depth that became 0 inside a block had set the pitch right, but the block went on with the depth of its
// beginning. What it bent since then would stay bent.
void Engine::endBendByLfo ()
{
    for (Voice& voice : voices)
    {
        if (voice.osc1.isBentByLfo () || voice.osc2.isBentByLfo ())
            bendByLfo (voice, 0.0f);
    }
}

// Closed, and standing still, until its delay is over.
void Engine::renderEnvelope2 (Voice& voice, float* out, int samples) const
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
void Engine::renderCutoff (Voice& voice, float* out, int samples)
{
    RunBuffer env2;
    renderEnvelope2 (voice, env2.data (), samples);
    const int interval = block.fastFilterUpdate ? fastUpdateInterval : updateInterval;
    const float env2Depth = 2.0f * block.env2ToFilter - 1.0f;
    const float lfoDepth = 2.0f * block.lfoFilterDepth - 1.0f;
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
