#pragma once

#include <atomic>
#include <map>
#include <thread>

#include <clap/entry.h>
#include <clap/ext/gui.h>
#include <clap/ext/params.h>
#include <clap/ext/state.h>
#include <clap/ext/timer-support.h>
#include <clap/plugin.h>

#include "platform/SharedLibrary.h"
#include "tests/formats/FormatHost.h"

// Events in one direction, each kept in the room of the largest.
class ClapEvents
{
public:
    template <typename Event>
    Event& add (std::uint16_t type, int offset)
    {
        auto& event = reinterpret_cast<Event&> (entries.emplace_back ());
        event.header = { sizeof (Event), static_cast<std::uint32_t> (offset), CLAP_CORE_EVENT_SPACE_ID, type,
                         0 };
        return event;
    }
    void addNote (std::uint16_t type, int offset, int key, double velocity);
    void addValue (int offset, std::int32_t index, double value);
    void add (const engine::Event& event);

    // "begin 18", "set 18" and "end 18" where a hand is to be recorded, "38 = 5.000000" for what is only
    // told.
    std::vector<std::string> told () const;

    void clear () { entries.clear (); }
    void makeRoom () { entries.reserve (most); }

    clap_input_events_t input ();
    clap_output_events_t output ();
    std::size_t most = 1000; // beyond this many an output list is full

private:
    struct alignas (std::max_align_t) Entry
    {
        clap_event_header_t header;
        char rest[120];
    };
    std::vector<Entry> entries;
};

// The thread that makes it is the main thread.
class ClapHost final : public FormatHost
{
public:
    explicit ClapHost (bool hasTimers = true);
    ~ClapHost () override;

    void start (double sampleRate, int longest) override;
    void stop () override;
    void render (std::span<const engine::Event> events, const engine::Transport* song, float* left,
                 float* right, int frames) override;
    void set (std::int32_t index, double shown) override { in.addValue (0, index, shown); }
    double value (std::int32_t index) override;
    std::string save () override;
    void load (const std::string& state) override { take (state); }
    std::pair<int, int> size () override;
    bool open (void* window) override;
    void close () override { gui ().destroy (plugin); }
    void turn () override; // timers that are due and what was asked for

    template <typename Extension>
    const Extension& extension (const char* id) const
    {
        return *static_cast<const Extension*> (plugin->get_extension (plugin, id));
    }
    const clap_plugin_params_t& params () const { return extension<clap_plugin_params_t> (CLAP_EXT_PARAMS); }
    const clap_plugin_gui_t& gui () const { return extension<clap_plugin_gui_t> (CLAP_EXT_GUI); }
    bool take (const std::string& state) const;

    // One block, or values alone, from what is in `in`. Allocates nothing where `out` has room.
    void process (float* left, float* right, int frames, const clap_event_transport_t* song = nullptr);
    void flush ();
    ClapEvents in;
    ClapEvents out; // what the plug-in told meanwhile

    const clap_plugin_t* plugin = nullptr;
    bool floats = false; // the panel, in a window of its own
    static constexpr char title[] = "A title \xE2\x98\x83";

    // What the plug-in asked for
    std::atomic<bool> flushAsked = false;
    std::atomic<bool> callbackAsked = false;
    int windowsClosed = 0;
    clap_param_rescan_flags rescans = 0;

private:
    const void* offer (const char* id) const;

    platform::SharedLibrary library{ BRIMVALE_FORMAT_LIBRARY };
    const clap_plugin_entry* entry = nullptr;
    clap_host_t face = {};
    bool offersTimers;
    double rate = 44100.0; // Hz
    std::map<clap_id, std::uint32_t> timers;
    const std::thread::id mainThread = std::this_thread::get_id ();
};
