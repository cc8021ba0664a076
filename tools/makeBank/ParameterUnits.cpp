#include "tools/makeBank/ParameterUnits.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <span>
#include <string>

namespace makeBank
{
namespace
{
// The inverses of the engine's knob laws; each takes the written number and answers the position.

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
    return 0.5 + percent / 200.0;
}
double fromOctaves (double octaves)
{
    return (octaves + 2.0) / 4.0;
}

// sustain level = v^2
double fromSustainPercent (double percent)
{
    return std::sqrt (percent / 100.0);
}

// time = (v^2 + foot)^2 * 10 s; the foot keeps the amplitude envelope from clicking
double fromFootedSeconds (double seconds, double foot)
{
    return std::sqrt (std::max (0.0, std::sqrt (seconds / 10.0) - foot));
}
double fromAttackSeconds (double seconds)
{
    return fromFootedSeconds (seconds, 0.009);
}
double fromDecaySeconds (double seconds)
{
    return fromFootedSeconds (seconds, 0.006);
}
double fromFilterSeconds (double seconds)
{
    return fromFootedSeconds (seconds, 0.0);
}

// glide time = v^2 s
double fromGlideSeconds (double seconds)
{
    return std::sqrt (seconds);
}

// cutoff = v^2 * 6460 Hz + 100 Hz
double fromCutoffHz (double hz)
{
    return std::sqrt ((hz - 100.0) / 6460.0);
}

// rate = (599 v^3 + 1) / 6 Hz
double fromLfoHz (double hz)
{
    return std::cbrt ((6.0 * hz - 1.0) / 599.0);
}

double ratioAbove (double cents)
{
    return std::exp2 (cents / 1200.0) - 1.0;
}

// frequency ratio = 1 + v^3 / 1.027, the saw's tuning correction being in the way
double fromDetuneCents (double cents)
{
    return std::cbrt (ratioAbove (cents) * 1.027);
}

// frequency ratio = 1 + 2 v^3 / 16.3516 at the top of the swing
double fromVibratoCents (double cents)
{
    return std::cbrt (ratioAbove (cents) * 16.3516 / 2.0);
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

constexpr float division (int row)
{
    return (static_cast<float> (row) + 0.5f) / 17.0f;
}
constexpr Choice divisions[] = {
    { "32/4", division (0) },  { "16/4", division (1) },  { "8/4", division (2) },
    { "7/4", division (3) },   { "6/4", division (4) },   { "5/4", division (5) },
    { "4/4", division (6) },   { "7/8", division (7) },   { "3/4", division (8) },
    { "2/4", division (9) },   { "1/4", division (10) },  { "1/8", division (11) },
    { "1/10", division (12) }, { "1/12", division (13) }, { "1/16", division (14) },
    { "1/24", division (15) }, { "1/32", division (16) }, { "1/36", 1.0f },
};

enum class Unit
{
    none,
    seconds, // written with "s" or "ms"
    percent,
    hertz,
    cents,
    octaves,
};

struct Row
{
    std::string_view name;
    Unit unit = Unit::none;
    double (*position) (double) = asWritten;
    std::span<const Choice> choices = {};
};

const std::array<Row, parameterCount> rows = { {
    { "Volume", Unit::percent, fromPercent },
    { "Osc1-Vol", Unit::percent, fromPercent },
    { "Osc1-Wave", Unit::none, asWritten, waves },
    { "Osc1-PW", Unit::percent, fromPercent },
    { "Osc1-Range", Unit::octaves, fromOctaves },
    { "Osc2-Vol", Unit::percent, fromPercent },
    { "Osc2-Wave", Unit::none, asWritten, waves },
    { "Osc2-Fine", Unit::cents, fromDetuneCents },
    { "Osc2-Range", Unit::octaves, fromOctaves },
    { "MasterP" },
    { "Noise", Unit::percent, fromPercent },
    { "1-Attack", Unit::seconds, fromAttackSeconds },
    { "1-Sustain", Unit::percent, fromSustainPercent },
    { "1-Decay", Unit::seconds, fromDecaySeconds },
    { "2-Attack", Unit::seconds, fromFilterSeconds },
    { "2-Decay", Unit::seconds, fromFilterSeconds },
    { "2-Delay", Unit::seconds, asWritten },
    { "2-ToFilter", Unit::percent, fromBipolarPercent },
    { "FilterFreq", Unit::hertz, fromCutoffHz },
    { "FilterRez", Unit::percent, fromPercent },
    { "FilterType", Unit::none, asWritten, filterTypes },
    { "LfoRate", Unit::hertz, fromLfoHz, divisions },
    { "LfoWave", Unit::none, asWritten, lfoWaves },
    { "LfoPitch", Unit::cents, fromVibratoCents },
    { "LfoFilter", Unit::percent, fromBipolarPercent },
    { "Glide-Mono", Unit::seconds, fromGlideSeconds },
    { "Glide-Auto" },
    { "Voices" },
    { "VolType" },
    { "PitchBend" },
    { "ShowKeys" },
    { "VelocityAmp", Unit::percent, fromPercent },
    { "VelocityFilter", Unit::percent, fromPercent },
    { "SmothFilt", Unit::none, asWritten, switches },
    { "HighQuality" },
    { "FilterKeyTrak", Unit::none, asWritten, switches },
    { "LfoBmpSync", Unit::none, asWritten, switches },
    { "NonUsed" },
} };

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
}

std::optional<int> parameterIndex (std::string_view name)
{
    const auto found = std::ranges::find (rows, name, &Row::name);
    if (found == rows.end ())
        return std::nullopt;
    return static_cast<int> (found - rows.begin ());
}

std::string_view parameterName (int index)
{
    return rows.at (static_cast<std::size_t> (index)).name;
}

std::optional<float> knobPosition (int index, std::string_view written)
{
    const Row& row = rows.at (static_cast<std::size_t> (index));
    const auto choice = std::ranges::find (row.choices, written, &Choice::name);
    if (choice != row.choices.end ())
        return choice->position;

    if (written.starts_with ('+'))
        written.remove_prefix (1);
    double number = 0.0;
    const auto [rest, error] = std::from_chars (written.data (), written.data () + written.size (), number);
    if (error != std::errc ())
        return std::nullopt;
    const std::string_view unit (rest, static_cast<std::size_t> (written.data () + written.size () - rest));
    const auto suffix = std::ranges::find (suffixes, unit, &Suffix::text);
    if (suffix == std::end (suffixes))
        return std::nullopt;
    const bool bare = suffix->unit == Unit::none;
    if (!bare && suffix->unit != row.unit)
        return std::nullopt;
    const auto position = static_cast<float> (bare ? number : row.position (number * suffix->factor));
    if (!(position >= 0.0f && position <= 1.0f))
        return std::nullopt;
    return position;
}
}
