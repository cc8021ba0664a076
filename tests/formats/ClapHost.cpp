#include "tests/formats/ClapHost.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <stdexcept>

#include <clap/ext/thread-check.h>
#include <clap/plugin-factory.h>

#include "instrument/Bank.h"

// --- Events

void ClapEvents::addMidi (int offset, int status, int data1, int data2)
{
    auto& event = add<clap_event_midi_t> (CLAP_EVENT_MIDI, offset);
    const int data[] = { status, data1, data2 };
    std::ranges::transform (data, event.data, [] (int byte) { return static_cast<std::uint8_t> (byte); });
}

void ClapEvents::addNote (std::uint16_t type, int offset, int key, double velocity)
{
    auto& event = add<clap_event_note_t> (type, offset);
    event.note_id = -1;
    event.key = static_cast<std::int16_t> (key);
    event.velocity = velocity;
}

void ClapEvents::addValue (int offset, clap_id index, double value)
{
    auto& event = add<clap_event_param_value_t> (CLAP_EVENT_PARAM_VALUE, offset);
    event.param_id = index;
    event.note_id = -1;
    event.port_index = event.channel = event.key = -1;
    event.value = value;
}

void ClapEvents::add (const engine::Event& event)
{
    if (event.kind == engine::Event::Kind::parameter)
        addValue (event.offset, static_cast<clap_id> (event.index), static_cast<double> (event.value));
    else
        addMidi (event.offset, event.status, event.data1, event.data2);
}

std::vector<std::string> ClapEvents::told () const
{
    std::vector<std::string> lines;
    for (const Entry& entry : entries)
    {
        char line[80] = "?";
        if (entry.header.type == CLAP_EVENT_PARAM_VALUE)
        {
            const auto& event = reinterpret_cast<const clap_event_param_value_t&> (entry);
            const bool isLive = (event.header.flags & CLAP_EVENT_DONT_RECORD) == 0;
            std::snprintf (line, sizeof line, "value %u %g%s", event.param_id, event.value,
                           isLive ? " live" : "");
        }
        else
        {
            const auto& event = reinterpret_cast<const clap_event_param_gesture_t&> (entry);
            const bool begins = event.header.type == CLAP_EVENT_PARAM_GESTURE_BEGIN;
            std::snprintf (line, sizeof line, "%s %u", begins ? "begin" : "end", event.param_id);
        }
        lines.emplace_back (line);
    }
    return lines;
}

clap_input_events_t ClapEvents::input ()
{
    return { this,
             [] (const clap_input_events_t* list)
             { return static_cast<std::uint32_t> (static_cast<ClapEvents*> (list->ctx)->entries.size ()); },
             [] (const clap_input_events_t* list, std::uint32_t index) -> const clap_event_header_t*
             { return &static_cast<ClapEvents*> (list->ctx)->entries[index].header; } };
}

clap_output_events_t ClapEvents::output ()
{
    return { this, [] (const clap_output_events_t* list, const clap_event_header_t* event)
             {
                 auto& own = *static_cast<ClapEvents*> (list->ctx);
                 if (own.entries.size () >= own.most || event->size > sizeof (Entry))
                     return false;
                 std::memcpy (&own.entries.emplace_back (), event, event->size);
                 return true;
             } };
}

// --- The host

namespace
{
ClapHost& of (const clap_host_t* host)
{
    return *static_cast<ClapHost*> (host->host_data);
}
}

ClapHost::ClapHost (bool hasTimers) : library (BRIMVALE_CLAP_LIBRARY), offersTimers (hasTimers)
{
    entry = static_cast<const clap_plugin_entry*> (library.symbol ("clap_entry"));
    if (entry == nullptr || !entry->init (BRIMVALE_CLAP_LIBRARY))
        throw std::runtime_error ("no CLAP library");
    face.clap_version = CLAP_VERSION;
    face.host_data = this;
    face.name = face.vendor = face.url = face.version = "test";
    face.get_extension = [] (const clap_host_t* host, const char* id) { return of (host).offer (id); };
    face.request_restart = [] (const clap_host_t*) {};
    face.request_process = [] (const clap_host_t*) {};
    face.request_callback = [] (const clap_host_t* host) { of (host).callbackAsked = true; };

    const auto* factory =
        static_cast<const clap_plugin_factory_t*> (entry->get_factory (CLAP_PLUGIN_FACTORY_ID));
    plugin = factory->create_plugin (factory, &face, factory->get_plugin_descriptor (factory, 0)->id);
    if (plugin == nullptr || !plugin->init (plugin))
        throw std::runtime_error ("no plug-in");
}

ClapHost::~ClapHost ()
{
    plugin->destroy (plugin);
    entry->deinit ();
}

const void* ClapHost::offer (const char* name) const
{
    static constexpr clap_host_params_t params = {
        [] (const clap_host_t* host, clap_param_rescan_flags flags) { of (host).rescans |= flags; },
        [] (const clap_host_t*, clap_id, clap_param_clear_flags) {},
        [] (const clap_host_t* host) { ++of (host).flushRequests; },
    };
    static constexpr clap_host_gui_t gui = {
        [] (const clap_host_t*) {},
        [] (const clap_host_t* host, std::uint32_t width, std::uint32_t height) {
            return of (host).resize && of (host).resize (static_cast<int> (width), static_cast<int> (height));
        },
        [] (const clap_host_t*) { return true; },
        [] (const clap_host_t*) { return true; },
        [] (const clap_host_t* host, bool) { ++of (host).windowsClosed; },
    };
    static constexpr clap_host_timer_support_t timerSupport = {
        [] (const clap_host_t* host, std::uint32_t period, clap_id* id)
        {
            *id = 5;
            return of (host).timers.emplace (5, period).second;
        },
        [] (const clap_host_t* host, clap_id id) { return of (host).timers.erase (id) == 1; },
    };
    static constexpr clap_host_thread_check_t threads = {
        [] (const clap_host_t* host) { return of (host).mainThread == std::this_thread::get_id (); },
        [] (const clap_host_t*) { return true; },
    };
    const std::string wanted = name;
    if (wanted == CLAP_EXT_PARAMS)
        return &params;
    if (wanted == CLAP_EXT_GUI)
        return &gui;
    if (wanted == CLAP_EXT_THREAD_CHECK)
        return &threads;
    return wanted == CLAP_EXT_TIMER_SUPPORT && offersTimers ? &timerSupport : nullptr;
}

double ClapHost::value (clap_id index) const
{
    double found = -1.0;
    return params ().get_value (plugin, index, &found) ? found : -1.0;
}

std::string ClapHost::text (clap_id index, double value) const
{
    char display[64] = "";
    params ().value_to_text (plugin, index, value, display, sizeof display);
    return display;
}

namespace
{
struct Stream
{
    std::vector<std::byte> bytes;
    std::size_t piece = 0;
    std::size_t done = 0;
};
}

std::vector<std::byte> ClapHost::save (std::size_t piece) const
{
    Stream stream{ {}, piece };
    const clap_ostream_t to = { &stream, [] (const clap_ostream_t* sink, const void* data, std::uint64_t size)
                                {
                                    auto& own = *static_cast<Stream*> (sink->ctx);
                                    const auto taken = std::min<std::uint64_t> (size, own.piece);
                                    const auto* from = static_cast<const std::byte*> (data);
                                    own.bytes.insert (own.bytes.end (), from, from + taken);
                                    return static_cast<std::int64_t> (taken);
                                } };
    const auto& state = extension<clap_plugin_state_t> (CLAP_EXT_STATE);
    return state.save (plugin, &to) ? stream.bytes : std::vector<std::byte> ();
}

bool ClapHost::load (std::span<const std::byte> bytes, std::size_t piece) const
{
    Stream stream{ { bytes.begin (), bytes.end () }, piece };
    const clap_istream_t from = { &stream, [] (const clap_istream_t* source, void* buffer, std::uint64_t size)
                                  {
                                      auto& own = *static_cast<Stream*> (source->ctx);
                                      const auto given =
                                          std::min<std::size_t> ({ static_cast<std::size_t> (size), own.piece,
                                                                   own.bytes.size () - own.done });
                                      std::copy_n (own.bytes.data () + own.done, given,
                                                   static_cast<std::byte*> (buffer));
                                      own.done += given;
                                      return static_cast<std::int64_t> (given);
                                  } };
    return extension<clap_plugin_state_t> (CLAP_EXT_STATE).load (plugin, &from);
}

std::vector<std::string> ClapHost::block (ClapEvents in, float* left, float* right, int frames,
                                          const clap_event_transport_t* song) const
{
    ClapEvents out;
    out.most = mostTold;
    const clap_input_events_t input = in.input ();
    const clap_output_events_t output = out.output ();
    float* channels[] = { left, right };
    clap_audio_buffer_t buffer = {};
    buffer.data32 = channels;
    buffer.channel_count = 2;
    clap_process_t process = {};
    process.steady_time = -1;
    process.frames_count = static_cast<std::uint32_t> (frames);
    process.transport = song;
    process.audio_outputs = &buffer;
    process.audio_outputs_count = 1;
    process.in_events = &input;
    process.out_events = &output;
    if (plugin->process (plugin, &process) == CLAP_PROCESS_ERROR)
        throw std::runtime_error ("the block failed");
    return out.told ();
}

std::vector<std::string> ClapHost::flush (ClapEvents in) const
{
    ClapEvents out;
    const clap_input_events_t input = in.input ();
    const clap_output_events_t output = out.output ();
    params ().flush (plugin, &input, &output);
    return out.told ();
}

void ClapHost::turn ()
{
    for (const auto& [id, period] : std::map (timers))
        extension<clap_plugin_timer_support_t> (CLAP_EXT_TIMER_SUPPORT).on_timer (plugin, id);
    if (callbackAsked.exchange (false))
        plugin->on_main_thread (plugin);
}

// --- The format

std::vector<std::byte> ClapInstance::saveBank ()
{
    const auto state = host.save ();
    return { state.end () - sizeof (instrument::BankImage), state.end () };
}

void ClapInstance::start (double sampleRate, int longestBlock)
{
    rate = sampleRate;
    host.plugin->activate (host.plugin, sampleRate, 1, static_cast<std::uint32_t> (longestBlock));
    host.plugin->start_processing (host.plugin);
}

void ClapInstance::stop ()
{
    host.plugin->stop_processing (host.plugin);
    host.plugin->deactivate (host.plugin);
}

void ClapInstance::render (std::span<const engine::Event> events, const engine::Transport* song, float* left,
                           float* right, int frames)
{
    ClapEvents in;
    for (const engine::Event& event : events)
        in.add (event);
    if (song == nullptr)
    {
        host.block (in, left, right, frames);
        return;
    }
    const auto fixed = [] (double position) {
        return static_cast<std::int64_t> (
            std::llround (position * static_cast<double> (CLAP_SECTIME_FACTOR)));
    };
    clap_event_transport_t transport = {};
    transport.flags =
        CLAP_TRANSPORT_HAS_TEMPO | CLAP_TRANSPORT_HAS_BEATS_TIMELINE | CLAP_TRANSPORT_HAS_SECONDS_TIMELINE;
    transport.tempo = *song->tempo;
    transport.song_pos_beats = fixed (*song->quarterPosition);
    transport.song_pos_seconds = fixed (song->samplePosition / rate);
    host.block (in, left, right, frames, &transport);
}
