#include "instrument/ValueText.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <iterator>
#include <span>

#include "engine/NoteTable.h"
#include "parameters/KnobLaws.h"

namespace instrument
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

// Units: how a number is told, and what a typed one may be followed by. The digits change where the number
// would be rounded up to the next form's, so that a text that is typed is told in the same words.
std::string percent (double x)
{
    return format ("%.0f %%", x);
}
std::string signedPercent (double x)
{
    return format ("%+.0f %%", x);
}
std::string cents (double x)
{
    return format (std::abs (x) < 9.95 ? "%+.1f cents" : "%+.0f cents", x);
}
std::string depthInCents (double x)
{
    return format (x < 9.95 ? "\xC2\xB1%.1f cents" : "\xC2\xB1%.0f cents", x);
}
std::string seconds (double x)
{
    if (x < 0.9995)
        return format (x < 0.00995 ? "%.1f ms" : "%.0f ms", x * 1000.0);
    return format ("%.2f s", x);
}
std::string hertz (double x)
{
    return format ("%.0f Hz", x);
}
std::string slowHertz (double x)
{
    return format ("%.2f Hz", x);
}
std::string dB (double x)
{
    return format ("%.1f dB", x);
}

// From a knob's value to the number that is told, all of them rising.
double inPercent (float knob)
{
    return static_cast<double> (knob) * 100.0;
}
double fromCentre (float knob)
{
    return static_cast<double> (bipolarAmount (knob)) * 100.0;
}
double delay (float knob)
{
    return static_cast<double> (delaySeconds (knob));
}
double glide (float knob)
{
    return static_cast<double> (glideSeconds (knob));
}
double attack (float knob)
{
    return static_cast<double> (attackSeconds (ampAttackControl (knob)));
}
double decay (float knob)
{
    return static_cast<double> (decaySeconds (ampDecayControl (knob)));
}
double filterTime (float knob)
{
    return static_cast<double> (attackSeconds (filterTimeControl (knob)));
}
double level (float knob)
{
    return decibels (static_cast<double> (knob));
}
double sustain (float knob)
{
    return decibels (static_cast<double> (sustainLevel (knob)));
}
double rate (float knob)
{
    return static_cast<double> (lfoHz (knob));
}
double cutoff (float knob)
{
    return static_cast<double> (cutoffHz (knob));
}
double trackedCutoff (float knob)
{
    constexpr int middleC = 60;
    return static_cast<double> (trackedCutoffHz (knob, engine::keyTrackFactor[middleC - trackingStart]));
}

constexpr const char* oscWaves[] = { "off", "saw", "pulse" };
constexpr const char* rangeNames[] = { "-24 semitones", "-12 semitones", "0 semitones", "+12 semitones",
                                       "+24 semitones" };
constexpr const char* filterTypeNames[] = { "low-pass", "band-pass", "high-pass" };
constexpr const char* lfoWaveNames[] = { "triangle", "saw up", "saw down",
                                         "square",   "noise",  "sample and hold" };
constexpr const char* voiceCounts[] = { "2", "4", "6", "8", "10", "12", "14", "16" };
constexpr const char* offOn[] = { "off", "on" };
constexpr const char* onOff[] = { "on", "off" };                         // of an inverted switch
constexpr const char* volTypeGains[] = { "+4.1 dB", "0 dB", "-5.7 dB" }; // as volTypeGain

using Names = std::span<const char* const>;

std::int32_t evenPosition (float value, std::int32_t last)
{
    return positionOf (value, static_cast<float> (last));
}
std::int32_t voicesPosition (float value, std::int32_t /*last*/)
{
    return voiceCountFor (value).value_or (mostVoices) / 2 - 1;
}
std::int32_t wholePosition (float value, std::int32_t /*last*/)
{
    return truncateToInt (value);
}
std::int32_t anythingBut0 (float value, std::int32_t /*last*/)
{
    return value != 0.0f ? 1 : 0;
}
std::int32_t anythingAbove0 (float value, std::int32_t /*last*/)
{
    return value > 0.0f ? 1 : 0;
}

// How a value is told: by a number, or by names of its positions.
struct Row
{
    Param parameter;
    float specialAt; // what stands here is told by `special` in place of a number
    double (*law) (float knob);
    std::string (*unit) (double number);
    const char* special = nullptr;
    Names names = {};
    std::int32_t (*position) (float value, std::int32_t last) = evenPosition;
};
constexpr Row named (Param parameter, Names names,
                     std::int32_t (*position) (float, std::int32_t) = evenPosition)
{
    return { parameter, 0.0f, nullptr, nullptr, nullptr, names, position };
}
constexpr Row rows[] = {
    { paramVolume, 0.0f, level, dB, "off" },
    { paramOsc1Vol, 0.0f, level, dB, "off" },
    { paramOsc2Vol, 0.0f, level, dB, "off" },
    { paramNoise, 0.0f, level, dB, "off" },
    named (paramOsc1Wave, oscWaves),
    named (paramOsc2Wave, oscWaves),
    named (paramOsc1Range, rangeNames),
    named (paramOsc2Range, rangeNames),
    { paramOsc2Fine, 0.0f, fineCents, cents },
    { paramMasterP, 0.0f, masterCents, cents },
    { param1Attack, 0.0f, attack, seconds },
    { param1Sustain, 0.0f, sustain, dB, "none, repeats" },
    { param1Decay, 0.0f, decay, seconds },
    { param2Attack, 0.0f, filterTime, seconds },
    { param2Decay, 0.0f, filterTime, seconds },
    { param2Delay, 0.0f, delay, seconds, "none, repeats" },
    { param2ToFilter, 0.5f, fromCentre, signedPercent, "off" },
    { paramLfoFilter, 0.5f, fromCentre, signedPercent, "off" },
    { paramFilterFreq, 0.0f, cutoff, hertz },
    named (paramFilterType, filterTypeNames),
    { paramLfoRate, 0.0f, rate, slowHertz },
    named (paramLfoWave, lfoWaveNames),
    { paramLfoPitch, 0.0f, vibratoCents, depthInCents, "off" },
    { paramGlideMono, 0.0f, glide, seconds, "off, polyphonic" },
    named (paramGlideAuto, offOn, anythingBut0),
    named (paramVoices, voiceCounts, voicesPosition),
    named (paramVolType, volTypeGains, wholePosition),
    named (paramShowKeys, offOn, anythingBut0),
    { paramVelocityAmp, 0.0f, inPercent, percent, "off" },
    { paramVelocityFilter, 0.0f, inPercent, percent, "off" },
    named (paramSmothFilt, offOn, anythingAbove0),
    named (paramHighQuality, onOff, anythingBut0),
    named (paramFilterKeyTrak, offOn, anythingAbove0),
    named (paramLfoBmpSync, offOn, anythingAbove0),
};

Row rowOf (std::int32_t parameter, const ValueContext& context)
{
    const auto* found = std::ranges::find (rows, parameter, &Row::parameter);
    Row row = found != std::end (rows) ? *found : Row{ paramNonUsed, 0.0f, inPercent, percent };
    if (parameter == paramFilterFreq && context.keyTracks)
        row.law = trackedCutoff;
    return row;
}

std::string lowered (const std::string& text)
{
    std::string result;
    for (const char character : text)
    {
        if (character != ' ' || !result.empty ())
            result += character >= 'A' && character <= 'Z' ? static_cast<char> (character + 32) : character;
    }
    result.erase (result.find_last_not_of (' ') + 1);
    return result;
}

// Words may be cut short, numbers may not.
bool begins (const std::string& name, const std::string& wanted)
{
    if (!name.starts_with (wanted))
        return false;
    const bool isWhole = name.size () == wanted.size () || name[wanted.size ()] == ' ';
    return isWhole || (wanted[0] >= 'a' && wanted[0] <= 'z');
}

// The start of a position's share, or the position itself where that is what is stored.
std::optional<float> positionNamed (const std::string& wanted, const Row& row)
{
    const float last = row.position == wholePosition ? 1.0f : static_cast<float> (row.names.size () - 1);
    for (std::size_t position = 0; position < row.names.size (); ++position)
    {
        const std::string name = lowered (row.names[position]);
        if (begins (name, wanted) || begins (name, "+" + wanted))
            return static_cast<float> (position) / last;
    }
    return std::nullopt;
}

std::optional<float> divisionNamed (const std::string& wanted)
{
    for (std::size_t position = 0; position < std::size (syncDivisions); ++position)
    {
        if (wanted == syncDivisions[position].label)
            return std::min (1.0f, (static_cast<float> (position) + 0.5f) / syncDivisionSteps);
    }
    return std::nullopt;
}

// The value whose number comes closest.
float valueFor (double number, double (*law) (float))
{
    float low = 0.0f;
    float high = 1.0f;
    for (int halving = 0; halving < 30; ++halving)
    {
        const float middle = (low + high) / 2.0f;
        (law (middle) < number ? low : high) = middle;
    }
    return high;
}
}

bool lfoRateText (float knob, bool synced, std::string& text)
{
    if (synced)
    {
        const auto division = syncDivisionFor (knob);
        if (division)
            text = division->label;
        return division.has_value ();
    }
    const double hz = rate (knob);
    text = format (hz < 9.95 ? "%.1fHz" : "%.0fHz", hz);
    return true;
}

std::string valueText (std::int32_t parameter, float value, const ValueContext& context)
{
    std::string division;
    if (parameter == paramLfoRate && context.synced && lfoRateText (value, true, division))
        return division;
    const Row row = rowOf (parameter, context);
    if (!row.names.empty ())
    {
        const auto last = static_cast<std::int32_t> (row.names.size ()) - 1;
        return row.names[static_cast<std::size_t> (std::clamp (row.position (value, last), 0, last))];
    }
    if (row.special != nullptr && value == row.specialAt)
        return row.special;
    std::string text = row.unit (row.law (value));
    if (row.law == trackedCutoff)
        text += " at middle C";
    return text;
}

std::optional<float> valueFromText (std::int32_t parameter, const std::string& text,
                                    const ValueContext& context)
{
    std::string wanted = lowered (text);
    if (wanted.empty ())
        return std::nullopt;
    if (parameter == paramLfoRate && context.synced)
        return divisionNamed (wanted);
    const Row row = rowOf (parameter, context);
    if (!row.names.empty ())
        return positionNamed (wanted, row);
    if (row.special != nullptr && std::string (row.special).starts_with (wanted))
        return row.specialAt;

    std::ranges::replace (wanted, ',', '.');
    if (wanted.starts_with ("\xC2\xB1"))
        wanted.erase (0, 2);
    else if (wanted.starts_with ('+'))
        wanted.erase (0, 1);
    double number = 0.0;
    const auto read = std::from_chars (wanted.data (), wanted.data () + wanted.size (), number);
    if (read.ec != std::errc () || !std::isfinite (number))
        return std::nullopt;
    const std::string unit = lowered (read.ptr);
    if (row.unit == seconds && unit.starts_with ("ms"))
        number /= 1000.0;
    else if (unit.starts_with ("k"))
        number *= 1000.0;
    return valueFor (number, row.law);
}
}
