#include "resources/bank/ParameterUnits.h"

#include <algorithm>
#include <charconv>
#include <span>

#include "parameters/KnobLaws.h"

namespace bank
{
namespace
{
// From the number that is written to the knob's position.
double asWritten (double value)
{
    return value;
}
double fromPercent (double percent)
{
    return percent / 100.0;
}
double fromBipolarPercent (double percent)
{
    return knobOfBipolarAmount (percent / 100.0);
}
double fromOctaves (double octaves)
{
    return static_cast<double> (knobOfOctaves (static_cast<float> (octaves)));
}
double fromSustainPercent (double percent)
{
    return knobOfSustainLevel (percent / 100.0);
}
double fromAttackSeconds (double seconds)
{
    return knobOfEnvelopeSeconds (seconds, attackFoot);
}
double fromDecaySeconds (double seconds)
{
    return knobOfEnvelopeSeconds (seconds, decayFoot);
}
double fromFilterSeconds (double seconds)
{
    return knobOfEnvelopeSeconds (seconds, 0.0);
}

struct Choice
{
    std::string_view name;
    float position;
};

// Positions in the middle of what a switch decodes, its last one excepted: that is only at 1.0.
constexpr Choice waves[] = { { "off", 0.0f }, { "saw", 0.6f }, { "pulse", 1.0f } };
constexpr Choice filterTypes[] = { { "lowpass", 0.2f }, { "bandpass", 0.6f }, { "highpass", 1.0f } };
constexpr Choice lfoWaves[] = { { "triangle", 0.1f }, { "rising", 0.3f }, { "falling", 0.5f },
                                { "square", 0.7f },   { "noise", 0.9f },  { "random", 1.0f } };
constexpr Choice switches[] = { { "off", 0.0f }, { "on", 1.0f } };

enum class Unit
{
    none,
    seconds, // written with "s" or "ms"
    percent,
    hertz,
    cents,
    octaves,
};

// How a parameter may be written.
struct Writing
{
    Param parameter;
    Unit unit = Unit::none;
    double (*position) (double) = asWritten;
    std::span<const Choice> choices = {};
};

// Parameters without a row are written as knob positions.
constexpr Writing writings[] = {
    { paramVolume, Unit::percent, fromPercent },
    { paramOsc1Vol, Unit::percent, fromPercent },
    { paramOsc1Wave, Unit::none, asWritten, waves },
    { paramOsc1PW, Unit::percent, fromPercent },
    { paramOsc1Range, Unit::octaves, fromOctaves },
    { paramOsc2Vol, Unit::percent, fromPercent },
    { paramOsc2Wave, Unit::none, asWritten, waves },
    { paramOsc2Fine, Unit::cents, knobOfFineCents },
    { paramOsc2Range, Unit::octaves, fromOctaves },
    { paramNoise, Unit::percent, fromPercent },
    { param1Attack, Unit::seconds, fromAttackSeconds },
    { param1Sustain, Unit::percent, fromSustainPercent },
    { param1Decay, Unit::seconds, fromDecaySeconds },
    { param2Attack, Unit::seconds, fromFilterSeconds },
    { param2Decay, Unit::seconds, fromFilterSeconds },
    { param2Delay, Unit::seconds, asWritten },
    { param2ToFilter, Unit::percent, fromBipolarPercent },
    { paramFilterFreq, Unit::hertz, knobOfCutoffHz },
    { paramFilterRez, Unit::percent, fromPercent },
    { paramFilterType, Unit::none, asWritten, filterTypes },
    { paramLfoRate, Unit::hertz, knobOfLfoHz },
    { paramLfoWave, Unit::none, asWritten, lfoWaves },
    { paramLfoPitch, Unit::cents, knobOfVibratoCents },
    { paramLfoFilter, Unit::percent, fromBipolarPercent },
    { paramGlideMono, Unit::seconds, knobOfGlideSeconds },
    { paramVelocityAmp, Unit::percent, fromPercent },
    { paramVelocityFilter, Unit::percent, fromPercent },
    { paramSmothFilt, Unit::none, asWritten, switches },
    { paramFilterKeyTrak, Unit::none, asWritten, switches },
    { paramLfoBmpSync, Unit::none, asWritten, switches },
};

struct Suffix
{
    std::string_view text;
    Unit unit;
    double factor;
};
constexpr Suffix suffixes[] = { { "", Unit::none, 1.0 },      { "ms", Unit::seconds, 0.001 },
                                { "s", Unit::seconds, 1.0 },  { "%", Unit::percent, 1.0 },
                                { "Hz", Unit::hertz, 1.0 },   { "ct", Unit::cents, 1.0 },
                                { "oct", Unit::octaves, 1.0 } };

std::string_view withoutBlanks (std::string_view name)
{
    return name.substr (0, name.find_last_not_of (' ') + 1);
}

// The middle of the knob's travel that a division covers; the last one is only at the very end.
std::optional<float> divisionPosition (std::string_view label)
{
    const auto row =
        std::ranges::find (syncDivisions, label,
                           [] (const SyncDivision& division) { return std::string_view (division.label); });
    if (row == std::end (syncDivisions))
        return std::nullopt;
    const float middle = static_cast<float> (row - std::begin (syncDivisions)) + 0.5f;
    return std::min (middle / syncDivisionSteps, 1.0f);
}
}

std::optional<Param> parameterNamed (std::string_view name)
{
    const auto found = std::ranges::find_if (paramTable, [name] (const ParamRow& row)
                                             { return withoutBlanks (row.name) == name; });
    if (found == paramTable.end ())
        return std::nullopt;
    return found->index;
}

std::optional<float> knobPosition (Param parameter, std::string_view written)
{
    const auto found = std::ranges::find (writings, parameter, &Writing::parameter);
    const Writing writing = found == std::end (writings) ? Writing{ parameter } : *found;
    const auto choice = std::ranges::find (writing.choices, written, &Choice::name);
    if (choice != writing.choices.end ())
        return choice->position;
    if (parameter == paramLfoRate && written.find ('/') != std::string_view::npos)
        return divisionPosition (written);

    if (written.starts_with ('+'))
        written.remove_prefix (1);
    double number = 0.0;
    const char* const end = written.data () + written.size ();
    const auto [rest, error] = std::from_chars (written.data (), end, number);
    const auto suffix = std::ranges::find (suffixes, std::string_view (rest, end), &Suffix::text);
    if (error != std::errc () || suffix == std::end (suffixes))
        return std::nullopt;
    const bool bare = suffix->unit == Unit::none;
    if (!bare && suffix->unit != writing.unit)
        return std::nullopt;
    const auto position = static_cast<float> (bare ? number : writing.position (number * suffix->factor));
    if (!(position >= 0.0f && position <= 1.0f))
        return std::nullopt;
    return position;
}
}
