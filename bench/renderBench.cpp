// How long rendering takes; docs/performance.md holds figures and commands.
#include <benchmark/benchmark.h>

#include "plugin/VstSynth.h"
#include "tests/support/TestSynth.h"

using namespace parameters;

namespace
{
constexpr double rateHz = 44100.0;
constexpr int lowestNote = 40;

// The heaviest common setting: both oscillators, high quality, and a filter that LFO and envelope move.
void prepare (VstSynth& synth)
{
    synth.setSampleRate (static_cast<float> (rateHz));
    const std::pair<Param, float> settings[] = {
        { paramOsc1Wave, 1.0f },   { paramOsc2Wave, 0.5f },  { paramOsc1PW, 0.8f },
        { paramOsc2Fine, 0.2f },   { param1Sustain, 0.8f },  { param1Decay, 0.7f },
        { param2Attack, 0.4f },    { param2Decay, 0.6f },    { param2Delay, 0.0f },
        { paramFilterFreq, 0.5f }, { param2ToFilter, 0.8f }, { paramLfoFilter, 0.7f },
        { paramLfoRate, 0.5f },    { paramVoices, 1.0f },    { paramHighQuality, 0.0f },
        { paramGlideMono, 0.0f },  { paramSmothFilt, 0.0f }, { paramFilterType, 0.0f },
    };
    for (const auto& [param, value] : settings)
        synth.setParameter (param, value);
}

std::vector<TimedMidi> chord (int voices)
{
    std::vector<TimedMidi> notes;
    notes.reserve (static_cast<std::size_t> (voices));
    for (int n = 0; n < voices; ++n)
        notes.push_back ({ 0, 0x90, static_cast<unsigned char> (lowestNote + 3 * n), 100 });
    return notes;
}

void renderVoices (benchmark::State& state)
{
    const auto voices = static_cast<int> (state.range (0));
    const auto block = static_cast<int> (state.range (1));
    FakeHost host;
    VstSynth synth (FakeHost::callback, host.services ());
    prepare (synth);
    render (synth, 4096, block, chord (voices));

    std::vector<float> left (static_cast<std::size_t> (block));
    std::vector<float> right (left);
    float* outputs[] = { left.data (), right.data () };
    for ([[maybe_unused]] auto _ : state)
    {
        synth.processReplacing (nullptr, outputs, block);
        benchmark::ClobberMemory ();
    }
    const double samples = static_cast<double> (state.iterations ()) * block;
    using benchmark::Counter;
    state.counters["ns/sample"] = Counter (samples * 1e-9, Counter::kIsRate | Counter::kInvert);
    if (voices > 0)
        state.counters["ns/voice-sample"] =
            Counter (samples * voices * 1e-9, Counter::kIsRate | Counter::kInvert);
    state.counters["x real time"] = Counter (samples / rateHz, Counter::kIsRate);
}
BENCHMARK (renderVoices)->ArgNames ({ "voices", "block" })->ArgsProduct ({ { 0, 1, 8, 16 }, { 64, 512 } });

void renderAsleep (benchmark::State& state)
{
    constexpr int block = 512;
    FakeHost host;
    VstSynth synth (FakeHost::callback, host.services ());
    std::vector<float> left (block);
    std::vector<float> right (block);
    float* outputs[] = { left.data (), right.data () };
    for ([[maybe_unused]] auto _ : state)
    {
        synth.processReplacing (nullptr, outputs, block);
        benchmark::ClobberMemory ();
    }
    using benchmark::Counter;
    state.counters["ns/sample"] = Counter (static_cast<double> (state.iterations ()) * block * 1e-9,
                                           Counter::kIsRate | Counter::kInvert);
}
BENCHMARK (renderAsleep);

void openInstance (benchmark::State& state)
{
    FakeHost host;
    for ([[maybe_unused]] auto _ : state)
    {
        VstSynth synth (FakeHost::callback, host.services ());
        benchmark::DoNotOptimize (&synth);
    }
}
BENCHMARK (openInstance)->Unit (benchmark::kMillisecond);
}

BENCHMARK_MAIN ();
