// VST3's side of the instrument. The framework's objects are used as they are, but for the operations below,
// which take the place of its own: its reading of a block (order, bends, values within a block and without
// frames, song position), its list of parameters and their texts, and its way of keeping songs.
#include <src/DistrhoDefines.h>
#undef DISTRHO_PLUGIN_EXPORT
#define DISTRHO_PLUGIN_EXPORT extern "C" // the list of exports decides, on Windows too
#define GetPluginFactory frameworkFactory
#include <DistrhoPluginMain.cpp> // NOLINT(bugprone-suspicious-include): the framework is compiled within ours
#undef GetPluginFactory

#include <algorithm>
#include <array>
#include <bitset>
#include <cmath>
#include <span>
#include <vector>

#include "formats/dpf/SynthPlugin.h"

namespace dpf
{
namespace
{
constexpr auto noInterface = static_cast<v3_result> (V3_NO_INTERFACE);
constexpr auto invalidArgument = static_cast<v3_result> (V3_INVALID_ARG);
constexpr auto notInitialised = static_cast<v3_result> (V3_NOT_INITIALIZED);

constexpr std::uint8_t noteOff = 0x80, noteOn = 0x90, controller = 0xB0, pitchBend = 0xE0;
constexpr int dataSteps = 128, bendSteps = 128 * 128;
constexpr unsigned dataBits = 7, dataMask = 0x7F;

// MIDI controllers are parameters of VST3, here ahead of the shown ones. The instrument ignores channels, so
// the first channel's serve all.
constexpr std::int32_t controllersPerChannel = 130; // with the two that are no controllers in MIDI:
constexpr std::int32_t bendController = 129;
constexpr std::int32_t firstChannelMode = 120;
constexpr v3_param_id firstShown = DISTRHO::kVst3InternalParameterCount;

// The step of a fraction 0..1. Hosts divide a step by the highest or by the number of steps; what lies in the
// middle of the two finds the step again for both.
int stepOf (double fraction, int steps)
{
    return std::clamp (static_cast<int> (std::lround (fraction * (steps - 0.5))), 0, steps - 1);
}

// Where a controller stands before anybody moves it. Hosts read it as the parameter's value and may send it
// back: a volume of 0 would be silence.
double restingFraction (std::int32_t number)
{
    constexpr std::pair<std::int32_t, double> rests[] = {
        { 7, 100.0 / 127.0 }, // volume
        { 8, 64.0 / 127.0 },  // balance
        { 10, 64.0 / 127.0 }, // pan
        { 11, 1.0 },          // expression
        { 98, 1.0 },          // 98 to 101: no parameter is chosen
        { 99, 1.0 },          { 100, 1.0 }, { 101, 1.0 }, { bendController, 0.5 },
    };
    const auto* found = std::ranges::find (rests, number, &std::pair<std::int32_t, double>::first);
    return found != std::end (rests) ? found->second : 0.0;
}

bool isShownId (v3_param_id id)
{
    return id >= firstShown && formats::isShown (static_cast<std::int32_t> (id - firstShown));
}

class Vst3Plugin final : public SynthPlugin
{
public:
    // The framework's own ways to a value; blocks and states bring all of them.
    void setParameterValue (std::uint32_t /*index*/, float /*value*/) override {}

    // Gathers what the next run plays. Without frames values count at once, the rest waits for the next
    // block.
    void take (const v3_process_data& data)
    {
        if (v3_event_list** const list = data.input_events)
        {
            v3_event event;
            const auto count = static_cast<std::int32_t> (v3_cpp_obj (list)->get_event_count (list));
            for (std::int32_t n = 0; n < count; ++n)
            {
                if (v3_cpp_obj (list)->get_event (list, n, &event) == V3_OK)
                    takeNote (event);
            }
        }
        if (v3_param_changes** const changes = data.input_params)
        {
            const std::int32_t count = v3_cpp_obj (changes)->get_param_count (changes);
            for (std::int32_t n = 0; n < count; ++n)
            {
                if (v3_param_value_queue** const queue = v3_cpp_obj (changes)->get_param_data (changes, n))
                    takeQueue (queue, data.nframes > 0);
            }
        }
        events.sortFor (data.nframes);
        position = data.ctx != nullptr ? std::optional (positionFrom (*data.ctx)) : std::nullopt;
    }

private:
    std::optional<engine::Transport> transport () override { return position; }
    bool tellHost (std::uint32_t index, float value) override
    {
        return requestParameterValueChange (index, value);
    }

    static engine::Transport positionFrom (const v3_process_context& context)
    {
        engine::Transport now;
        now.samplePosition = static_cast<double> (context.project_time_in_samples);
        if ((context.state & V3_PROCESS_CTX_TEMPO_VALID) != 0)
            now.tempo = context.bpm;
        if ((context.state & V3_PROCESS_CTX_PROJECT_TIME_VALID) != 0)
            now.quarterPosition = context.project_time_quarters;
        return now;
    }

    void takeNote (const v3_event& event)
    {
        if (event.type == V3_EVENT_NOTE_ON)
        {
            // However soft, it must not end a note.
            const int velocity = stepOf (static_cast<double> (event.note_on.velocity), dataSteps);
            const bool sounds = event.note_on.velocity > 0.0f;
            addNote (event.sample_offset, noteOn, event.note_on.pitch, sounds ? std::max (velocity, 1) : 0);
        }
        else if (event.type == V3_EVENT_NOTE_OFF)
        {
            addNote (event.sample_offset, noteOff, event.note_off.pitch, 0);
        }
    }

    void addNote (std::int32_t offset, std::uint8_t status, std::int16_t pitch, int velocity)
    {
        if (pitch >= 0 && pitch < dataSteps)
            events.addMidi (offset, status, static_cast<std::uint8_t> (pitch),
                            static_cast<std::uint8_t> (velocity));
    }

    void takeQueue (v3_param_value_queue** queue, bool hasFrames)
    {
        const v3_param_id id = v3_cpp_obj (queue)->get_param_id (queue);
        const std::int32_t points = v3_cpp_obj (queue)->get_point_count (queue);
        for (std::int32_t n = 0; n < points; ++n)
        {
            std::int32_t offset = 0;
            double fraction = 0.0;
            if (v3_cpp_obj (queue)->get_point (queue, n, &offset, &fraction) != V3_OK)
                return;
            if (isShownId (id))
                takeValue (id - firstShown, offset, fraction, hasFrames);
            else if (id < firstShown)
                takeController (static_cast<std::int32_t> (id) % controllersPerChannel, offset, fraction);
        }
    }

    void takeValue (std::uint32_t index, std::int32_t offset, double fraction, bool hasFrames)
    {
        const auto shown = static_cast<std::int32_t> (index);
        const auto value =
            static_cast<float> (formats::shownLimited (shown, fraction * formats::shownHighest (shown)));
        if (!hasFrames)
        {
            takeFromHost (index, value);
            return;
        }
        if (!isHeld (index))
            events.addValue (offset, shown, value);
        setKnown (index, value);
    }

    // Hosts send all values that they list when a song starts: what a controller that nobody has moved yet
    // stands at is no news.
    void takeController (std::int32_t number, std::int32_t offset, double fraction)
    {
        const int step = stepOf (fraction, number == bendController ? bendSteps : dataSteps);
        const auto place = static_cast<std::size_t> (number);
        if (!moved[place] && number < firstChannelMode &&
            step == stepOf (restingFraction (number), dataSteps))
            return;
        moved.set (place);
        if (number == bendController)
        {
            const auto bend = static_cast<unsigned> (step);
            events.addMidi (offset, pitchBend, static_cast<std::uint8_t> (bend & dataMask),
                            static_cast<std::uint8_t> (bend >> dataBits));
        }
        else if (number < dataSteps)
        {
            events.addMidi (offset, controller, static_cast<std::uint8_t> (number),
                            static_cast<std::uint8_t> (step));
        }
    }

    std::optional<engine::Transport> position;
    std::bitset<controllersPerChannel> moved; // controllers
};

Vst3Plugin& pluginOf (const DISTRHO::PluginVst3& framework)
{
    return static_cast<Vst3Plugin&> (*static_cast<DISTRHO::Plugin*> (framework.getInstancePointer ()));
}

// --- Blocks

// Takes what is told to a host that does not listen. The framework would complain, with every block and on
// the audio thread.
struct DeafQueue : v3_param_value_queue_cpp
{
    DeafQueue ()
    {
        query_interface = [] (void*, const v3_tuid, void**) -> v3_result { return noInterface; };
        ref = unref = [] (void*) -> std::uint32_t { return 1; };
        queue.get_param_id = [] (void*) -> v3_param_id { return 0; };
        queue.get_point_count = [] (void*) -> std::int32_t { return 0; };
        queue.get_point = [] (void*, std::int32_t, std::int32_t*, double*) -> v3_result
        { return invalidArgument; };
        queue.add_point = [] (void*, std::int32_t, double, std::int32_t*) -> v3_result { return V3_OK; };
    }
};

struct DeafHost : v3_param_changes_cpp
{
    DeafHost ()
    {
        query_interface = [] (void*, const v3_tuid, void**) -> v3_result { return noInterface; };
        ref = unref = [] (void*) -> std::uint32_t { return 1; };
        changes.get_param_count = [] (void*) -> std::int32_t { return 0; };
        changes.get_param_data = [] (void*, std::int32_t) -> v3_param_value_queue** { return nullptr; };
        changes.add_param_data = [] (void*, v3_param_id*, std::int32_t*)
        { return reinterpret_cast<v3_param_value_queue**> (&deafQueue); };
    }

    static inline DeafQueue queueObject;
    static inline DeafQueue* deafQueue = &queueObject;
};
DeafHost deafHostObject;
DeafHost* deafHost = &deafHostObject;

v3_result V3_API process (void* self, v3_process_data* data)
{
    DISTRHO::PluginVst3* const framework = (*static_cast<DISTRHO::dpf_audio_processor**> (self))->vst3;
    if (framework == nullptr)
        return notInitialised;
    pluginOf (*framework).take (*data);
    v3_process_data rest = *data;
    rest.input_events = nullptr;
    rest.input_params = nullptr;
    rest.ctx = nullptr;
    if (rest.output_params == nullptr)
        rest.output_params = reinterpret_cast<v3_param_changes**> (&deafHost);
    return framework->process (&rest);
}

// --- Parameters

DISTRHO::PluginVst3* frameworkOf (void* editController)
{
    return (*static_cast<DISTRHO::dpf_edit_controller**> (editController))->vst3;
}

// The shown ones and, behind them and hidden, those of one channel; the framework lists 16.
std::int32_t V3_API getParameterCount (void* /*self*/)
{
    return formats::shownCount + controllersPerChannel;
}

v3_result V3_API getParameterInfo (void* self, std::int32_t place, v3_param_info* info)
{
    const DISTRHO::PluginVst3* const framework = frameworkOf (self);
    if (framework == nullptr || place < 0 || place >= getParameterCount (self))
        return invalidArgument;
    if (!formats::isShown (place))
    {
        const v3_result controllers = framework->getParameterInfo (place - formats::shownCount, info);
        info->default_normalised_value = restingFraction (place - formats::shownCount);
        return controllers;
    }
    const v3_result result =
        framework->getParameterInfo (static_cast<std::int32_t> (firstShown) + place, info);
    const auto& row = formats::shownParameter (place);
    info->flags = row.automated ? V3_PARAM_CAN_AUTOMATE : V3_PARAM_IS_HIDDEN;
    if (row.positions > 2)
        info->flags |= V3_PARAM_IS_LIST;
    return result;
}

v3_result V3_API getText (void* self, v3_param_id id, double fraction, v3_str_128 text)
{
    DISTRHO::PluginVst3* const framework = frameworkOf (self);
    if (framework == nullptr)
        return notInitialised;
    if (!isShownId (id))
        return framework->getParameterStringForValue (id, fraction, text);
    const auto index = static_cast<std::int32_t> (id - firstShown);
    const std::string shown =
        pluginOf (*framework).hosted ().text (index, fraction * formats::shownHighest (index));
    DISTRHO::strncpy_utf16 (text, shown.c_str (), std::size (v3_str_128{}));
    return V3_OK;
}

v3_result V3_API getValueOfText (void* self, v3_param_id id, std::int16_t* text, double* fraction)
{
    DISTRHO::PluginVst3* const framework = frameworkOf (self);
    if (framework == nullptr || !isShownId (id))
        return invalidArgument;
    const auto index = static_cast<std::int32_t> (id - firstShown);
    const DISTRHO::ScopedUTF8String typed (text);
    const auto value = pluginOf (*framework).hosted ().valueOf (index, static_cast<const char*> (typed));
    if (!value)
        return V3_FALSE;
    *fraction = *value / formats::shownHighest (index);
    return V3_OK;
}

// What counts now; of a controller, where it rests.
double V3_API getNormalised (void* self, v3_param_id id)
{
    const DISTRHO::PluginVst3* const framework = frameworkOf (self);
    if (framework == nullptr)
        return 0.0;
    if (!isShownId (id))
        return restingFraction (static_cast<std::int32_t> (id) % controllersPerChannel);
    const auto index = static_cast<std::int32_t> (id - firstShown);
    return pluginOf (*framework).hosted ().value (index) / formats::shownHighest (index);
}

// Blocks bring the values.
v3_result V3_API setNormalised (void* /*self*/, v3_param_id /*id*/, double /*fraction*/)
{
    return V3_OK;
}

v3_result V3_API getControllerParameter (void* /*self*/, std::int32_t bus, std::int16_t channel,
                                         std::int16_t number, v3_param_id* id)
{
    if (bus != 0 || channel < 0 || number < 0 || number >= controllersPerChannel)
        return V3_FALSE;
    *id = static_cast<v3_param_id> (number);
    return V3_TRUE;
}

// --- Songs

// The state that all formats share, and nothing around it. The framework's own way through text fails on
// hosts that take or give a song in pieces.
v3_result V3_API saveSong (void* self, v3_bstream** stream)
{
    DISTRHO::PluginVst3* const framework = (*static_cast<DISTRHO::dpf_component**> (self))->vst3;
    if (framework == nullptr)
        return notInitialised;
    std::vector<std::byte> state = pluginOf (*framework).hosted ().saveState ();
    std::span<std::byte> rest = state;
    while (!rest.empty ())
    {
        std::int32_t written = 0;
        v3_cpp_obj (stream)->write (stream, rest.data (), static_cast<std::int32_t> (rest.size ()), &written);
        if (written <= 0)
            return V3_FALSE;
        rest = rest.subspan (std::min (static_cast<std::size_t> (written), rest.size ()));
    }
    return V3_OK;
}

v3_result V3_API loadSong (void* self, v3_bstream** stream)
{
    constexpr std::size_t mostBytes = 1 << 20; // far more than a state has
    const DISTRHO::dpf_component& component = **static_cast<DISTRHO::dpf_component**> (self);
    const DISTRHO::PluginVst3* const framework = component.vst3;
    if (framework == nullptr)
        return notInitialised;
    std::vector<std::byte> state;
    std::array<std::byte, 4096> piece;
    for (std::int32_t read = 1; read > 0 && state.size () < mostBytes;)
    {
        read = 0;
        v3_cpp_obj (stream)->read (stream, piece.data (), static_cast<std::int32_t> (piece.size ()), &read);
        state.insert (state.end (), piece.begin (),
                      piece.begin () + std::clamp<std::int32_t> (read, 0, piece.size ()));
    }
    if (!pluginOf (*framework).hosted ().loadState (state))
        return V3_FALSE;
    const DISTRHO::dpf_edit_controller* const controllerSide = component.controller;
    if (controllerSide != nullptr && controllerSide->handler != nullptr)
        v3_cpp_obj (controllerSide->handler)
            ->restart_component (controllerSide->handler, V3_RESTART_PARAM_VALUES_CHANGED);
    return V3_OK;
}

// --- Objects, of which those operations become part before a host sees them

void mendMapping (void* object)
{
    (*static_cast<DISTRHO::dpf_midi_mapping**> (object))->map.get_midi_controller_assignment =
        getControllerParameter;
}

v3_result V3_API queryController (void* self, const v3_tuid id, void** found)
{
    const v3_result result = DISTRHO::dpf_edit_controller::query_interface_edit_controller (self, id, found);
    if (result == V3_OK && v3_tuid_match (id, v3_midi_mapping_iid))
        mendMapping (*found);
    return result;
}

void mendController (void* object)
{
    DISTRHO::dpf_edit_controller& mended = **static_cast<DISTRHO::dpf_edit_controller**> (object);
    mended.query_interface = queryController;
    mended.ctrl.get_parameter_count = getParameterCount;
    mended.ctrl.get_parameter_info = getParameterInfo;
    mended.ctrl.get_parameter_string_for_value = getText;
    mended.ctrl.get_parameter_value_for_string = getValueOfText;
    mended.ctrl.get_parameter_normalised = getNormalised;
    mended.ctrl.set_parameter_normalised = setNormalised;
}

v3_result V3_API queryComponent (void* self, const v3_tuid id, void** found)
{
    const v3_result result = DISTRHO::dpf_component::query_interface_component (self, id, found);
    if (result != V3_OK)
        return result;
    if (v3_tuid_match (id, v3_audio_processor_iid))
        (*static_cast<DISTRHO::dpf_audio_processor**> (*found))->proc.process = process;
    else if (v3_tuid_match (id, v3_edit_controller_iid))
        mendController (*found);
    else if (v3_tuid_match (id, v3_midi_mapping_iid))
        mendMapping (*found);
    return result;
}

v3_result V3_API createInstance (void* self, const v3_tuid classId, const v3_tuid id, void** made)
{
    const v3_result result = DISTRHO::dpf_factory::create_instance (self, classId, id, made);
    if (result != V3_OK)
        return result;
    DISTRHO::dpf_component& mended = **static_cast<DISTRHO::dpf_component**> (*made);
    mended.query_interface = queryComponent;
    mended.comp.get_state = saveSong;
    mended.comp.set_state = loadSong;
    return V3_OK;
}
}
}

DISTRHO::Plugin* DISTRHO::createPlugin ()
{
    return new dpf::Vst3Plugin;
}

extern "C" const void* GetPluginFactory ()
{
    const void* const factory = frameworkFactory ();
    (*static_cast<DISTRHO::dpf_factory* const*> (factory))->v1.create_instance = dpf::createInstance;
    return factory;
}
