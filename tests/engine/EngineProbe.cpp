#include "tests/engine/EngineProbe.h"

#include <algorithm>
#include <cmath>

namespace engine
{

float EngineProbe::renderVoice (Engine& engine, Voice& voice, float lfoValue)
{
    const Renderer::BlockParameters& block = engine.renderer.block;
    const float first = voice.osc1.tickFull ();
    const float second = engine.voices.count () == 1 ? voice.osc2.tickFull () : voice.osc2.tick ();
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
    engine.samplesRendered = 0;
    if (!engine.renderer.asleep)
        engine.beginBlock ();
    for (int n = 1; n <= frames; ++n)
    {
        float mix = 0.0f;
        engine.samplesRendered = n - 1;
        engine.applyEvents (std::min (n, frames - 1));
        if (!engine.renderer.asleep)
        {
            bool anyVoiceSounding = false;
            const float lfoValue = engine.lfo.tick ();
            for (int v = 0; v < engine.voices.count (); ++v)
            {
                if (voice (engine, v).ampEnv.state () == Envelope::State::idle)
                    continue;
                anyVoiceSounding = true;
                mix += renderVoice (engine, voice (engine, v), lfoValue);
            }
            if (anyVoiceSounding)
            {
                mix *= engine.renderer.block.outputGain;
            }
            else if (++engine.renderer.silenceCounter > static_cast<float> (engine.sampleRate * 4.0))
            {
                engine.renderer.silenceCounter = 0.0f;
                engine.renderer.asleep = true;
            }
        }
        if (!std::isfinite (mix))
            mix = 0.0f;
        left[n - 1] = mix;
        right[n - 1] = mix;
    }
    engine.intake.clear ();
}
}
