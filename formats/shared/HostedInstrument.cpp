#include "formats/shared/HostedInstrument.h"

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <cstring>

#include "formats/shared/State.h"
#include "instrument/ValueText.h"

namespace formats
{
using namespace instrument;

namespace
{
constexpr Additions everyAddition = { true, true };
constexpr std::uint8_t statusProgramChange = 0xC0;

ValueContext contextOf (const instrument::Instrument& core)
{
    return { core.parameterValue (paramLfoBmpSync) != 0.0f,
             core.parameterValue (paramFilterKeyTrak) != 0.0f };
}

// Without the blanks at its ends and in small letters.
std::string lowered (const std::string& text)
{
    const std::size_t first = std::min (text.find_first_not_of (' '), text.size ());
    std::string result = text.substr (first, text.find_last_not_of (' ') + 1 - first);
    std::ranges::transform (result, result.begin (),
                            [] (char c)
                            { return c >= 'A' && c <= 'Z' ? static_cast<char> (c - 'A' + 'a') : c; });
    return result;
}

}

HostedInstrument::HostedInstrument (instrument::Services surroundings, instrument::FormatHost& host)
    : core (std::move (surroundings), host, everyAddition)
{
}

double HostedInstrument::value (std::int32_t index) const
{
    if (index == shownProgram)
        return core.getProgram ();
    return isParameter (index) ? shownValue (index, core.getParameter (index)) : 0.0;
}

void HostedInstrument::setValue (std::int32_t index, double shown)
{
    if (index == shownProgram && value (index) != shownLimited (index, shown))
        core.setProgram (static_cast<std::int32_t> (shownLimited (index, shown)));
    else if (isParameter (index))
        core.setParameter (index, storedValue (index, shown, core.getParameter (index)));
}

double HostedInstrument::valueAfter (std::int32_t index, double shown)
{
    const double limited = shownLimited (index, shown);
    if (shownParameter (index).positions != 0)
        return limited;
    return static_cast<double> (storableValue (index, static_cast<float> (limited), false));
}

// A program travels as the MIDI message does: of the events at one sample the engine takes those first.
engine::Event HostedInstrument::eventFor (std::int32_t offset, std::int32_t index, double shown) const
{
    engine::Event event = silentEvent (offset);
    if (index == shownProgram && value (index) != shownLimited (index, shown))
    {
        event.kind = engine::Event::Kind::midi;
        event.status = statusProgramChange;
        event.data1 = static_cast<std::uint8_t> (shownLimited (index, shown));
    }
    else if (isParameter (index))
    {
        const float stored = core.getParameter (index);
        event.index = index;
        event.value = storedValue (index, shown, stored);
        if (event.value != stored)
            event.kind = engine::Event::Kind::parameter;
    }
    return event;
}

engine::Event silentEvent (std::int32_t offset)
{
    engine::Event event;
    event.offset = offset;
    event.kind = engine::Event::Kind::none;
    return event;
}

// --- Texts

std::string HostedInstrument::text (std::int32_t index, double shown) const
{
    if (index == shownProgram)
    {
        const auto program = static_cast<std::int32_t> (shownLimited (index, shown));
        char number[16];
        std::snprintf (number, sizeof number, "%03d ", static_cast<int> (program) + 1);
        return number + core.programName (program);
    }
    if (!isParameter (index))
        return {};
    return valueText (index, storedValue (index, shown, core.getParameter (index)), contextOf (core));
}

std::optional<double> HostedInstrument::valueOf (std::int32_t index, const std::string& text) const
{
    if (index == shownProgram)
        return programNamed (text);
    if (!isParameter (index))
        return std::nullopt;
    const auto stored = valueFromText (index, text, contextOf (core));
    return stored ? std::optional (shownValue (index, *stored)) : std::nullopt;
}

// "12" or "012 Name" by its number, "Name" by its name.
std::optional<double> HostedInstrument::programNamed (const std::string& text) const
{
    const std::string wanted = lowered (text);
    for (std::int32_t program = 0; program < programCount; ++program)
    {
        if (wanted == lowered (core.programName (program)))
            return program;
    }
    int number = 0;
    const char* end = wanted.data () + wanted.size ();
    const auto [rest, error] = std::from_chars (wanted.data (), end, number);
    const bool isWord = rest == end || *rest == ' ';
    if (error != std::errc () || !isWord || number < 1 || number > programCount)
        return std::nullopt;
    return number - 1;
}

// --- State

std::vector<std::byte> HostedInstrument::saveState ()
{
    return writeState (core.getProgram (), core.getChunk (false));
}

// The image tells the instrument which program to select, but for the first one: that says nothing there.
bool HostedInstrument::loadState (std::span<const std::byte> data)
{
    const auto state = readState (data);
    if (!state)
        return false;
    BankImage image;
    std::memcpy (&image, state->bank.data (), sizeof image);
    if (state->program)
        image.slots[0].spare = static_cast<std::uint8_t> (*state->program);
    core.setChunk (&image, sizeof image, false);
    if (state->program == 0)
        core.setProgram (0);
    return true;
}
}
