#include "tests/formats/ClapHost.h"

#include <cmath>
#include <cstring>
#include <stdexcept>

#include <clap/ext/thread-check.h>
#include <clap/plugin-factory.h>

// --- Events

void ClapEvents::addNote (std::uint16_t type, int offset, int key, double velocity)
{
    auto& event = add<clap_event_note_t> (type, offset);
    event.note_id = -1;
    event.key = static_cast<std::int16_t> (key);
    event.velocity = velocity;
}

void ClapEvents::addValue (int offset, std::int32_t index, double value)
{
    auto& event = add<clap_event_param_value_t> (CLAP_EVENT_PARAM_VALUE, offset);
    event.param_id = static_cast<clap_id> (index);
    event.note_id = -1;
    event.port_index = event.channel = event.key = -1;
    event.value = value;
}

void ClapEvents::add (const engine::Event& event)
{
    if (event.kind == engine::Event::Kind::parameter)
        return addValue (event.offset, event.index, static_cast<double> (event.value));
    auto& message = add<clap_event_midi_t> (CLAP_EVENT_MIDI, event.offset);
    message.data[0] = event.status;
    message.data[1] = event.data1;
    message.data[2] = event.data2;
}

std::vector<std::string> ClapEvents::told () const
{
    std::vector<std::string> lines;
    for (const Entry& entry : entries)
    {
        const auto& event = reinterpret_cast<const clap_event_param_value_t&> (entry); // gestures begin alike
        const std::string id = std::to_string (event.param_id);
        if (entry.header.type != CLAP_EVENT_PARAM_VALUE)
            lines.push_back ((entry.header.type == CLAP_EVENT_PARAM_GESTURE_BEGIN ? "begin " : "end ") + id);
        else if ((entry.header.flags & CLAP_EVENT_DONT_RECORD) == 0)
            lines.push_back ("set " + id);
        else
            lines.push_back (id + " = " + std::to_string (event.value));
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

std::unique_ptr<FormatHost> makeHost ()
{
    return std::make_unique<ClapHost> ();
}

ClapHost::ClapHost (bool hasTimers) : offersTimers (hasTimers)
{
    in.makeRoom ();
    out.makeRoom ();
    entry = static_cast<const clap_plugin_entry*> (library.symbol ("clap_entry"));
    if (entry == nullptr || !entry->init (BRIMVALE_FORMAT_LIBRARY))
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
        [] (const clap_host_t* host) { of (host).flushAsked = true; },
    };
    static constexpr clap_host_gui_t gui = {
        [] (const clap_host_t*) {},
        [] (const clap_host_t* host, std::uint32_t width, std::uint32_t height)
        {
            of (host).resized (static_cast<int> (width), static_cast<int> (height));
            return true;
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

void ClapHost::start (double sampleRate, int longest)
{
    rate = sampleRate;
    if (!plugin->activate (plugin, sampleRate, 1, static_cast<std::uint32_t> (longest)))
        throw std::runtime_error ("not activated");
    plugin->start_processing (plugin);
}

void ClapHost::stop ()
{
    plugin->stop_processing (plugin);
    plugin->deactivate (plugin);
}

void ClapHost::render (std::span<const engine::Event> events, const engine::Transport* song, float* left,
                       float* right, int frames)
{
    for (const engine::Event& event : events)
    {
        if ((event.status & 0xE0) == 0x80 && event.data1 % 2 != 0) // hosts use either kind of notes
            in.addNote (event.status >= 0x90 ? CLAP_EVENT_NOTE_ON : CLAP_EVENT_NOTE_OFF, event.offset,
                        event.data1, event.data2 / 127.0);
        else
            in.add (event);
    }
    if (song == nullptr)
        return process (left, right, frames);
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
    process (left, right, frames, &transport);
}

void ClapHost::process (float* left, float* right, int frames, const clap_event_transport_t* song)
{
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
    out.clear ();
    if (plugin->process (plugin, &process) == CLAP_PROCESS_ERROR)
        throw std::runtime_error ("the block failed");
    in.clear ();
}

void ClapHost::flush ()
{
    const clap_input_events_t input = in.input ();
    const clap_output_events_t output = out.output ();
    out.clear ();
    params ().flush (plugin, &input, &output);
    in.clear ();
}

double ClapHost::value (std::int32_t index)
{
    double found = -1.0;
    return params ().get_value (plugin, static_cast<clap_id> (index), &found) ? found : -1.0;
}

std::string ClapHost::save ()
{
    SongStream stream;
    const clap_ostream_t to = { &stream, [] (const clap_ostream_t* sink, const void* data, std::uint64_t size)
                                {
                                    auto& own = *static_cast<SongStream*> (sink->ctx);
                                    return static_cast<std::int64_t> (own.write (data, size));
                                } };
    const auto& state = extension<clap_plugin_state_t> (CLAP_EXT_STATE);
    return state.save (plugin, &to) ? stream.bytes : "";
}

bool ClapHost::take (const std::string& song) const
{
    SongStream stream{ song };
    const clap_istream_t from = { &stream, [] (const clap_istream_t* source, void* to, std::uint64_t size)
                                  {
                                      auto& own = *static_cast<SongStream*> (source->ctx);
                                      return static_cast<std::int64_t> (own.read (to, size));
                                  } };
    return extension<clap_plugin_state_t> (CLAP_EXT_STATE).load (plugin, &from);
}

std::pair<int, int> ClapHost::size ()
{
    std::uint32_t width = 0, height = 0;
    gui ().get_size (plugin, &width, &height);
    return { static_cast<int> (width), static_cast<int> (height) };
}

bool ClapHost::open (void* handle)
{
    clap_window_t window = { CLAP_WINDOW_API_X11, {} };
    window.ptr = handle;
    if (!gui ().create (plugin, floats ? nullptr : window.api, floats))
        return false;
    gui ().suggest_title (plugin, title);
    return (floats || gui ().set_parent (plugin, &window)) && gui ().show (plugin);
}

void ClapHost::turn ()
{
    for (const auto& [id, period] : std::map (timers))
        extension<clap_plugin_timer_support_t> (CLAP_EXT_TIMER_SUPPORT).on_timer (plugin, id);
    if (callbackAsked.exchange (false))
        plugin->on_main_thread (plugin);
    if (!flushAsked.exchange (false))
        return;
    flush ();
    for (const std::string& line : out.told ())
        edits += line + ";";
}
