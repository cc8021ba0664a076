#include "formats/dpf/ScaleMarks.h"

#include <algorithm>
#include <iterator>
#include <span>

#include "formats/shared/ShownParameters.h"
#include "instrument/ValueText.h"

namespace dpf
{
using namespace parameters;

namespace
{
// As they are typed into the panel's fields, with room between them for their labels.
constexpr const char* levels[] = { "-20", "-10", "-6", "-3" };
constexpr const char* pitches[] = { "-50", "0", "50" };
constexpr const char* intervals[] = { "10", "100", "300", "700" };
constexpr const char* times[] = { "10 ms", "100 ms", "300 ms", "1 s", "3 s" };
constexpr const char* shortTimes[] = { "100 ms", "300 ms", "500 ms" };
constexpr const char* amounts[] = { "-50", "off", "50" };
constexpr const char* cutoffs[] = { "200", "500", "1000", "2000", "4000" };
constexpr const char* rates[] = { "1", "5", "20" };
constexpr const char* depths[] = { "1", "10", "50", "100" };
constexpr const char* parts[] = { "25", "50", "75" };

struct Row
{
    Param index;
    std::span<const char* const> texts;
};
constexpr Row rows[] = {
    { paramVolume, levels },        { paramOsc1Vol, levels },    { paramOsc2Vol, levels },
    { paramNoise, levels },         { param1Sustain, levels },   { paramMasterP, pitches },
    { paramOsc2Fine, intervals },   { param1Attack, times },     { param1Decay, times },
    { param2Attack, times },        { param2Decay, times },      { param2Delay, shortTimes },
    { paramGlideMono, shortTimes }, { param2ToFilter, amounts }, { paramLfoFilter, amounts },
    { paramFilterFreq, cutoffs },   { paramLfoRate, rates },     { paramLfoPitch, depths },
};

std::span<const char* const> textsOf (std::int32_t index)
{
    const auto* found = std::ranges::find (rows, index, &Row::index);
    return found != std::end (rows) ? found->texts : parts;
}

// The switches that give a value another meaning, and the meaning then.
struct Reading
{
    Param parameter, changedBy;
    instrument::ValueContext context;
};
constexpr Reading otherReadings[] = {
    { paramLfoRate, paramLfoBmpSync, { .synced = true } },
    { paramFilterFreq, paramFilterKeyTrak, { .keyTracks = true } },
};

bool hasMarks (std::int32_t index)
{
    return formats::shownParameter (index).positions == 0 && formats::shownParameter (index).automated;
}

std::string quarters (std::int32_t index, const instrument::ValueContext& context)
{
    std::string text;
    for (const auto& [number, value] :
         { std::pair{ "0", 0.0f }, { "0.25", 0.25f }, { "0.5", 0.5f }, { "0.75", 0.75f }, { "1", 1.0f } })
        text += (text.empty () ? "" : "; ") + std::string (number) + ": " +
                instrument::valueText (index, value, context);
    return text;
}
}

std::vector<ScaleMark> scaleMarks (std::int32_t index)
{
    std::vector<ScaleMark> marks;
    if (!hasMarks (index))
        return marks;
    const auto add = [&] (float value)
    {
        std::string label = instrument::valueText (index, value, {});
        if (index == paramLfoRate) // what counts while it follows the song
            label += " or " + instrument::valueText (index, value, { .synced = true });
        marks.push_back ({ value, std::move (label) });
    };
    add (0.0f);
    for (const char* text : textsOf (index))
    {
        if (const auto value = instrument::valueFromText (index, text, {}))
            add (*value);
    }
    add (1.0f);
    return marks;
}

std::string scaleComment (std::int32_t index)
{
    if (!hasMarks (index))
        return {};
    std::string text = quarters (index, {});
    for (const Reading& other : otherReadings)
    {
        if (other.parameter == index)
            text += ". With " + formats::shownName (other.changedBy) + " " + quarters (index, other.context);
    }
    return text;
}
}
