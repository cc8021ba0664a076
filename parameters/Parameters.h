#pragma once

#include <array>
#include <cstdint>
#include <limits>

namespace parameters
{
// The instrument's parameters. Order and names are a file format: programs, banks and stored settings
// hold values by these indices and bindings by these names.
enum Param : std::int32_t
{
    paramVolume,
    paramOsc1Vol,
    paramOsc1Wave,
    paramOsc1PW,
    paramOsc1Range,
    paramOsc2Vol,
    paramOsc2Wave,
    paramOsc2Fine,
    paramOsc2Range,
    paramMasterP,
    paramNoise,
    param1Attack,
    param1Sustain,
    param1Decay,
    param2Attack,
    param2Decay,
    param2Delay,
    param2ToFilter,
    paramFilterFreq,
    paramFilterRez,
    paramFilterType,
    paramLfoRate,
    paramLfoWave,
    paramLfoPitch,
    paramLfoFilter,
    paramGlideMono,
    paramGlideAuto,
    paramVoices,
    paramVolType,
    paramPitchBend,
    paramShowKeys,
    paramVelocityAmp,
    paramVelocityFilter,
    paramSmothFilt,
    paramHighQuality,
    paramFilterKeyTrak,
    paramLfoBmpSync,
    paramNonUsed,
    parameterCount
};

// Indices above the parameters travel through setParameter as commands and notices.
enum Command : std::int32_t
{
    commandRemoveAbout = 44, // editor: take the about page away
    commandMainMenu = 45,    // value = entry of the main menu (MainMenuCommand)
    commandProgram = 46,     // editor: value = chosen program
    commandKeyboard = 49,    // value x 128 = note to hold, -1 = release it
    commandKeyOn = 50,       // to the editor: value x 128 = note that starts
    commandKeyOff = 51,      // to the editor: value x 128 = note that ends
    commandVoiceMode = 52,   // to the editor: voice count or mono mode changed, all notes ended
    commandLearn = 53,       // below 999: arm that parameter; from 999: forget the one of value - 1000
    commandRandom = 54       // editor: random-sound menu
};

// Values of commandMainMenu, compared exactly.
enum MainMenuCommand : std::int32_t
{
    menuSaveDefaultBank = 0,
    menuLoadFactoryBank = 1,
    menuAbout = 2, // the editor's own
    menuSaveControllerPresets = 3,
    menuMidiForget = 4
};

// Where a parameter's value lives.
enum class Scope : std::uint8_t
{
    plugin, // one value for all programs
    program // one value in each program
};

struct ParamRow
{
    Param index;
    const char* name; // as stored, trailing blanks and spellings included
    Scope scope;
    bool unclamped;     // values outside 0..1 are stored as they are
    bool keptAsDefault; // saved to and read from the stored settings
    float initial;      // value before a bank is loaded
};

// One row per parameter, in index order. Misspelt names are the names: hosts and stored settings know them.
inline constexpr std::array<ParamRow, parameterCount> paramTable = { {
    { paramVolume, "Volume    ", Scope::program, false, false, 1.0f },
    { paramOsc1Vol, "Osc1-Vol  ", Scope::program, false, false, 1.0f },
    { paramOsc1Wave, "Osc1-Wave ", Scope::program, false, false, 0.0f },
    { paramOsc1PW, "Osc1-PW   ", Scope::program, false, false, 0.0f },
    { paramOsc1Range, "Osc1-Range", Scope::program, false, false, 0.5f },
    { paramOsc2Vol, "Osc2-Vol  ", Scope::program, false, false, 1.0f },
    { paramOsc2Wave, "Osc2-Wave ", Scope::program, false, false, 1.0f },
    { paramOsc2Fine, "Osc2-Fine ", Scope::program, false, false, 0.0f },
    { paramOsc2Range, "Osc2-Range", Scope::program, false, false, 0.5f },
    { paramMasterP, "MasterP   ", Scope::program, false, false, 0.5f },
    { paramNoise, "Noise     ", Scope::program, false, false, 0.0f },
    { param1Attack, "1-Attack  ", Scope::program, false, false, 0.0f },
    { param1Sustain, "1-Sustain ", Scope::program, false, false, 1.0f },
    { param1Decay, "1-Decay   ", Scope::program, false, false, 0.0f },
    { param2Attack, "2-Attack  ", Scope::program, false, false, 0.0f },
    { param2Decay, "2-Decay   ", Scope::program, false, false, 0.1f },
    { param2Delay, "2-Delay   ", Scope::program, false, false, 0.0f },
    { param2ToFilter, "2-ToFilter", Scope::program, false, false, 0.5f },
    { paramFilterFreq, "FilterFreq", Scope::program, false, false, 1.0f },
    { paramFilterRez, "FilterRez ", Scope::program, false, false, 0.5f },
    { paramFilterType, "FilterType", Scope::program, false, false, 0.0f },
    { paramLfoRate, "LfoRate   ", Scope::program, false, false, 0.1f },
    { paramLfoWave, "LfoWave   ", Scope::program, false, false, 0.0f },
    { paramLfoPitch, "LfoPitch  ", Scope::program, false, false, 0.0f },
    { paramLfoFilter, "LfoFilter ", Scope::program, false, false, 0.5f },
    { paramGlideMono, "Glide-Mono", Scope::program, false, false, 0.0f },
    { paramGlideAuto, "Glide-Auto", Scope::plugin, true, true, 1.0f },
    { paramVoices, "Voices    ", Scope::plugin, true, true, 1.0f },
    { paramVolType, "VolType   ", Scope::plugin, true, true, 1.0f },
    { paramPitchBend, "PitchBend ", Scope::plugin, false, true, 0.5f },
    { paramShowKeys, "ShowKeys  ", Scope::plugin, true, true, 1.0f },
    { paramVelocityAmp, "VelocityAmp", Scope::program, false, false, 0.5f },
    { paramVelocityFilter, "VelocityFilter", Scope::program, false, false, 0.5f },
    { paramSmothFilt, "SmothFilt ", Scope::program, false, false, 0.0f },
    { paramHighQuality, "HighQuality", Scope::plugin, false, true, 0.0f },
    { paramFilterKeyTrak, "FilterKeyTrak", Scope::program, false, false, 0.0f },
    { paramLfoBmpSync, "LfoBmpSync", Scope::program, false, false, 0.0f },
    { paramNonUsed, "NonUsed  ", Scope::program, false, false, 0.0f }, // stored, drives nothing
} };

constexpr bool rowsInIndexOrder ()
{
    for (std::int32_t i = 0; i < parameterCount; ++i)
    {
        if (paramTable[static_cast<std::size_t> (i)].index != i)
            return false;
    }
    return true;
}
static_assert (parameterCount == 38 && rowsInIndexOrder ());

constexpr bool isParameter (std::int32_t index)
{
    return index >= 0 && index < parameterCount;
}

// A value as the engine may use it: finite (a damaged bank can hold anything; 0 stands in), and within
// 0..1 unless the parameter is unclamped. `index` must be a parameter.
float usableValue (std::int32_t index, float value);

// A value as it is stored: the two bipolar amounts snap to their centre, clamped parameters are limited
// to 0..1 unless `unclamped` is set. `index` may be a command; those pass unchanged.
float storableValue (std::int32_t index, float value, bool unclamped);

// value x positions, truncated towards zero: how switch-like parameters are decoded. Saturates at the
// ends of the integer range; NaN gives 0.
constexpr std::int32_t truncateToInt (float value)
{
    using Limits = std::numeric_limits<std::int32_t>;
    if (value != value)
        return 0;
    if (value >= 2147483648.0f) // 2^31, the first float above the range
        return Limits::max ();
    if (value < -2147483648.0f)
        return Limits::min ();
    return static_cast<std::int32_t> (value);
}
constexpr std::int32_t positionOf (float value, float positions)
{
    return truncateToInt (value * positions);
}
}
