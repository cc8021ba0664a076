#pragma once

// What the framework wants to know while it is compiled. It looks for this file by this name, and for macros.

#define DISTRHO_PLUGIN_NAME "Brimvale"
#define DISTRHO_PLUGIN_URI "https://corvanex.com/brimvale" // songs know the instrument by it: for ever
#define DISTRHO_UI_URI DISTRHO_PLUGIN_URI "#panel"
#define DISTRHO_PLUGIN_NUM_INPUTS 0
#define DISTRHO_PLUGIN_NUM_OUTPUTS 2
#define DISTRHO_PLUGIN_IS_SYNTH 1
#define DISTRHO_PLUGIN_IS_RT_SAFE 1
#define DISTRHO_PLUGIN_LV2_CATEGORY "lv2:InstrumentPlugin"
#define DISTRHO_PLUGIN_VST3_CATEGORIES "Instrument|Synth"

// The panel is drawn by another toolkit than the framework's, in a window inside the host's.
#define DISTRHO_PLUGIN_HAS_UI 1
#define DISTRHO_PLUGIN_HAS_EXTERNAL_UI 1
#define DISTRHO_PLUGIN_HAS_EMBED_UI 1
#define DISTRHO_PLUGIN_WANT_DIRECT_ACCESS 1

// The framework's programs would put the whole bank into each of 128 presets; a parameter chooses instead.
#define DISTRHO_PLUGIN_WANT_PROGRAMS 0
#define DISTRHO_PLUGIN_WANT_STATE 1
#define DISTRHO_PLUGIN_WANT_FULL_STATE 1
#define DISTRHO_PLUGIN_WANT_TIMEPOS 1
#define DISTRHO_PLUGIN_WANT_PARAMETER_VALUE_CHANGE_REQUEST 1
