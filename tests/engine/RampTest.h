// An engine on the ramp, so that its pitches can be read, and hands on its keys.
#pragma once

#include <gtest/gtest.h>

#include "tests/engine/Ramp.h"
#include "tests/engine/TestEngine.h"

using State = engine::Envelope::State;

class RampTest : public testing::Test
{
protected:
    RampTest () : synth (44100.0f, { ramp (), ramp (), ramp () })
    {
        synth.load (plainProgram ());
        synth.set (parameters::paramOsc2Wave, 0.5f);
    }

    void press (int key, int velocity = 100, int frames = 64)
    {
        synth.block (frames, { noteOn (1, key, velocity) });
    }
    void letGo (int key) { synth.block (64, { midi (1, 0x85, key, 64) }); }
    State state (int voice) { return synth.voice (voice).ampEnv.state (); }

    TestEngine synth;
};
