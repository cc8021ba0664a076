// What the open panel costs. Wants a display:
//   xvfb-run -a build/linux/bench/brimvale_panel_bench
// A host idles its editors 20 to 60 times a second: 80 us of processor time a turn are 0.5 % of a core at 60.
#include <benchmark/benchmark.h>

#include <chrono>
#include <thread>

#include "editor/PanelFactory.h"
#include "platform/HostWindow.h"

using namespace parameters;

namespace
{
constexpr auto turn = std::chrono::microseconds (16667);

// Everything around the panel.
class Surroundings final : public instrument::FormatHost, public editor::PanelHost
{
public:
    std::optional<engine::Transport> transport () override { return std::nullopt; }
    void setParameterAutomated (std::int32_t /*index*/, float /*value*/) override {}
    void beginEdit (std::int32_t /*index*/) override {}
    void endEdit (std::int32_t /*index*/) override {}
    bool resize (int /*width*/, int /*height*/) override { return true; }
    void updateDisplay () override {}
};

struct Bench
{
    Bench ()
    {
        synth.attachEditor (panel.get ());
        const auto size = panel->size ();
        window = platform::HostWindow::make (size.width, size.height);
    }
    ~Bench () { panel->close (); }

    Surroundings around;
    instrument::Instrument synth{ instrument::systemServices (instrument::BankPlaces::perUser), around };
    std::unique_ptr<editor::HostedPanel> panel = editor::createPanel (synth, around);
    std::unique_ptr<platform::HostWindow> window;
};

// A turn of the host's loop, `changes` parameters and a key moving in each.
void idle (benchmark::State& state)
{
    Bench bench;
    if (bench.window == nullptr || !bench.panel->open (bench.window->handle ()))
    {
        state.SkipWithError ("no display");
        return;
    }
    int round = 0;
    for (auto _ : state)
    {
        for (int change = 0; change < state.range (0); ++change)
            bench.synth.setParameter (10 + change,
                                      static_cast<float> ((round * 7 + change * 13) % 100) / 100.0f);
        if (state.range (0) > 0)
            bench.panel->setParameter (round % 2 == 0 ? commandKeyOn : commandKeyOff, 60.0f / 128.0f);
        bench.window->handleEvents ();
        bench.panel->idle ();
        ++round;
        state.PauseTiming (); // the redraw timer of the toolkit runs by the clock
        std::this_thread::sleep_for (turn);
        state.ResumeTiming ();
    }
}
BENCHMARK (idle)->Arg (0)->Arg (8)->Iterations (300)->Unit (benchmark::kMicrosecond);

// From the host's call until it returns.
void opening (benchmark::State& state)
{
    Bench bench;
    for (auto _ : state)
    {
        if (!bench.panel->open (bench.window->handle ()))
        {
            state.SkipWithError ("no display");
            break;
        }
        state.PauseTiming ();
        bench.panel->idle ();
        bench.panel->close ();
        state.ResumeTiming ();
    }
}
BENCHMARK (opening)->Iterations (50)->Unit (benchmark::kMillisecond)->UseRealTime ();
}

BENCHMARK_MAIN ();
