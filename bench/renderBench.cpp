// How long rendering takes; docs/performance.md holds figures and commands.
#include <algorithm>
#include <ctime>
#include <numeric>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include <benchmark/benchmark.h>

#include "tests/engine/TestEngine.h"

using namespace engine;
using namespace parameters;

void addFloorRows (); // floor.cpp

namespace
{
constexpr float rateHz = 44100.0f;
constexpr int lowestNote = 40;
constexpr int usualBlock = 512;

using Settings = std::vector<std::pair<Param, float>>;

// The heaviest common setting: both oscillators, high quality, and a filter that LFO and envelope move.
const Settings plain = {
    { paramOsc1Wave, 1.0f },    { paramOsc2Wave, 0.5f },  { paramOsc1PW, 0.0f },
    { paramOsc2Fine, 0.2f },    { param1Sustain, 0.8f },  { param1Decay, 0.7f },
    { param2Attack, 0.4f },     { param2Decay, 0.6f },    { param2Delay, 0.0f },
    { paramFilterFreq, 0.5f },  { param2ToFilter, 0.8f }, { paramLfoFilter, 0.7f },
    { paramLfoRate, 0.5f },     { paramLfoPitch, 0.0f },  { paramVoices, 1.0f },
    { paramHighQuality, 0.0f }, { paramGlideMono, 0.0f }, { paramSmothFilt, 0.0f },
    { paramFilterType, 0.0f },  { paramNoise, 0.0f },
};

class Player
{
public:
    Player (const VoiceKernel& kernel, const Settings& changes, int voices, int block)
        : synth (rateHz, recordedWaves (), kernel),
          left (static_cast<std::size_t> (block)),
          right (left)
    {
        for (const Settings& settings : { plain, changes })
        {
            for (const auto& [param, value] : settings)
                synth.set (param, value);
        }
        for (int n = 0; n < voices; ++n)
            synth.engine.noteEvent (lowestNote + 3 * n, 100, true);
        synth.block (4096);
    }

    void render ()
    {
        synth.engine.renderBlock (left.data (), right.data (), static_cast<std::int32_t> (left.size ()));
        benchmark::ClobberMemory ();
    }

    TestEngine synth;

private:
    std::vector<float> left;
    std::vector<float> right;
};

void count (benchmark::State& state, int voices, int block)
{
    using benchmark::Counter;
    const double samples = static_cast<double> (state.iterations ()) * block;
    const auto inverseRate = static_cast<Counter::Flags> (Counter::kIsRate | Counter::kInvert);
    state.counters["ns/sample"] = Counter (samples * 1e-9, inverseRate);
    if (voices > 0)
        state.counters["ns/voice-sample"] = Counter (samples * voices * 1e-9, inverseRate);
}

void renderVoices (benchmark::State& state, const VoiceKernel& kernel, const Settings& changes, int voices,
                   int block)
{
    Player player (kernel, changes, voices, block);
    for ([[maybe_unused]] auto _ : state)
        player.render ();
    count (state, voices, block);
}

// Voices that began at different samples follow their modulation at different samples, too.
void renderStaggered (benchmark::State& state, const VoiceKernel& kernel, int voices)
{
    Player player (kernel, {}, 0, usualBlock);
    for (int n = 0; n < voices; ++n)
    {
        player.synth.engine.noteEvent (lowestNote + 3 * n, 100, true);
        player.synth.block (100 + 7 * n);
    }
    for ([[maybe_unused]] auto _ : state)
        player.render ();
    count (state, voices, usualBlock);
}

// Mono, with a note every half second that is still on its way to its pitch when the next one comes.
void renderGlide (benchmark::State& state, const VoiceKernel& kernel)
{
    Player player (kernel, { { paramGlideMono, 0.9f } }, 1, usualBlock);
    int blocks = 0;
    for ([[maybe_unused]] auto _ : state)
    {
        if (blocks++ % 40 == 0)
            player.synth.engine.noteEvent (blocks % 80 < 40 ? 100 : 40, 100, true);
        player.render ();
    }
    count (state, 1, usualBlock);
}

void renderAsleep (benchmark::State& state)
{
    Player player (preferredKernel (), {}, 0, usualBlock);
    for (int second = 0; second < 5; ++second)
        player.synth.block (static_cast<int> (rateHz));
    for ([[maybe_unused]] auto _ : state)
        player.render ();
    count (state, 0, usualBlock);
}

// The event alone; what it makes dearer in the next block is in that of the note held before.
void startNote (benchmark::State& state)
{
    Player player (preferredKernel (), {}, 15, usualBlock);
    for ([[maybe_unused]] auto _ : state)
    {
        player.synth.engine.noteEvent (100, 100, true);
        player.synth.engine.noteEvent (100, 0, false);
    }
}

void changeProgram (benchmark::State& state)
{
    Player player (preferredKernel (), {}, 16, usualBlock);
    const auto programs = factoryPrograms ();
    std::size_t program = 0;
    for ([[maybe_unused]] auto _ : state)
        player.synth.load (programs[++program % programs.size ()]);
}

double threadSeconds ()
{
    timespec now = {};
    clock_gettime (CLOCK_THREAD_CPUTIME_ID, &now);
    return static_cast<double> (now.tv_sec) + 1e-9 * static_cast<double> (now.tv_nsec);
}

// A minute of notes that come and go every few milliseconds. The same minute is played several times, and
// each block counts as the fastest of its times, so that what else the machine does is left out.
void playDensely (benchmark::State& state)
{
    constexpr int block = 64;
    constexpr auto blocks = static_cast<std::size_t> (60.0f * rateHz / block);
    std::vector<double> fastest (blocks, 1.0);
    for ([[maybe_unused]] auto _ : state)
    {
        Player player (preferredKernel (), {}, 0, block);
        std::mt19937 random (1);
        for (double& time : fastest)
        {
            const double before = threadSeconds ();
            if (random () % 8 == 0)
                player.synth.engine.noteEvent (30 + static_cast<int> (random () % 50), 100,
                                               random () % 2 == 0);
            player.render ();
            time = std::min (time, threadSeconds () - before);
        }
    }
    const double mean =
        std::accumulate (fastest.begin (), fastest.end (), 0.0) / static_cast<double> (blocks);
    state.counters["mean block"] = mean;
    state.counters["worst block"] = *std::max_element (fastest.begin (), fastest.end ());
    state.counters["worst / mean"] = *std::max_element (fastest.begin (), fastest.end ()) / mean;
}

void addRows (const VoiceKernel& kernel)
{
    const auto add = [&kernel] (const std::string& what, const Settings& changes, int voices, int block)
    {
        const std::string name = std::string (kernel.name) + "/" + what +
                                 "/voices:" + std::to_string (voices) + "/block:" + std::to_string (block);
        benchmark::RegisterBenchmark (name.c_str (),
                                      [&kernel, changes, voices, block] (benchmark::State& state)
                                      { renderVoices (state, kernel, changes, voices, block); });
    };
    for (const int voices : { 1, 2, 3, 4, 8, 16 })
        add ("plain", {}, voices, usualBlock);
    for (const int block : { 16, 64 })
    {
        for (const int voices : { 1, 8, 16 })
            add ("plain", {}, voices, block);
    }
    benchmark::RegisterBenchmark ((std::string (kernel.name) + "/glide/voices:1/block:512").c_str (),
                                  [&kernel] (benchmark::State& state) { renderGlide (state, kernel); });
    benchmark::RegisterBenchmark ((std::string (kernel.name) + "/staggered/voices:16/block:512").c_str (),
                                  [&kernel] (benchmark::State& state)
                                  { renderStaggered (state, kernel, mostVoices); });
    const std::pair<const char*, Settings> cases[] = {
        { "noise", { { paramNoise, 0.5f } } },      { "pulse width", { { paramOsc1PW, 0.5f } } },
        { "saws", { { paramOsc1Wave, 0.5f } } },    { "LFO noise", { { paramLfoWave, 0.8f } } },
        { "vibrato", { { paramLfoPitch, 0.4f } } }, { "low quality", { { paramHighQuality, 1.0f } } },
        { "smooth", { { paramSmothFilt, 1.0f } } },
    };
    for (const auto& [name, changes] : cases)
    {
        for (const int voices : { 1, 16 })
            add (name, changes, voices, usualBlock);
    }
}
}

int main (int argc, char** argv)
{
    for (const VoiceKernel& kernel : voiceKernels ())
    {
        if (kernel.isSupported)
            addRows (kernel);
    }
    addFloorRows ();
    benchmark::RegisterBenchmark ("asleep", renderAsleep);
    benchmark::RegisterBenchmark ("note on and off", startNote);
    benchmark::RegisterBenchmark ("program change", changeProgram);
    benchmark::RegisterBenchmark ("dense play", playDensely)->Iterations (9)->Unit (benchmark::kMillisecond);
    benchmark::Initialize (&argc, argv);
    benchmark::RunSpecifiedBenchmarks ();
    return 0;
}
