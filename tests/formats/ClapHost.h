#pragma once

#include <atomic>
#include <map>
#include <string>
#include <thread>
#include <vector>

#include <clap/entry.h>
#include <clap/ext/gui.h>
#include <clap/ext/params.h>
#include <clap/ext/state.h>
#include <clap/ext/timer-support.h>
#include <clap/plugin.h>

#include "platform/SharedLibrary.h"
#include "tests/formats/Sameness.h"

// Events in one direction, each kept in the room of the largest.
class ClapEvents
{
public:
    template <typename Event>
    Event& add (std::uint16_t type, int offset)
    {
        Entry& entry = entries.emplace_back ();
        auto& event = *reinterpret_cast<Event*> (&entry);
        event.header = { sizeof (Event), static_cast<std::uint32_t> (offset), CLAP_CORE_EVENT_SPACE_ID, type,
                         0 };
        return event;
    }
    void addMidi (int offset, int status, int data1, int data2);
    void addNote (std::uint16_t type, int offset, int key, double velocity);
    void addValue (int offset, clap_id index, double value);
    void add (const engine::Event& event);

    // "begin 18", "value 18 0.5 live" or "end 18"; "live" where it is to be recorded.
    std::vector<std::string> told () const;

    void makeRoom (std::size_t count) { entries.reserve (count); }
    void clear () { entries.clear (); }

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

// A CLAP host with one instance of the built library. The thread that makes it is the main thread.
class ClapHost
{
public:
    explicit ClapHost (bool hasTimers = true);
    ~ClapHost ();
    ClapHost (const ClapHost&) = delete;
    ClapHost& operator= (const ClapHost&) = delete;

    template <typename Extension>
    const Extension& extension (const char* id) const
    {
        return *static_cast<const Extension*> (plugin->get_extension (plugin, id));
    }
    const clap_plugin_params_t& params () const { return extension<clap_plugin_params_t> (CLAP_EXT_PARAMS); }
    const clap_plugin_gui_t& gui () const { return extension<clap_plugin_gui_t> (CLAP_EXT_GUI); }

    double value (clap_id index) const;
    std::string text (clap_id index, double value) const;

    // A song's state, written and read in pieces of so many bytes.
    std::vector<std::byte> save (std::size_t piece = 65536) const;
    bool load (std::span<const std::byte> state, std::size_t piece = 65536) const;

    // One block, or values alone; what the plug-in told meanwhile.
    std::vector<std::string> block (ClapEvents in, float* left, float* right, int frames,
                                    const clap_event_transport_t* song = nullptr) const;
    std::vector<std::string> flush (ClapEvents in = {}) const;

    // The main loop's turn: timers that are due and the callback that was asked for.
    void turn ();

    const clap_plugin_t* plugin = nullptr;
    std::size_t mostTold = 1000; // in one block

    // What the plug-in asked for
    std::atomic<int> flushRequests = 0;
    std::atomic<bool> callbackAsked = false;
    int windowsClosed = 0;
    clap_param_rescan_flags rescans = 0;
    std::function<bool (int width, int height)> resize;

private:
    const void* offer (const char* id) const;

    platform::SharedLibrary library;
    const clap_plugin_entry* entry = nullptr;
    clap_host_t face = {};
    bool offersTimers;
    std::map<clap_id, std::uint32_t> timers;
    const std::thread::id mainThread = std::this_thread::get_id ();
};

// The same as a format whose sound is compared.
class ClapInstance final : public FormatInstance
{
public:
    bool loadBank (std::span<const std::byte> image) override { return host.load (image); }
    std::vector<std::byte> saveBank () override;
    void start (double sampleRate, int longestBlock) override;
    void stop () override;
    void render (std::span<const engine::Event> events, const engine::Transport* song, float* left,
                 float* right, int frames) override;

private:
    ClapHost host;
    double rate = 44100.0;
};
