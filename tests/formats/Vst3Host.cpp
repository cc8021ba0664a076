// The instrument in VST3, through the interfaces that its framework declares.
#include "tests/formats/FormatHost.h"

#include <algorithm>
#include <array>
#include <map>
#include <tuple>
#include <utility>

#include <gtest/gtest.h>
#include <travesty/audio_processor.h>
#include <travesty/bstream.h>
#include <travesty/component.h>
#include <travesty/edit_controller.h>
#include <travesty/events.h>
#include <travesty/factory.h>
#include <travesty/host.h>
#include <travesty/message.h>

#include "formats/shared/ShownParameters.h"
#include "platform/SharedLibrary.h"
#include "tests/support/Events.h"
#include "tests/support/Signals.h"

using namespace formats;

namespace
{
constexpr v3_param_id firstShown = 2080; // for ever, as songs know them

// A host's objects: what VST3 passes is a pointer to a pointer to a table of operations, which is what
// compilers make of a class with virtual functions. They live as long as their owner, whoever refers to them.
class Unknown
{
public:
    virtual v3_result query (const v3_tuid /*id*/, void** /*found*/) { return V3_FALSE; }
    virtual std::uint32_t ref () { return 1; }
    virtual std::uint32_t unref () { return 1; }

    template <typename Table>
    Table** as ()
    {
        return reinterpret_cast<Table**> (this);
    }

protected:
    ~Unknown () = default;
};

template <typename Result, typename Value>
v3_result give (Result* to, Value&& value)
{
    *to = static_cast<Result> (value);
    return V3_OK;
}

struct Stream final : Unknown
{
    virtual v3_result read (void* to, std::uint32_t most, std::int32_t* count)
    {
        return give (count, song.read (to, most));
    }
    virtual v3_result write (const void* from, std::uint32_t size, std::int32_t* count)
    {
        return give (count, song.write (from, size));
    }
    SongStream song;
};

// What the framework's two halves tell each other.
struct Attributes final : Unknown
{
    virtual v3_result setInt (const char* id, std::int64_t value) { return put (id, &value, sizeof value); }
    virtual v3_result getInt (const char* id, std::int64_t* value) { return take (id, value, sizeof *value); }
    virtual v3_result setFloat (const char* id, double value) { return put (id, &value, sizeof value); }
    virtual v3_result getFloat (const char* id, double* value) { return take (id, value, sizeof *value); }
    virtual v3_result setString (const char* id, const char16_t* text)
    {
        return put (id, text, (std::char_traits<char16_t>::length (text) + 1) * sizeof *text);
    }
    virtual v3_result getString (const char* id, void* text, std::uint32_t size)
    {
        return take (id, text, size);
    }

    v3_result put (const char* id, const void* from, std::size_t size)
    {
        values[id].assign (static_cast<const char*> (from), size);
        return V3_OK;
    }
    v3_result take (const char* id, void* to, std::size_t size)
    {
        return values[id].copy (static_cast<char*> (to), size) > 0 ? V3_OK : V3_FALSE;
    }
    std::map<std::string, std::string> values;
};

struct Message final : Unknown
{
    std::uint32_t unref () override
    {
        delete this;
        return 0;
    }
    virtual const char* id () { return name.c_str (); }
    virtual void setId (const char* newName) { name = newName; }
    virtual v3_attribute_list** list () { return attributes.as<v3_attribute_list> (); }
    std::string name;
    Attributes attributes;
};

struct Application final : Unknown
{
    v3_result query (const v3_tuid /*id*/, void** found) override { return give (found, this); }
    virtual v3_result name (void*) { return V3_FALSE; }
    virtual v3_result make (const v3_tuid, const v3_tuid, void** made) { return give (made, new Message); }
};

struct Queue final : Unknown // of one parameter in a block
{
    explicit Queue (v3_param_id parameter) : id (parameter) {}
    virtual v3_param_id parameter () { return id; }
    virtual std::int32_t count () { return static_cast<std::int32_t> (size); }
    virtual v3_result get (std::uint32_t n, std::int32_t* offset, double* value)
    {
        std::tie (*offset, *value) = points[n];
        return V3_OK;
    }
    v3_param_id id;
    std::size_t size = 0;
    std::array<std::pair<std::int32_t, double>, 50> points;
};

struct Changes final : Unknown
{
    Changes () { queues.reserve (200); }
    virtual std::int32_t count () { return static_cast<std::int32_t> (queues.size ()); }
    virtual Queue* get (std::uint32_t n) { return &queues[n]; }
    void add (v3_param_id id, int offset, double value)
    {
        auto queue = std::ranges::find (queues, id, &Queue::id);
        if (queue == queues.end ())
            queue = queues.emplace (queue, id);
        queue->points.at (queue->size++) = { offset, value };
    }
    std::vector<Queue> queues;
};

struct Notes final : Unknown
{
    Notes () { events.reserve (200); }
    virtual std::uint32_t count () { return static_cast<std::uint32_t> (events.size ()); }
    virtual v3_result get (std::uint32_t n, v3_event* event) { return give (event, events[n]); }
    std::vector<v3_event> events;
};

struct Handler final : Unknown
{
    explicit Handler (std::string& told) : edits (told) {}
    virtual v3_result begin (v3_param_id id) { return note ("begin ", id); }
    virtual v3_result perform (v3_param_id id, double) { return note ("set ", id); }
    virtual v3_result end (v3_param_id id) { return note ("end ", id); }
    virtual v3_result restart (std::int32_t) { return V3_OK; }
    v3_result note (const char* what, v3_param_id id)
    {
        edits += what + std::to_string (id - firstShown) + ";";
        return V3_OK;
    }
    std::string& edits;
};

struct Loop final : Unknown
{
    virtual v3_result addWatch (void*, int) { return V3_OK; }
    virtual v3_result removeWatch (void*) { return V3_OK; }
    virtual v3_result addTimer (v3_timer_handler** added, std::uint64_t) { return give (&timer, added); }
    virtual v3_result removeTimer (v3_timer_handler**) { return give (&timer, nullptr); }
    v3_timer_handler** timer = nullptr;
};

struct Frame final : Unknown
{
    v3_result query (const v3_tuid id, void** found) override
    {
        *found = v3_tuid_match (id, v3_run_loop_iid) ? &loop : nullptr;
        return *found != nullptr ? V3_OK : V3_FALSE;
    }
    virtual v3_result resize (v3_plugin_view** view, v3_view_rect* rect)
    {
        host.resized (rect->right, rect->bottom);
        return v3_cpp_obj (view)->on_size (view, rect);
    }
    explicit Frame (FormatHost& owner) : host (owner) {}
    Loop loop;
    FormatHost& host;
};

class Vst3Host final : public FormatHost
{
public:
    Vst3Host ()
    {
        for (const char* name : { "ModuleEntry", "InitDll" })
        {
            if (void* const enter = file.symbol (name))
                reinterpret_cast<bool (*) (void*)> (enter) (nullptr);
        }
        using Entry = v3_plugin_factory** (*)();
        v3_plugin_factory** const factory = reinterpret_cast<Entry> (file.symbol ("GetPluginFactory")) ();
        v3_cpp_obj (factory)->get_class_info (factory, 0, &about);
        v3_cpp_obj (factory)->create_instance (factory, about.class_id, v3_component_iid,
                                               reinterpret_cast<void**> (&component));
        v3_cpp_obj_initialize (component, application.as<v3_funknown> ());
        v3_cpp_obj_query_interface (component, v3_audio_processor_iid, &processor);
        v3_cpp_obj_query_interface (component, v3_edit_controller_iid, &controller);
        v3_cpp_obj_query_interface (controller, v3_midi_mapping_iid, &mapping);
        v3_cpp_obj_initialize (controller, application.as<v3_funknown> ());
        v3_cpp_obj (controller)->set_component_handler (controller, handler.as<v3_component_handler> ());
        v3_cpp_obj_unref (factory);
    }

    ~Vst3Host () override
    {
        close ();
        v3_cpp_obj_terminate (controller);
        v3_cpp_obj_unref (controller);
        v3_cpp_obj_unref (processor);
        v3_cpp_obj_terminate (component);
        v3_cpp_obj_unref (component);
    }

    void start (double rate, int longest) override
    {
        v3_process_setup setup = { V3_REALTIME, V3_SAMPLE_32, longest, rate };
        v3_cpp_obj (processor)->setup_processing (processor, &setup);
        v3_cpp_obj (component)->set_active (component, true);
    }
    void stop () override { v3_cpp_obj (component)->set_active (component, false); }

    void set (std::int32_t index, double shown) override { addValue (index, shown, 0); }
    double value (std::int32_t index) override
    {
        return v3_cpp_obj (controller)->get_parameter_normalised (controller, idOf (index)) *
               shownHighest (index);
    }

    // Without a list for what comes back, as some hosts.
    void render (std::span<const engine::Event> events, const engine::Transport* song, float* left,
                 float* right, int frames) override
    {
        for (const engine::Event& event : events)
            add (event);
        float* channels[] = { left, right };
        v3_audio_bus_buffers bus = {};
        bus.num_channels = 2;
        bus.channel_buffers_32 = channels;
        v3_process_context context = {};
        if (song != nullptr)
        {
            context.state = V3_PROCESS_CTX_PLAYING | V3_PROCESS_CTX_PROJECT_TIME_VALID |
                            V3_PROCESS_CTX_TEMPO_VALID | V3_PROCESS_CTX_TIME_SIG_VALID;
            context.project_time_in_samples = static_cast<std::int64_t> (song->samplePosition);
            context.project_time_quarters = *song->quarterPosition;
            context.bpm = *song->tempo;
            context.time_sig_numerator = beats;
            context.time_sig_denom = beatType;
        }
        v3_process_data data = {};
        data.symbolic_sample_size = V3_SAMPLE_32;
        data.nframes = frames;
        data.num_output_buses = frames > 0 ? 1 : 0;
        data.outputs = &bus;
        data.input_params = changes.as<v3_param_changes> ();
        data.input_events = notes.as<v3_event_list> ();
        data.ctx = song != nullptr ? &context : nullptr;
        v3_cpp_obj (processor)->process (processor, &data);
        changes.queues.clear ();
        notes.events.clear ();
    }

    std::string save () override
    {
        Stream stream;
        v3_cpp_obj (component)->get_state (component, stream.as<v3_bstream> ());
        return stream.song.bytes;
    }
    void load (const std::string& state) override
    {
        Stream stream;
        stream.song.bytes = state;
        v3_cpp_obj (component)->set_state (component, stream.as<v3_bstream> ());
    }

    bool open (void* window) override
    {
        view = v3_cpp_obj (controller)->create_view (controller, "editor");
        v3_cpp_obj (view)->set_frame (view, frame.as<v3_plugin_frame> ());
        return v3_cpp_obj (view)->attached (view, window, V3_VIEW_PLATFORM_TYPE_NATIVE) == V3_OK;
    }
    std::pair<int, int> size () override
    {
        if (view == nullptr)
            return { 612, 433 };
        v3_view_rect rect;
        v3_cpp_obj (view)->get_size (view, &rect);
        return { rect.right, rect.bottom };
    }
    void turn () override
    {
        if (v3_timer_handler** const timer = frame.loop.timer)
            v3_cpp_obj (timer)->on_timer (timer);
    }
    void close () override
    {
        if (view == nullptr)
            return;
        v3_cpp_obj (view)->removed (view);
        v3_cpp_obj_unref (std::exchange (view, nullptr));
    }

    // What a host does that lists the controllers and hands all values over when a song starts.
    void sendAllControllers ()
    {
        for (v3_param_id id = 0; id < 130; ++id)
            changes.add (id, 0, v3_cpp_obj (controller)->get_parameter_normalised (controller, id));
    }

    v3_edit_controller** controller = nullptr;
    v3_class_info about;

    static v3_param_id idOf (std::int32_t index) { return firstShown + static_cast<v3_param_id> (index); }

private:
    void addValue (std::int32_t index, double shown, int offset)
    {
        changes.add (idOf (index), offset, shown / shownHighest (index));
    }

    void addController (std::int16_t number, int offset, double value)
    {
        v3_param_id id = 0;
        v3_cpp_obj (mapping)->get_midi_controller_assignment (mapping, 0, 5, number, &id);
        changes.add (id, offset, value);
    }

    // Controllers come apart from notes, and the program is a parameter.
    void add (const engine::Event& event)
    {
        v3_event note = {};
        note.sample_offset = event.offset;
        const float value = static_cast<float> (event.data2) / 127.0f;
        if (event.kind == engine::Event::Kind::parameter)
            return addValue (event.index, static_cast<double> (event.value), event.offset);
        switch (event.status & 0xF0)
        {
        case 0x90:
            note.type = V3_EVENT_NOTE_ON;
            note.note_on.pitch = event.data1;
            note.note_on.velocity = value;
            return notes.events.push_back (note);
        case 0x80:
            note.type = V3_EVENT_NOTE_OFF;
            note.note_off.pitch = event.data1;
            return notes.events.push_back (note);
        case 0xB0:
            return addController (event.data1, event.offset, static_cast<double> (value));
        case 0xC0:
            return addValue (shownProgram, event.data1, event.offset);
        case 0xE0:
            return addController (129, event.offset, (event.data1 + 128 * event.data2) / 16383.0);
        default:
            return;
        }
    }

    Application application;
    Handler handler{ edits };
    Frame frame{ *this };
    Changes changes;
    Notes notes;
    platform::SharedLibrary file{ BRIMVALE_FORMAT_LIBRARY };
    v3_component** component = nullptr;
    v3_audio_processor** processor = nullptr;
    v3_midi_mapping** mapping = nullptr;
    v3_plugin_view** view = nullptr;
};
}

std::unique_ptr<FormatHost> makeHost ()
{
    return std::make_unique<Vst3Host> ();
}

TEST (Vst3, ListsTheShownParametersAndOneChannelsControllersHidden)
{
    Vst3Host host;
    EXPECT_EQ (std::string (host.about.class_id, host.about.class_id + 16),
               " FPDsalckrnQ" + std::string (4, '\0'))
        << "songs know it";
    const auto owner = host.controller;
    const auto& controller = *v3_cpp_obj (owner);
    ASSERT_EQ (controller.get_parameter_count (owner), shownCount + 130);
    for (std::int32_t place = 0; place < shownCount + 130; ++place)
    {
        v3_param_info info;
        ASSERT_EQ (controller.get_parameter_info (owner, place, &info), V3_OK);
        const bool isHidden = !isShown (place) || !shownParameter (place).automated;
        EXPECT_EQ ((info.flags & V3_PARAM_IS_HIDDEN) != 0, isHidden) << place;
        if (!isShown (place))
            continue;
        EXPECT_EQ (info.param_id, Vst3Host::idOf (place));
        EXPECT_EQ (info.step_count, std::max (shownParameter (place).positions - 1, 0)) << place;
        EXPECT_EQ (info.default_normalised_value * shownHighest (place), shownDefault (place));
    }

    v3_str_128 text;
    double fraction = 0.0;
    const auto program = Vst3Host::idOf (shownProgram);
    controller.get_parameter_string_for_value (owner, program, 126.0 / 127.0, text);
    EXPECT_EQ (std::u16string (text, text + 17), u"127 Old Telephone");
    EXPECT_EQ (controller.get_parameter_value_for_string (owner, program, text, &fraction), V3_OK);
    EXPECT_EQ (fraction, 126.0 / 127.0);
    std::int16_t nonsense[] = { 'x', 'y', 0 };
    EXPECT_NE (controller.get_parameter_value_for_string (owner, program, nonsense, &fraction), V3_OK);
}

// New instances obey volume and pedal, and always expression: values at rest must not silence or bend them.
TEST (Vst3, ControllersAtRestChangeNothing)
{
    const engine::Event note[] = { noteOn (1) };
    std::vector<float> untouched (1024), sent (1024), right (1024);
    Vst3Host first, second;
    for (const auto& [host, sound] : { std::tie (first, untouched), std::tie (second, sent) })
    {
        host.start (44100.0, 1024);
        host.render ({}, nullptr, right.data (), right.data (), 64);
        if (&host == &second)
            host.sendAllControllers ();
        host.render (note, nullptr, sound.data (), right.data (), 1024);
    }
    EXPECT_EQ (untouched, sent);
    EXPECT_GT (peakOf (untouched), 0.001f);
}
