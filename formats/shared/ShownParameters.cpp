#include "formats/shared/ShownParameters.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>

#include "instrument/Bank.h"
#include "parameters/KnobLaws.h"
#include "platform/Resources.h"
#include "resources/ResourceIds.h"

namespace formats
{
namespace
{
constexpr const char* master = "Master";
constexpr const char* oscillators = "Oscillators";
constexpr const char* lfo = "LFO";
constexpr const char* filter = "Filter";
constexpr const char* ampEnvelope = "Amp envelope";
constexpr const char* filterEnvelope = "Filter envelope";
constexpr const char* velocity = "Velocity";
constexpr const char* output = "Output";
constexpr const char* unused = "Not used";

constexpr std::int32_t onOff = 2;
constexpr std::int32_t voiceSteps = mostVoices / 2;
constexpr std::int32_t volTypes = 3; // of volTypeGain
template <typename T, std::size_t count>
constexpr std::int32_t positionsOf (const T (&)[count])
{
    return static_cast<std::int32_t> (count);
}

struct Row
{
    Param index;
    ShownParameter shown;
};
constexpr Row rows[] = {
    { paramVolume, { output } },
    { paramOsc1Vol, { oscillators } },
    { paramOsc1Wave, { oscillators, positionsOf (oscillatorWaves) } },
    { paramOsc1PW, { oscillators } },
    { paramOsc1Range, { oscillators, positionsOf (rangeSemitones) } },
    { paramOsc2Vol, { oscillators } },
    { paramOsc2Wave, { oscillators, positionsOf (oscillatorWaves) } },
    { paramOsc2Fine, { oscillators } },
    { paramOsc2Range, { oscillators, positionsOf (rangeSemitones) } },
    { paramMasterP, { master } },
    { paramNoise, { oscillators } },
    { param1Attack, { ampEnvelope } },
    { param1Sustain, { ampEnvelope } },
    { param1Decay, { ampEnvelope } },
    { param2Attack, { filterEnvelope } },
    { param2Decay, { filterEnvelope } },
    { param2Delay, { filterEnvelope } },
    { param2ToFilter, { filter } },
    { paramFilterFreq, { filter } },
    { paramFilterRez, { filter } },
    { paramFilterType, { filter, positionsOf (filterTypes) } },
    { paramLfoRate, { lfo } },
    { paramLfoWave, { lfo, positionsOf (lfoWaves) } },
    { paramLfoPitch, { lfo } },
    { paramLfoFilter, { filter } },
    { paramGlideMono, { master } },
    { paramGlideAuto, { master, onOff } },
    { paramVoices, { master, voiceSteps } },
    { paramVolType, { output, volTypes } },
    { paramPitchBend, { unused, 0, false } },
    { paramShowKeys, { "Panel", onOff, false } },
    { paramVelocityAmp, { velocity } },
    { paramVelocityFilter, { velocity } },
    { paramSmothFilt, { filter, onOff } },
    { paramHighQuality, { output, onOff } },
    { paramFilterKeyTrak, { filter, onOff } },
    { paramLfoBmpSync, { lfo, onOff } },
    { paramNonUsed, { unused, 0, false } },
};
constexpr ShownParameter program = { "Program", instrument::programCount };

constexpr bool rowsInIndexOrder ()
{
    for (std::int32_t i = 0; i < parameterCount; ++i)
    {
        if (rows[i].index != i)
            return false;
    }
    return true;
}
static_assert (std::size (rows) == parameterCount && rowsInIndexOrder ());

// The position that a stored value means, as the engine decodes it.
std::int32_t positionAt (std::int32_t index, float stored, std::int32_t positions)
{
    switch (index)
    {
    case paramVoices:
        return voiceCountFor (stored).value_or (mostVoices) / 2 - 1;
    case paramVolType: // stored as a whole number
        return truncateToInt (stored);
    case paramHighQuality: // inverted: 0 is on
        return stored == 0.0f ? 1 : 0;
    default:
        return positions == onOff ? (stored != 0.0f ? 1 : 0)
                                  : positionOf (stored, static_cast<float> (positions - 1));
    }
}

// What to store for a position.
float valueAt (std::int32_t index, std::int32_t position, std::int32_t positions)
{
    switch (index)
    {
    case paramVolType:
        return static_cast<float> (position);
    case paramHighQuality:
        return position == 0 ? 1.0f : 0.0f;
    default:
        return static_cast<float> (position) / static_cast<float> (positions - 1);
    }
}

// The factory bank's first program as far as it says something, else the parameter's initial value.
float firstSound (std::int32_t index)
{
    const ParamRow& row = paramTable[static_cast<std::size_t> (index)];
    const auto bank = platform::findResource ("Bank", factoryBankId);
    if (row.scope == Scope::plugin || bank.size () < sizeof (instrument::ProgramRecord))
        return row.initial;
    instrument::ProgramRecord record;
    std::memcpy (&record, bank.data (), sizeof record);
    return usableValue (index, record.values[static_cast<std::size_t> (index)]);
}
}

const ShownParameter& shownParameter (std::int32_t index)
{
    return index == shownProgram ? program : rows[index].shown;
}

std::string shownName (std::int32_t index)
{
    if (index == shownProgram)
        return "Program";
    std::string name = paramTable[static_cast<std::size_t> (index)].name;
    name.erase (name.find_last_not_of (' ') + 1);
    return name;
}

double shownDefault (std::int32_t index)
{
    return index == shownProgram ? 0.0 : shownValue (index, firstSound (index));
}

double shownHighest (std::int32_t index)
{
    const std::int32_t positions = shownParameter (index).positions;
    return positions == 0 ? 1.0 : positions - 1.0;
}

double shownLimited (std::int32_t index, double shown)
{
    const double inRange = std::isnan (shown) ? 0.0 : std::clamp (shown, 0.0, shownHighest (index));
    return shownParameter (index).positions == 0 ? inRange : std::round (inRange);
}

double shownValue (std::int32_t index, float stored)
{
    const float usable = usableValue (index, stored);
    const std::int32_t positions = shownParameter (index).positions;
    if (positions == 0)
        return static_cast<double> (std::clamp (usable, 0.0f, 1.0f));
    return std::clamp (positionAt (index, usable, positions), 0, positions - 1);
}

float storedValue (std::int32_t index, double shown, float current)
{
    const double wanted = shownLimited (index, shown);
    const std::int32_t positions = shownParameter (index).positions;
    if (shownValue (index, current) == wanted)
        return current;
    return positions == 0 ? static_cast<float> (wanted)
                          : valueAt (index, static_cast<std::int32_t> (wanted), positions);
}
}
