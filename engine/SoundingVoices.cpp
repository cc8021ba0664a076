#include "engine/SoundingVoices.h"

#include <algorithm>

#include "parameters/KnobLaws.h"

namespace engine
{
namespace
{
constexpr int updateInterval = 11;    // samples between two cutoff or pitch updates
constexpr int fastUpdateInterval = 3; // between two cutoff updates while the LFO makes noise

void setBit (std::uint16_t& bits, std::size_t lane)
{
    bits = static_cast<std::uint16_t> (bits | 1u << lane);
}

bool hasBit (unsigned bits, std::size_t lane)
{
    return (bits >> lane & 1u) != 0;
}
}

bool SoundingVoices::enter (std::span<Voice> all)
{
    if (areInLanes)
        return true;
    lanes.used = 0;
    for (Voice& voice : all)
    {
        if (!voice.ampEnv.isIdle () && lanes.used < mostLanes)
            sounding[lanes.used++] = &voice;
    }
    if (lanes.used == 0)
        return false;

    areInLanes = true;
    const Voice& any = *sounding[0];
    any.osc1.describe (lanes.osc1);
    any.osc2.describe (lanes.osc2);
    any.noise.describe (lanes.noise);
    any.filter.describe (lanes);
    for (std::size_t lane = 0; lane < lanes.used; ++lane)
    {
        const Voice& voice = *sounding[lane];
        voice.osc1.enter (lanes.osc1, lane);
        voice.osc2.enter (lanes.osc2, lane);
        voice.noise.enter (lanes.noise, lane);
        voice.filter.enter (lanes, lane);
        voice.ampEnv.enter (lanes.amplitude, lane);
        voice.filterEnv.enter (lanes.env2, lane);
    }
    // A kernel renders whole groups of lanes. What an earlier voice left behind its last one, perhaps at a
    // far lower sample rate, must not lead the read out of a table.
    for (OscillatorLanes* source : { &lanes.osc1, &lanes.osc2, &lanes.noise })
    {
        std::fill (source->phase.of + lanes.used, source->phase.of + mostLanes, 0.0);
        std::fill (source->increment.of + lanes.used, source->increment.of + mostLanes, 0.0f);
    }
    return true;
}

void SoundingVoices::leave ()
{
    if (!areInLanes)
        return;
    areInLanes = false;
    for (std::size_t lane = 0; lane < lanes.used; ++lane)
    {
        Voice& voice = *sounding[lane];
        voice.osc1.leave (lanes.osc1, lane);
        voice.osc2.leave (lanes.osc2, lane);
        voice.noise.leave (lanes.noise, lane);
        voice.filter.leave (lanes, lane);
        voice.ampEnv.leave (lanes.amplitude, lane);
        voice.filterEnv.leave (lanes.env2, lane);
    }
}

int SoundingVoices::soundingFor (int samples) const
{
    for (std::size_t lane = 0; lane < lanes.used; ++lane)
    {
        const Envelope& envelope = sounding[lane]->ampEnv;
        if (envelope.staysOnRamp (lanes.amplitude.level.of[lane], samples))
            continue;
        Envelope ahead = envelope;
        ahead.leave (lanes.amplitude, lane);
        std::array<float, longestRun> levels;
        samples = ahead.render (levels.data (), samples);
    }
    return samples;
}

void SoundingVoices::render (const VoiceKernel& kernel, const Settings& settings, bool isMono, Lfo& lfo,
                             float* out, int samples)
{
    take (settings, isMono);
    const unsigned movesCutoff =
        schedule (lanes.cutoffDue, &Voice::filterUpdateCounter,
                  settings.fastFilterUpdate ? fastUpdateInterval : updateInterval, samples);
    schedule (lanes.pitchDue, &Voice::pitchUpdateCounter, updateInterval, samples);
    for (std::size_t lane = 0; lane < lanes.used; ++lane)
    {
        if (hasBit (movesCutoff, lane) && sounding[lane]->filter.takeFirstBase (settings.filterFreqParam))
            lanes.cutoffBase.of[lane] = settings.filterFreqParam;
    }
    prepareEnvelopes (settings, samples);
    const std::uint64_t forCutoff = lanes.lfoToCutoff != 0.0f ? lanes.cutoffDue.samples : 0;
    const std::uint64_t forPitch = lanes.lfoPitchDepth > 0.0f ? lanes.pitchDue.samples : 0;
    lfo.render (lanes.lfo, samples, forCutoff | forPitch);
    kernel.render (lanes, out, samples);
    finishEnvelopes ();
}

void SoundingVoices::take (const Settings& settings, bool isMono)
{
    using parameters::bipolarAmount;
    lanes.osc1.level = settings.osc1Level;
    lanes.osc2.level = settings.osc2Level;
    lanes.noise.level = settings.noiseLevel;
    lanes.osc1.isFull = true;
    lanes.osc2.isFull = isMono;
    lanes.noiseSounds = settings.noiseLevel > 0.0f;
    lanes.cutoffTarget = settings.filterFreqParam;
    lanes.env2ToCutoff = bipolarAmount (settings.env2ToFilter);
    lanes.lfoToCutoff = bipolarAmount (settings.lfoFilterDepth);
    lanes.lfoPitchDepth = settings.lfoPitchDepth;
}

// Notes for each sample the lanes that are due at it, once per interval. `counter` has the samples since the
// last time, and afterwards those at the end of the run. Answers the lanes that are due at all.
unsigned SoundingVoices::schedule (DueLanes& due, std::int32_t Voice::*counter, int interval, int samples)
{
    due.samples = 0;
    std::fill_n (due.lanes, longestRun, std::uint16_t{ 0 });
    unsigned dueInRun = 0;
    for (std::size_t lane = 0; lane < lanes.used; ++lane)
    {
        std::int32_t& since = sounding[lane]->*counter;
        int n = std::max (interval - 1 - since, 0);
        since += samples;
        for (; n < samples; n += interval)
        {
            setBit (due.lanes[n], lane);
            due.samples |= std::uint64_t{ 1 } << n;
            dueInRun |= 1u << lane;
            since = samples - 1 - n;
        }
    }
    return dueInRun;
}

// What is no ramp becomes a column of levels.
void SoundingVoices::prepareEnvelopes (const Settings& settings, int samples)
{
    lanes.amplitude.columns = 0;
    lanes.env2.columns = 0;
    for (std::size_t lane = 0; lane < lanes.used; ++lane)
    {
        Voice& voice = *sounding[lane];
        if (!voice.ampEnv.staysOnRamp (lanes.amplitude.level.of[lane], samples))
        {
            voice.ampEnv.leave (lanes.amplitude, lane);
            voice.ampEnv.render (lanes.amplitude.column[lane], samples);
            setBit (lanes.amplitude.columns, lane);
        }
        const int waits = waitForEnvelope2 (voice, settings, samples);
        if (waits > 0 || !voice.filterEnv.staysOnRamp (lanes.env2.level.of[lane], samples))
        {
            voice.filterEnv.leave (lanes.env2, lane);
            float* const column = lanes.env2.column[lane];
            std::fill_n (column, samples, 0.0f);
            voice.filterEnv.render (column + waits, samples - waits);
            setBit (lanes.env2.columns, lane);
        }
    }
}

// Envelope 2 is closed and stands still until its delay is over. Answers for how many of the next samples.
int SoundingVoices::waitForEnvelope2 (Voice& voice, const Settings& settings, int samples) const
{
    int waits = 0;
    while (waits < samples && settings.env2DelayParam > 0.0f &&
           static_cast<float> (voice.env2DelayCounter) < settings.env2DelaySamples)
    {
        ++voice.env2DelayCounter;
        ++waits;
    }
    return waits;
}

// The lanes follow the envelopes that were no ramps. Where one has ended, its voice sounds no more.
void SoundingVoices::finishEnvelopes ()
{
    bool anyEnded = false;
    for (std::size_t lane = 0; lane < lanes.used; ++lane)
    {
        const Voice& voice = *sounding[lane];
        if (hasBit (lanes.amplitude.columns, lane))
        {
            voice.ampEnv.enter (lanes.amplitude, lane);
            anyEnded = anyEnded || voice.ampEnv.isIdle ();
        }
        if (hasBit (lanes.env2.columns, lane))
            voice.filterEnv.enter (lanes.env2, lane);
    }
    if (anyEnded)
        leave ();
}
}
