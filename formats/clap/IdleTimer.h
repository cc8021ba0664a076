#pragma once

#include <atomic>
#include <thread>

#include "formats/clap/Host.h"

namespace clap
{
// Regular calls on the main thread for an open window: from a timer of the host's or, where it has none, by
// asking it for a callback in equal intervals, for which a thread of our own waits. Main thread.
class IdleTimer
{
public:
    explicit IdleTimer (const Host& theHost) : host (theHost) {}
    ~IdleTimer () { stop (); }
    IdleTimer (const IdleTimer&) = delete;
    IdleTimer& operator= (const IdleTimer&) = delete;

    void start ();
    void stop ();

    // Whether a call of the host's is one of these.
    bool isTimer (clap_id id) const { return hasTimer && id == timer; }
    bool takeCallback () { return asked.exchange (false); }

private:
    void askRegularly (const std::stop_token& stopped);

    const Host& host;
    bool hasTimer = false;
    clap_id timer = CLAP_INVALID_ID;
    std::atomic<bool> asked = false; // for a callback that has not come yet
    std::jthread asking;
};
}
