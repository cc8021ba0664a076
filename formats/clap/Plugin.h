#pragma once

#include <memory>

#include <clap/plugin.h>

#include "formats/clap/BlockEvents.h"
#include "formats/clap/Gui.h"
#include "formats/clap/Host.h"
#include "formats/clap/Reporter.h"

namespace clap
{
extern const clap_plugin_descriptor_t descriptor;

// One instance of the instrument as CLAP hosts hold it. Their calls come with the threads that CLAP names;
// the extensions' tables lie in Extensions.cpp.
class Plugin final : private instrument::FormatHost
{
public:
    explicit Plugin (const clap_host_t& theHost);
    Plugin (const Plugin&) = delete;
    Plugin& operator= (const Plugin&) = delete;

    const clap_plugin_t* face () const { return &handle; }
    static Plugin& of (const clap_plugin_t* plugin) { return *static_cast<Plugin*> (plugin->plugin_data); }

    // Main thread
    formats::HostedInstrument& instrument () { return synth; }
    Gui* gui () { return panel.get (); } // null without one
    bool saveState (const clap_ostream_t& stream);
    bool loadState (const clap_istream_t& stream);

    // Audio thread while active, else main thread
    void flush (const clap_input_events_t* in, const clap_output_events_t* out);

private:
    bool init ();
    bool activate (double sampleRate);
    void reset ();
    clap_process_status process (const clap_process_t& block);
    void onMainThread ();

    std::optional<engine::Transport> transport () override;
    void report (const clap_output_events_t* out);

    clap_plugin_t handle;
    Host host;
    formats::HostedInstrument synth;
    BlockEvents events{ synth };
    Reporter reporter{ synth };
    std::unique_ptr<Gui> panel;
    const clap_event_transport_t* now = nullptr; // of the block that is being processed
    double rate = 44100.0;                       // Hz
};
}
