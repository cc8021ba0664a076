#pragma once

#include "engine/Engine.h"

namespace engine
{
// The engine's inside, for tests.
class EngineProbe
{
public:
    static Voice& voice (Engine& engine, int v) { return engine.voices[v]; }
    static Lfo& lfo (Engine& engine) { return engine.lfo; }

    // What renderBlock has to do, told sample by sample with the plainest means: one voice after another,
    // every object ticked once per sample. Slow, and the judge of the renderer.
    static void renderSampleBySample (Engine& engine, float* left, float* right, int frames);

private:
    static float renderVoice (Engine& engine, Voice& voice, float lfoValue);
};
}
