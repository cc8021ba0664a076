#include "editor/ValueText.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <iterator>
#include <span>

#include "parameters/KnobLaws.h"

namespace editor
{
using namespace parameters;

namespace
{
template <typename... Numbers>
std::string format (const char* pattern, Numbers... numbers)
{
    char text[64];
    std::snprintf (text, sizeof text, pattern, numbers...);
    return text;
}

std::string percent (double v)
{
    return format ("%.0f %%", v * 100.0);
}

std::string bipolarPercent (double v)
{
    return v == 0.5 ? "off" : format ("%+.0f %%", (v - 0.5) * 200.0);
}

std::string seconds (double s)
{
    if (s < 1.0)
        return format (s < 0.01 ? "%.1f ms" : "%.0f ms", s * 1000.0);
    return format ("%.2f s", s);
}

// The envelopes' law: (v^2 + foot)^2 x 10 s, with the feet of the amplitude envelope's two knobs.
std::string envelopeSeconds (double v, double foot)
{
    const double x = v * v + foot;
    return seconds (x * x * 10.0);
}
std::string attack (double v)
{
    return envelopeSeconds (v, 0.009);
}
std::string decay (double v)
{
    return envelopeSeconds (v, 0.006);
}
std::string filterTime (double v)
{
    return envelopeSeconds (v, 0.0);
}

// v^2 s; 0 is polyphonic
std::string glide (double v)
{
    return v > 0.0 ? seconds (v * v) : "off, polyphonic";
}

// v^2 x 6460 Hz + 100 Hz
std::string cutoff (double v)
{
    return format ("%.0f Hz", v * v * 6460.0 + 100.0);
}

std::string voices (double v)
{
    return format ("%d", 2 * (positionOf (static_cast<float> (v), 15.0f) / 2) + 2);
}

std::string onOff (double v)
{
    return v > 0.0 ? "on" : "off";
}

constexpr const char* oscWaves[] = { "off", "saw", "pulse" };
constexpr const char* ranges[] = { "-24 semitones", "-12 semitones", "0 semitones", "+12 semitones",
                                   "+24 semitones" };
constexpr const char* filterTypes[] = { "low-pass", "band-pass", "high-pass" };
constexpr const char* lfoWaves[] = { "triangle", "saw up", "saw down", "square", "noise", "sample and hold" };

// How a value is told: by a law, or by names that share the travel.
struct Row
{
    Param parameter;
    std::string (*law) (double value);
    std::span<const char* const> names = {};
};
constexpr Row rows[] = {
    { paramOsc1Wave, nullptr, oscWaves },
    { paramOsc2Wave, nullptr, oscWaves },
    { paramOsc1Range, nullptr, ranges },
    { paramOsc2Range, nullptr, ranges },
    { param1Attack, attack },
    { param1Decay, decay },
    { param2Attack, filterTime },
    { param2Decay, filterTime },
    { param2ToFilter, bipolarPercent },
    { paramLfoFilter, bipolarPercent },
    { paramMasterP, bipolarPercent },
    { paramFilterFreq, cutoff },
    { paramFilterType, nullptr, filterTypes },
    { paramLfoWave, nullptr, lfoWaves },
    { paramGlideMono, glide },
    { paramVoices, voices },
    { paramSmothFilt, onOff },
    { paramFilterKeyTrak, onOff },
    { paramLfoBmpSync, onOff },
};
}

bool lfoRateText (float rate, bool synced, std::string& text)
{
    if (synced)
    {
        const auto division = syncDivisionFor (rate);
        if (division)
            text = division->label;
        return division.has_value ();
    }
    const auto hz = static_cast<double> (lfoHz (rate));
    text = format (hz < 9.95 ? "%.1fHz" : "%.0fHz", hz);
    return true;
}

std::string valueText (std::int32_t parameter, float value, bool synced)
{
    const auto v = static_cast<double> (value);
    if (parameter == paramLfoRate)
    {
        std::string text;
        if (!synced)
            return format ("%.2f Hz", static_cast<double> (lfoHz (value)));
        return lfoRateText (value, synced, text) ? text : percent (v);
    }
    const auto* row = std::ranges::find (rows, parameter, &Row::parameter);
    if (row == std::end (rows))
        return percent (v);
    if (row->law != nullptr)
        return row->law (v);
    const auto last = static_cast<std::int32_t> (row->names.size ()) - 1;
    const std::int32_t position = std::clamp (positionOf (value, static_cast<float> (last)), 0, last);
    return row->names[static_cast<std::size_t> (position)];
}
}
