#include "formats/clap/Extensions.h"

#include <algorithm>
#include <cstdio>
#include <iterator>
#include <string_view>

#include <clap/ext/audio-ports.h>
#include <clap/ext/latency.h>
#include <clap/ext/note-ports.h>
#include <clap/ext/state.h>

#include "formats/clap/Plugin.h"

namespace clap
{
using namespace formats;

namespace
{
template <std::size_t size>
void copyTo (char (&field)[size], const std::string& text)
{
    std::snprintf (field, size, "%s", text.c_str ());
}

// --- One stereo output, one input for notes

const clap_plugin_audio_ports_t audioPorts = {
    .count = [] (const clap_plugin_t*, bool isInput) -> std::uint32_t { return isInput ? 0 : 1; },
    .get =
        [] (const clap_plugin_t*, std::uint32_t index, bool isInput, clap_audio_port_info_t* info)
    {
        if (isInput || index != 0)
            return false;
        *info = {};
        copyTo (info->name, "Output");
        info->flags = CLAP_AUDIO_PORT_IS_MAIN;
        info->channel_count = 2;
        info->port_type = CLAP_PORT_STEREO;
        info->in_place_pair = CLAP_INVALID_ID;
        return true;
    },
};

// Hosts shall prefer MIDI: then they send bends and controllers as such and not as note expressions.
const clap_plugin_note_ports_t notePorts = {
    .count = [] (const clap_plugin_t*, bool isInput) -> std::uint32_t { return isInput ? 1 : 0; },
    .get =
        [] (const clap_plugin_t*, std::uint32_t index, bool isInput, clap_note_port_info_t* info)
    {
        if (!isInput || index != 0)
            return false;
        *info = {};
        copyTo (info->name, "Notes");
        info->supported_dialects = CLAP_NOTE_DIALECT_CLAP | CLAP_NOTE_DIALECT_MIDI;
        info->preferred_dialect = CLAP_NOTE_DIALECT_MIDI;
        return true;
    },
};

const clap_plugin_latency_t latency = { .get = [] (const clap_plugin_t*) -> std::uint32_t { return 0; } };

// --- Parameters: the index is the id

bool isKnown (clap_id id)
{
    return id < static_cast<clap_id> (shownCount);
}

clap_param_info_flags flagsOf (std::int32_t index)
{
    const ShownParameter& parameter = shownParameter (index);
    const clap_param_info_flags steps = parameter.positions != 0 ? CLAP_PARAM_IS_STEPPED : 0;
    return steps | (parameter.automated ? CLAP_PARAM_IS_AUTOMATABLE : CLAP_PARAM_IS_HIDDEN);
}

const clap_plugin_params_t params = {
    .count = [] (const clap_plugin_t*) -> std::uint32_t { return shownCount; },
    .get_info =
        [] (const clap_plugin_t*, std::uint32_t number, clap_param_info_t* info)
    {
        if (!isKnown (number))
            return false;
        const auto index = static_cast<std::int32_t> (number);
        *info = {};
        info->id = number;
        info->flags = flagsOf (index);
        copyTo (info->name, shownName (index));
        copyTo (info->module, shownParameter (index).group);
        info->max_value = shownHighest (index);
        info->default_value = shownDefault (index);
        return true;
    },
    .get_value =
        [] (const clap_plugin_t* plugin, clap_id id, double* value)
    {
        if (isKnown (id))
            *value = Plugin::of (plugin).instrument ().value (static_cast<std::int32_t> (id));
        return isKnown (id);
    },
    .value_to_text =
        [] (const clap_plugin_t* plugin, clap_id id, double value, char* display, std::uint32_t size)
    {
        if (!isKnown (id) || size == 0)
            return false;
        const auto text = Plugin::of (plugin).instrument ().text (static_cast<std::int32_t> (id), value);
        std::snprintf (display, size, "%s", text.c_str ());
        return true;
    },
    .text_to_value =
        [] (const clap_plugin_t* plugin, clap_id id, const char* display, double* value)
    {
        if (!isKnown (id) || display == nullptr)
            return false;
        const auto found =
            Plugin::of (plugin).instrument ().valueOf (static_cast<std::int32_t> (id), display);
        *value = found.value_or (*value);
        return found.has_value ();
    },
    .flush = [] (const clap_plugin_t* plugin, const clap_input_events_t* in, const clap_output_events_t* out)
    { Plugin::of (plugin).flush (in, out); },
};

const clap_plugin_state_t state = {
    .save = [] (const clap_plugin_t* plugin, const clap_ostream_t* stream)
    { return Plugin::of (plugin).saveState (*stream); },
    .load = [] (const clap_plugin_t* plugin, const clap_istream_t* stream)
    { return Plugin::of (plugin).loadState (*stream); },
};

// --- The panel. Its size is its zoom's, which its own menu changes; no dragging.

Gui& guiOf (const clap_plugin_t* plugin)
{
    return *Plugin::of (plugin).gui ();
}

// A floating window belongs to nobody, so hosts need not name what it is made of.
bool isOurs (const char* api, bool isFloating)
{
    const std::string_view named = api != nullptr ? api : "";
    return named == windowApi () || (isFloating && named.empty ());
}

bool isOurs (const clap_window_t* window)
{
    return window != nullptr && isOurs (window->api, false);
}

const clap_plugin_gui_t gui = {
    .is_api_supported = [] (const clap_plugin_t*, const char* api, bool isFloating)
    { return isOurs (api, isFloating); },
    .get_preferred_api =
        [] (const clap_plugin_t*, const char** api, bool* isFloating)
    {
        *api = windowApi ();
        *isFloating = false;
        return true;
    },
    .create = [] (const clap_plugin_t* plugin, const char* api, bool isFloating)
    { return isOurs (api, isFloating) && guiOf (plugin).create (isFloating); },
    .destroy = [] (const clap_plugin_t* plugin) { guiOf (plugin).destroy (); },
    .set_scale = [] (const clap_plugin_t* plugin, double scale) { return guiOf (plugin).setScale (scale); },
    .get_size = [] (const clap_plugin_t* plugin, std::uint32_t* width, std::uint32_t* height)
    { return guiOf (plugin).size (*width, *height); },
    .can_resize = [] (const clap_plugin_t*) { return false; },
    .get_resize_hints =
        [] (const clap_plugin_t*, clap_gui_resize_hints_t* hints)
    {
        *hints = {};
        return true;
    },
    .adjust_size = [] (const clap_plugin_t* plugin, std::uint32_t* width, std::uint32_t* height)
    { return guiOf (plugin).size (*width, *height); },
    .set_size =
        [] (const clap_plugin_t* plugin, std::uint32_t width, std::uint32_t height)
    {
        std::uint32_t ownWidth = 0;
        std::uint32_t ownHeight = 0;
        return guiOf (plugin).size (ownWidth, ownHeight) && width == ownWidth && height == ownHeight;
    },
    .set_parent = [] (const clap_plugin_t* plugin, const clap_window_t* window)
    { return isOurs (window) && guiOf (plugin).setParent (window->ptr); },
    .set_transient = [] (const clap_plugin_t* plugin, const clap_window_t* window)
    { return isOurs (window) && guiOf (plugin).setTransient (window->ptr); },
    .suggest_title = [] (const clap_plugin_t* plugin, const char* title)
    { guiOf (plugin).suggestTitle (title); },
    .show = [] (const clap_plugin_t* plugin) { return guiOf (plugin).show (); },
    .hide = [] (const clap_plugin_t* plugin) { return guiOf (plugin).hide (); },
};

const clap_plugin_timer_support_t timer = { .on_timer = [] (const clap_plugin_t* plugin, clap_id id)
                                            { guiOf (plugin).timerCalls (id); } };

struct Row
{
    std::string_view id;
    const void* table;
    bool ofGui;
};
const Row rows[] = {
    { CLAP_EXT_AUDIO_PORTS, &audioPorts, false },
    { CLAP_EXT_NOTE_PORTS, &notePorts, false },
    { CLAP_EXT_LATENCY, &latency, false },
    { CLAP_EXT_PARAMS, &params, false },
    { CLAP_EXT_STATE, &state, false },
    { CLAP_EXT_GUI, &gui, true },
    { CLAP_EXT_TIMER_SUPPORT, &timer, true },
};
}

const void* extension (const char* id, bool hasGui)
{
    const auto* found = std::ranges::find (rows, std::string_view (id != nullptr ? id : ""), &Row::id);
    return found != std::end (rows) && (hasGui || !found->ofGui) ? found->table : nullptr;
}
}
