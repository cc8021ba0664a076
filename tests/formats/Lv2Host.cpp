// The instrument in LV2.
#include "tests/formats/FormatHost.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <map>
#include <utility>

#include <gtest/gtest.h>
#include <lv2/atom/forge.h>
#include <lv2/buf-size/buf-size.h>
#include <lv2/control-input-port-change-request.h>
#include <lv2/data-access/data-access.h>
#include <lv2/instance-access/instance-access.h>
#include <lv2/midi/midi.h>
#include <lv2/options/options.h>
#include <lv2/parameters/parameters.h>
#include <lv2/state/state.h>
#include <lv2/time/time.h>
#include <lv2/ui/ui.h>
#include <lv2/urid/urid.h>
#include <lv2/worker/worker.h>

#include "formats/dpf/Base64.h"
#include "formats/shared/ShownParameters.h"
#include "platform/SharedLibrary.h"
#include "tests/formats/Lv2Instance.h"
#include "tests/support/Events.h"
#include "tests/support/Signals.h"

namespace
{
constexpr std::uint32_t eventsIn = 2, eventsOut = 3, firstControl = firstLv2Control,
                        controls = formats::shownCount;

// One that is known is found without an allocation.
LV2_URID number (std::string_view uri)
{
    static std::map<std::string, LV2_URID, std::less<>> numbers;
    const auto known = numbers.find (uri);
    return known != numbers.end ()
               ? known->second
               : numbers.emplace (uri, static_cast<LV2_URID> (numbers.size () + 1)).first->second;
}

class Lv2Host final : public FormatHost
{
public:
    Lv2Host ()
    {
        std::copy_n (made.defaults.begin () + firstControl, controls, ports.begin ());
        connect (eventsIn, events.data ());
        connect (eventsOut, answers.data ());
        for (std::uint32_t index = 0; index < controls; ++index)
            connect (firstControl + index, &ports[index]);
        lv2_atom_forge_init (&forge, &map);
        startEvents ();
    }

    ~Lv2Host () override { close (); }

    void start (double /*rate*/, int /*longest*/) override { made.descriptor->activate (made.handle); }
    void stop () override { made.descriptor->deactivate (made.handle); }

    void set (std::int32_t index, double shown) override { port (index) = static_cast<float> (shown); }
    double value (std::int32_t index) override { return static_cast<double> (port (index)); }

    // Ports have one value in a block.
    void render (std::span<const engine::Event> given, const engine::Transport* song, float* left,
                 float* right, int frames) override
    {
        if (song != nullptr)
            add (*song);
        const auto addMidi = [this] (const engine::Event& event, int offset)
        {
            const std::uint8_t bytes[] = { event.status, event.data1, event.data2 };
            lv2_atom_forge_frame_time (&forge, offset);
            lv2_atom_forge_atom (&forge, sizeof bytes, number (LV2_MIDI__MidiEvent));
            lv2_atom_forge_write (&forge, bytes, sizeof bytes);
        };
        const auto setPort = [this] (std::int32_t index, double shown) { set (index, shown); };
        inPieces (given, frames, addMidi, setPort,
                  [&] (int begin, int end)
                  {
                      lv2_atom_forge_pop (&forge, &sequence);
                      connect (0, left + begin);
                      connect (1, right + begin);
                      *reinterpret_cast<LV2_Atom*> (answers.data ()) = { sizeof answers - sizeof (LV2_Atom),
                                                                         number (LV2_ATOM__Chunk) };
                      made.descriptor->run (made.handle, static_cast<std::uint32_t> (end - begin));
                      startEvents ();
                  });
    }

    std::string save () override
    {
        std::string text;
        stateInterface ().save (
            made.handle,
            [] (LV2_State_Handle handle, std::uint32_t, const void* value, std::size_t, std::uint32_t,
                std::uint32_t)
            {
                *static_cast<std::string*> (handle) = static_cast<const char*> (value);
                return LV2_STATE_SUCCESS;
            },
            &text, 0, features.data ());
        return text;
    }

    void load (const std::string& state) override
    {
        stateInterface ().restore (
            made.handle,
            [] (LV2_State_Handle handle, std::uint32_t, std::size_t* size, std::uint32_t* type,
                std::uint32_t* flags) -> const void*
            {
                const auto& text = *static_cast<const std::string*> (handle);
                *size = text.size () + 1;
                *type = number (LV2_ATOM__String);
                *flags = LV2_STATE_IS_POD;
                return text.c_str ();
            },
            const_cast<std::string*> (&state), 0, features.data ());
    }

    bool open (void* window) override
    {
        LV2_Extension_Data_Feature data = { made.descriptor->extension_data };
        resizing = { this, [] (LV2UI_Feature_Handle handle, int width, int height)
                     {
                         auto& host = *static_cast<Lv2Host*> (handle);
                         host.resized (width, height);
                         host.shownSize = { width, height };
                         return 0;
                     } };
        touching = { this, [] (LV2UI_Feature_Handle handle, std::uint32_t port, bool grabbed)
                     { static_cast<Lv2Host*> (handle)->note (grabbed ? "begin " : "end ", port); } };
        const LV2_Feature own[] = { { LV2_UI__parent, window },
                                    { LV2_INSTANCE_ACCESS_URI, made.handle },
                                    { LV2_DATA_ACCESS_URI, &data },
                                    { LV2_UI__resize, &resizing },
                                    { LV2_UI__touch, &touching } };
        const LV2_Feature* const all[] = { &mapFeature, &optionsFeature, &own[0], &own[1],
                                           &own[2],     &own[3],         &own[4], nullptr };
        using Entry = const LV2UI_Descriptor* (*)(std::uint32_t);
        panel = reinterpret_cast<Entry> (file.symbol ("lv2ui_descriptor")) (0);
        LV2UI_Widget widget = nullptr;
        ui = panel->instantiate (
            panel, made.descriptor->URI, BRIMVALE_LV2_BUNDLE,
            [] (LV2UI_Controller handle, std::uint32_t port, std::uint32_t size, std::uint32_t format,
                const void* value)
            {
                if (format != 0 || size != sizeof (float))
                    return;
                auto& host = *static_cast<Lv2Host*> (handle);
                std::memcpy (&host.ports[port - firstControl], value, size);
                host.note ("set ", port);
            },
            this, &widget, all);
        return ui != nullptr && widget != nullptr;
    }

    std::pair<int, int> size () override { return shownSize; }
    void turn () override
    {
        static_cast<const LV2UI_Idle_Interface*> (panel->extension_data (LV2_UI__idleInterface))->idle (ui);
    }

    void close () override
    {
        if (ui != nullptr)
            panel->cleanup (std::exchange (ui, nullptr));
        shownSize = unscaled;
    }

    std::string songOf (std::span<const std::byte> state) const override { return dpf::toBase64 (state); }
    std::vector<std::byte> stateOf (const std::string& song) const override
    {
        return dpf::fromBase64 (song.substr (0, song.find ('.'))).value ();
    }

private:
    const LV2_State_Interface& stateInterface () const
    {
        return *static_cast<const LV2_State_Interface*> (
            made.descriptor->extension_data (LV2_STATE__interface));
    }

    void connect (std::uint32_t index, void* data)
    {
        made.descriptor->connect_port (made.handle, index, data);
    }

    float& port (std::int32_t index) { return ports[static_cast<std::size_t> (index)]; }

    void add (const engine::Transport& song)
    {
        const double position = *song.quarterPosition * beatType / 4.0; // beats
        const double bar = std::floor (position / beats);
        const std::pair<const char*, double> values[] = { { LV2_TIME__frame, song.samplePosition },
                                                          { LV2_TIME__speed, 1.0 },
                                                          { LV2_TIME__bar, bar },
                                                          { LV2_TIME__barBeat, position - bar * beats },
                                                          { LV2_TIME__beatUnit, beatType },
                                                          { LV2_TIME__beatsPerBar, beats },
                                                          { LV2_TIME__beatsPerMinute,
                                                            *song.tempo * beatType / 4.0 } };
        LV2_Atom_Forge_Frame object;
        lv2_atom_forge_frame_time (&forge, 0);
        lv2_atom_forge_object (&forge, &object, 0, number (LV2_TIME__Position));
        for (const auto& [uri, value] : values)
        {
            lv2_atom_forge_key (&forge, number (uri));
            lv2_atom_forge_double (&forge, value);
        }
        lv2_atom_forge_pop (&forge, &object);
    }

    void startEvents ()
    {
        lv2_atom_forge_set_buffer (&forge, events.data (), events.size ());
        lv2_atom_forge_sequence_head (&forge, &sequence, 0);
    }

    void note (const char* what, std::uint32_t port)
    {
        edits += what + std::to_string (port - firstControl) + ";";
    }

    platform::SharedLibrary file{ BRIMVALE_FORMAT_LIBRARY };
    std::array<float, controls> ports;
    alignas (8) std::array<std::uint8_t, 65536> events;
    alignas (8) std::array<std::uint8_t, 65536> answers;
    LV2_Atom_Forge forge;
    LV2_Atom_Forge_Frame sequence;

    LV2_URID_Map map = { nullptr, [] (void*, const char* uri) { return number (uri); } };
    LV2_Worker_Schedule worker = { nullptr, [] (LV2_Worker_Schedule_Handle, std::uint32_t, const void*)
                                   { return LV2_WORKER_ERR_UNKNOWN; } };
    std::int32_t longest = longestBlock;
    std::array<LV2_Options_Option, 2> options = { { { LV2_OPTIONS_INSTANCE, 0,
                                                      number (LV2_BUF_SIZE__maxBlockLength), sizeof longest,
                                                      number (LV2_ATOM__Int), &longest } } };
    LV2_Feature mapFeature = { LV2_URID__map, &map };
    LV2_Feature workerFeature = { LV2_WORKER__schedule, &worker };
    LV2_Feature optionsFeature = { LV2_OPTIONS__options, options.data () };
    // Not known to every host; the one that has it is told of programs that MIDI chooses.
    LV2_ControlInputPort_Change_Request requests = { this, [] (void* handle, std::uint32_t port, float value)
                                                     {
                                                         auto& host = *static_cast<Lv2Host*> (handle);
                                                         if (!host.hearsChanges)
                                                             return LV2_CONTROL_INPUT_PORT_CHANGE_ERR_UNKNOWN;
                                                         host.ports[port - firstControl] = value;
                                                         return LV2_CONTROL_INPUT_PORT_CHANGE_SUCCESS;
                                                     } };
    LV2_Feature requestFeature = { LV2_CONTROL_INPUT_PORT_CHANGE_REQUEST_URI, &requests };
    std::array<const LV2_Feature*, 5> features = { &mapFeature, &workerFeature, &optionsFeature,
                                                   &requestFeature, nullptr };
    Lv2Instance made = makeLv2Instance (features.data ());
    LV2UI_Resize resizing;
    LV2UI_Touch touching;

    static constexpr std::pair<int, int> unscaled = { 612, 433 };
    std::pair<int, int> shownSize = unscaled;
    const LV2UI_Descriptor* panel = nullptr;
    LV2UI_Handle ui = nullptr;
};
}

std::unique_ptr<FormatHost> makeHost ()
{
    return std::make_unique<Lv2Host> ();
}

// Told its place once, the instrument counts on by itself; bars begin where they do.
TEST (Lv2, ASongThatTellsItsPlaceOnceKeepsTime)
{
    constexpr int frames = 1000;
    const std::array note = { noteOn (0, 50) };
    std::array<std::vector<float>, 2> sounds;
    for (const bool once : { false, true })
    {
        Lv2Host host;
        host.start (44100.0, frames);
        host.set (parameters::paramLfoBmpSync, 1);
        host.set (parameters::paramLfoFilter, 1);
        host.set (parameters::paramFilterFreq, 0.4);
        host.set (parameters::paramLfoRate, 0.3);
        std::vector<float>& sound = sounds[once];
        sound.resize (std::size_t{ 160 } * frames);
        std::vector<float> right (frames);
        for (std::size_t begin = 0; begin < sound.size (); begin += frames)
        {
            const auto place = static_cast<double> (begin);
            const engine::Transport song = { place, 133.0, place / 44100.0 * 133.0 / 60.0 };
            const bool isFirst = begin == 0;
            host.render (std::span (note).first (isFirst ? 1 : 0), isFirst || !once ? &song : nullptr,
                         sound.data () + begin, right.data (), frames);
        }
    }
    for (std::size_t n = 0; n < sounds[0].size (); ++n)
        ASSERT_NEAR (sounds[0][n], sounds[1][n], 1e-3f) << n;
    EXPECT_GT (peakOf (sounds[0]), 0.05f);
}
