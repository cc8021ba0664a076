#include "tests/engine/EngineProbe.h"

namespace engine
{

void EngineProbe::applyEvents (Engine& engine, int n)
{
    if (engine.blockEvents == nullptr || engine.nextEventIndex == -1)
        return;
    while (engine.nextEventIndex < engine.blockEvents->numEvents)
    {
        const VstEvent& event = *engine.blockEvents->events[engine.nextEventIndex];
        if (event.deltaFrames != 0 && event.deltaFrames != n)
            return;
        const bool isMidi = event.type == kVstMidiType;
        if (isMidi)
            engine.applyMidiEvent ();
        engine.nextEventIndex += isMidi ? 1 : 2;
    }
}

float EngineProbe::renderVoice (Engine& engine, Voice& voice, float lfoValue)
{
    const Engine::BlockParameters& block = engine.block;
    const float first = voice.osc1.tickFull ();
    const float second = engine.voiceCount <= 1 ? voice.osc2.tickFull () : voice.osc2.tick ();
    float mix = first * block.osc1Level + second * block.osc2Level;
    if (block.noiseLevel > 0.0f)
        mix += voice.noise.tick () * block.noiseLevel;

    float env2 = 0.0f;
    if (block.env2DelayParam <= 0.0f || static_cast<float> (voice.env2DelayCounter) >= block.env2DelaySamples)
        env2 = voice.filterEnv.tick ();
    else
        ++voice.env2DelayCounter;

    ++voice.filterUpdateCounter;
    if (voice.filterUpdateCounter > 10 || (block.fastFilterUpdate && voice.filterUpdateCounter > 2))
    {
        const float base = voice.filter.keyTrackedBase (block.filterFreqParam);
        voice.filter.setCutoff (env2 * (2.0f * block.env2ToFilter - 1.0f) + base +
                                ((lfoValue + 1.0f) / 2.0f) * (2.0f * block.lfoFilterDepth - 1.0f));
        voice.filterUpdateCounter = 0;
    }

    ++voice.pitchUpdateCounter;
    if (voice.pitchUpdateCounter > 10)
    {
        if (block.lfoPitchDepth > 0.0f)
        {
            voice.osc1.setLfoPitch (lfoValue * block.lfoPitchDepth);
            voice.osc1.updateIncrement ();
            voice.osc2.setLfoPitch (lfoValue * block.lfoPitchDepth);
            voice.osc2.updateIncrement ();
        }
        voice.pitchUpdateCounter = 0;
    }
    return voice.filter.process (mix) * voice.ampEnv.tick ();
}

void EngineProbe::renderSampleBySample (Engine& engine, float* left, float* right, int frames)
{
    if (!engine.asleep)
        engine.beginBlock ();
    for (int n = 1; n <= frames; ++n)
    {
        float mix = 0.0f;
        applyEvents (engine, n);
        if (!engine.asleep)
        {
            bool anyVoiceSounding = false;
            const float lfoValue = engine.lfo.tick ();
            for (int v = 0; v < engine.voiceCount; ++v)
            {
                if (voice (engine, v).ampEnv.state () == Envelope::State::idle)
                    continue;
                anyVoiceSounding = true;
                mix += renderVoice (engine, voice (engine, v), lfoValue);
            }
            if (anyVoiceSounding)
            {
                mix *= engine.block.outputGain;
            }
            else if (++engine.silenceCounter > static_cast<float> (engine.sampleRate * 4.0))
            {
                engine.silenceCounter = 0.0f;
                engine.asleep = true;
            }
        }
        left[n - 1] = mix;
        right[n - 1] = mix;
    }
    engine.nextEventIndex = -1;
    engine.blockEvents = nullptr;
}
}
