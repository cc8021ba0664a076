#pragma once

#include <array>
#include <vector>

#include "engine/Engine.h"
#include "parameters/Parameters.h"
#include "tests/support/TestSynth.h"

using namespace engine;
using namespace instrument;
using namespace parameters;

// An engine alone, with what it asks of its surroundings held in memory. Changes go to it as the instrument
// passes them on: before the store rule, stored, after it.
class TestEngine final : private EngineHost
{
public:
    using Program = std::array<float, parameterCount>;

    TestEngine ();
    explicit TestEngine (float sampleRate);

    void set (int index, float value);
    void load (const Program& program); // every parameter in ascending order
    float value (int index) const { return values[static_cast<std::size_t> (index)]; }

    // One block: the events are taken, then rendered. Answers the left channel.
    std::vector<float> block (int frames, const std::vector<TimedMidi>& midi = {});

    float rate = 44100.0f;
    bool hasTime = false;
    VstTimeInfo time = {};
    std::vector<Program> programs; // what program changes choose from; the others are ignored
    std::vector<std::pair<std::uint32_t, float>> controllers; // received so far
    Engine engine{ *this };

private:
    float parameterValue (std::int32_t index) const override { return value (index); }
    VstTimeInfo* timeInfo () override { return hasTime ? &time : nullptr; }
    float hostSampleRate () const override { return rate; }
    void reselectProgram () override { load (Program (values)); }
    void programChange (int program) override;
    void controllerReceived (std::uint32_t controller, float value) override;
    void notifyEditor (std::int32_t /*index*/, float /*value*/) override {}

    Program values = {};
};

// A sound that is easy to predict: oscillator 1 alone on the saw, highest sustain, no glide, no velocity, no
// modulation, low quality (no interpolation, no drive), filter open.
TestEngine::Program plainProgram ();

// The 128 programs of the factory bank.
std::vector<TestEngine::Program> factoryPrograms ();
