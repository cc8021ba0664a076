#pragma once

#include <array>
#include <vector>

#include "parameters/Parameters.h"
#include "tests/engine/EngineProbe.h"
#include "tests/support/Events.h"

// The recorded waves, read from their files.
const engine::WaveTables& recordedWaves ();

// An engine alone, with what it asks of its surroundings held in memory.
class TestEngine final : private engine::EngineHost
{
public:
    using Program = engine::ParameterValues;

    explicit TestEngine (float rateHz = 44100.0f, engine::WaveTables waves = recordedWaves (),
                         const engine::VoiceKernel& kernel = engine::preferredKernel ());

    void set (int index, float value);
    void load (const Program& program); // every parameter in ascending order
    float value (int index) const { return engine.parameterValue (index); }
    void programChange (int program) override; // of `programs`; the plug-in-wide values stay

    engine::Voice& voice (int n) { return engine::EngineProbe::voice (engine, n); }
    engine::Lfo& lfo () { return engine::EngineProbe::lfo (engine); }

    // One block: the events are taken, then rendered. Answers the left channel.
    std::vector<float> block (int frames, const std::vector<engine::Event>& events = {});

    float rate = 44100.0f;
    bool hasTime = false;
    engine::Transport time;
    std::vector<Program> programs; // what program changes choose from; the others are ignored
    std::vector<std::pair<std::uint32_t, float>> controllers; // received so far
    std::uint32_t boundController = 0;                        // by MIDI learn; 0: none
    std::vector<std::pair<char, int>> keys; // '+' started, '-' ended, '0' all ended, and which
    engine::Engine engine;

private:
    std::optional<engine::Transport> transport () override;
    float sampleRate () const override { return rate; }
    bool controllerReceived (std::uint32_t controller, float value) override;
    void parameterReceived (std::int32_t index, float value) override { set (index, value); }
    void keyStarted (int note) override { keys.emplace_back ('+', note); }
    void keyEnded (int note) override { keys.emplace_back ('-', note); }
    void allKeysEnded () override { keys.emplace_back ('0', 0); }
};

// The initial values of all parameters.
TestEngine::Program initialProgram ();

// A sound that is easy to predict: oscillator 1 alone on the saw, highest sustain, no glide, no velocity, no
// modulation, low quality (no interpolation, no drive), filter open.
TestEngine::Program plainProgram ();

// The 128 programs of the factory bank.
std::vector<TestEngine::Program> factoryPrograms ();
