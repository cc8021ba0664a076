#pragma once

#include <cstdint>

#include <clap/ext/gui.h>
#include <clap/ext/params.h>
#include <clap/ext/state.h>
#include <clap/ext/thread-check.h>
#include <clap/ext/timer-support.h>
#include <clap/host.h>

namespace clap
{
// What the host offers beyond the calls that each has, and the thread rules of asking for it. What a host
// does not offer is left out.
class Host
{
public:
    explicit Host (const clap_host_t& theHost) : host (theHost) {}

    void lookUp (); // in the plug-in's init, the first call in which it is allowed

    bool isMainThread () const; // any thread

    // Any thread but the audio thread
    void requestFlush () const; // values wait to be told

    // Any thread
    void requestCallback () const { host.request_callback (&host); }
    bool requestResize (int width, int height) const; // pixels; false where the host refuses
    void windowClosed () const;

    // Main thread
    void rescan (clap_param_rescan_flags what) const;
    void markDirty () const;                                         // the song is to be saved
    bool startTimer (std::uint32_t milliseconds, clap_id& id) const; // false where the host has none
    void stopTimer (clap_id id) const;

private:
    const clap_host_t& host;
    const clap_host_params_t* params = nullptr;
    const clap_host_gui_t* gui = nullptr;
    const clap_host_state_t* state = nullptr;
    const clap_host_timer_support_t* timers = nullptr;
    const clap_host_thread_check_t* threads = nullptr;
    std::uintptr_t mainThread = 0; // where the host does not tell
};
}
