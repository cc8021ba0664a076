// What a host's user waits for: scanning the library and opening an instance. Real time, for the system's
// loader and files are part of it. The panel is in panelBench.cpp.
//   XDG_CONFIG_HOME=$(mktemp -d) build/linux/bench/brimvale_opening_bench --benchmark_repetitions=9
#include <sys/wait.h>
#include <unistd.h>

#include <benchmark/benchmark.h>

#include "host/Plugin.h"

namespace
{
// Loads the library, makes an instance, asks it for what a list of instruments shows, and unloads: in a new
// process each time, as a library that has been loaded once stays in part.
void scanning (benchmark::State& state)
{
    for ([[maybe_unused]] auto _ : state)
    {
        const pid_t scanner = fork ();
        if (scanner == 0)
        {
            {
                host::Plugin plugin (LIBRARY);
                benchmark::DoNotOptimize (plugin.programName (0));
            }
            _exit (0);
        }
        int status = -1;
        if (waitpid (scanner, &status, 0) != scanner || status != 0)
            state.SkipWithError ("the scan failed");
    }
}
BENCHMARK (scanning)->Iterations (20)->Unit (benchmark::kMillisecond)->UseRealTime ();

// One more instance of a library that is loaded.
void opening (benchmark::State& state)
{
    const host::Plugin first (LIBRARY);
    for ([[maybe_unused]] auto _ : state)
    {
        host::Plugin plugin (LIBRARY);
        benchmark::ClobberMemory ();
    }
}
BENCHMARK (opening)->Iterations (200)->Unit (benchmark::kMicrosecond)->UseRealTime ();
}

BENCHMARK_MAIN ();
