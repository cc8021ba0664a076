#include "formats/clap/IdleTimer.h"

#include <chrono>
#include <condition_variable>
#include <mutex>

namespace clap
{
namespace
{
constexpr std::uint32_t period = 20; // ms
}

void IdleTimer::start ()
{
    stop ();
    hasTimer = host.startTimer (period, timer);
    if (!hasTimer)
        asking = std::jthread ([this] (const std::stop_token& stopped) { askRegularly (stopped); });
}

void IdleTimer::stop ()
{
    if (hasTimer)
        host.stopTimer (timer);
    hasTimer = false;
    asking = {}; // ends it and waits for it, a moment at most
    asked = false;
}

// One request at a time, so that a busy host gathers none.
void IdleTimer::askRegularly (const std::stop_token& stopped)
{
    std::mutex mutex;
    std::condition_variable_any never;
    std::unique_lock lock (mutex);
    while (!never.wait_for (lock, stopped, std::chrono::milliseconds (period),
                            [&stopped] { return stopped.stop_requested (); }))
    {
        if (!asked.exchange (true))
            host.requestCallback ();
    }
}
}
