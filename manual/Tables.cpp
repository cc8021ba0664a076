#include "manual/Tables.h"

#include <algorithm>
#include <cstdio>
#include <functional>
#include <set>
#include <stdexcept>

#include "editor/MenuTable.h"
#include "editor/RandomSound.h"
#include "engine/Controllers.h"
#include "instrument/ValueText.h"
#include "manual/Sections.h"
#include "parameters/KnobLaws.h"

namespace manual
{
namespace
{
using Row = std::vector<std::string>;

std::string markdown (const Row& titles, const std::vector<Row>& rows)
{
    std::string text;
    const auto add = [&text] (const Row& cells)
    {
        for (const std::string& cell : cells)
            text += "| " + cell + " ";
        text += "|\n";
    };
    add (titles);
    add (Row (titles.size (), "---"));
    for (const Row& row : rows)
        add (row);
    return text;
}

std::string joined (const std::vector<std::string>& words, const char* between = ", ")
{
    std::string text;
    for (const std::string& word : words)
        text += (text.empty () ? "" : between) + word;
    return text;
}

std::string code (const std::string& text)
{
    return std::string ("`").append (text).append ("`");
}

template <typename... Numbers>
std::string format (const char* pattern, Numbers... numbers)
{
    char text[64];
    std::snprintf (text, sizeof text, pattern, numbers...);
    return text;
}

// --- Parameters

std::string hostName (std::int32_t parameter)
{
    std::string name = paramTable[static_cast<std::size_t> (parameter)].name;
    name.erase (name.find_last_not_of (' ') + 1);
    return name;
}

// What is printed beside a control in place of a label below it.
std::string sideLabel (std::int32_t tag)
{
    switch (tag)
    {
    case paramOsc1Vol:
        return "LEVEL 1";
    case paramOsc2Vol:
        return "LEVEL 2";
    case paramFilterType:
        return "LP BP HP";
    case paramLfoBmpSync:
        return "SYNC";
    default:
        return {};
    }
}

// As it is printed, with the oscillator's number.
std::string printedName (const panel::Control& control)
{
    std::string name = control.label != nullptr ? control.label : sideLabel (control.tag);
    if (control.secondLabel != nullptr)
        name += std::string (" ") + control.secondLabel;
    const std::string parameter = hostName (control.tag);
    if (control.label != nullptr && parameter.starts_with ("Osc"))
        name = "OSC " + parameter.substr (3, 1) + " " + name;
    if (name.empty ())
        throw std::runtime_error ("the control of " + parameter + " has no name on the panel");
    return name;
}

bool isControlOfParameter (const panel::Control& control)
{
    return isParameter (control.tag) && control.kind != panel::ControlKind::valueDisplay;
}

// With the unit behind the last one alone, where it is the same for all.
std::string joinedValues (std::vector<std::string> values, const char* between)
{
    const std::string unit =
        values.back ().substr (std::min (values.back ().rfind (' '), values.back ().size ()));
    const bool isCommon =
        std::ranges::all_of (values, [&unit] (const std::string& value) { return value.ends_with (unit); });
    for (std::size_t n = 0; isCommon && n + 1 < values.size (); ++n)
        values[n].resize (values[n].size () - unit.size ());
    return joined (values, between);
}

// The names of all positions, or the left end, the middle and the right end.
std::string rangeText (std::int32_t parameter)
{
    constexpr int steps = 1000;
    constexpr std::size_t mostPositions = 8;
    // Some that may leave 0..1 have a position beyond.
    const float end = paramTable[static_cast<std::size_t> (parameter)].unclamped ? 2.0f : 1.0f;
    const auto textAt = [parameter] (float value) { return instrument::valueText (parameter, value, {}); };
    std::vector<std::string> texts;
    for (int step = 0; step <= steps && texts.size () <= mostPositions; ++step)
    {
        const std::string text = textAt (end * static_cast<float> (step) / static_cast<float> (steps));
        if (texts.empty () || text != texts.back ())
            texts.push_back (text);
    }
    if (texts.size () <= mostPositions)
        return joinedValues (texts, ", ");
    return joinedValues ({ textAt (0.0f), textAt (0.5f), textAt (1.0f) }, " … ");
}

std::string firstText (std::int32_t parameter)
{
    return instrument::valueText (parameter, paramTable[static_cast<std::size_t> (parameter)].initial, {});
}

// Row by row of the panel.
std::string controlsOf (const panel::Section& section)
{
    std::vector<const panel::Control*> controls;
    for (const panel::Control& control : panel::controls ())
    {
        if (isControlOfParameter (control) && sectionOf (control) == &section)
            controls.push_back (&control);
    }
    std::ranges::sort (controls, {},
                       [] (const panel::Control* control)
                       { return std::pair (control->rect.y, control->rect.x); });
    std::vector<Row> rows;
    rows.reserve (controls.size ());
    for (const panel::Control* control : controls)
        rows.push_back (
            { printedName (*control), rangeText (control->tag), firstText (control->tag), control->help });
    return markdown ({ "Control", "Range", "First value", "What it does" }, rows);
}

std::string placeOf (std::int32_t parameter)
{
    for (const panel::Control& control : panel::controls ())
    {
        if (control.tag != parameter || !isControlOfParameter (control))
            continue;
        const panel::Section* section = sectionOf (control);
        return std::string (section != nullptr ? section->name : "") + ": " + printedName (control);
    }
    const auto menus = editor::menuTables ();
    const auto menu = std::ranges::find (menus, parameter, &editor::MenuTable::tag);
    return menu == menus.end () ? "not on the panel" : std::string ("Menu: ") + menu->title;
}

std::string parameterTable ()
{
    std::vector<Row> rows;
    rows.reserve (paramTable.size ());
    for (const ParamRow& row : paramTable)
        rows.push_back ({ code (hostName (row.index)), placeOf (row.index), rangeText (row.index),
                          firstText (row.index), row.scope == Scope::program ? "program" : "song" });
    return markdown ({ "In the host", "On the panel", "Range", "First value", "Kept in" }, rows);
}

// --- Panel

std::string sectionList ()
{
    std::vector<std::string> links;
    for (const Marked& section : markedSections ())
    {
        // The anchor that Markdown's readers give the heading.
        std::string anchor = section.name;
        std::ranges::transform (anchor, anchor.begin (),
                                [] (char c)
                                {
                                    if (c == ' ')
                                        return '-';
                                    return c >= 'A' && c <= 'Z' ? static_cast<char> (c - 'A' + 'a') : c;
                                });
        links.push_back ("**" + std::to_string (section.number) + "** [" + section.name + "](#" + anchor +
                         ")");
    }
    return joined (links, " · ") + "\n";
}

std::string menuList ()
{
    std::vector<Row> rows;
    const auto choices = [] (const editor::MenuTable& menu)
    {
        std::vector<std::string> names;
        if (menu.entries.empty ())
        {
            for (const editor::ProgramGroup& group : editor::programGroups ())
                names.emplace_back (group.title);
        }
        for (const char* entry : menu.entries)
        {
            if (entry != editor::menuSeparator)
                names.emplace_back (entry);
        }
        return names;
    };
    std::string first;
    for (const editor::MenuTable& menu : editor::menuTables ())
    {
        if (menu.title != nullptr)
            rows.push_back ({ menu.title, joined (choices (menu)) });
        else
            first = joined (choices (menu));
    }
    std::vector<std::string> commands;
    for (const editor::CommandEntry& entry : editor::commandEntries ())
        commands.emplace_back (entry.title);
    return "At its top: " + first + ".\n\n" + markdown ({ "Then", "Choices" }, rows) +
           "\nAt its end: " + joined (commands) + ".\n";
}

// What is typed into a value's field, and what becomes of it.
std::string typedValues ()
{
    struct Example
    {
        std::int32_t parameter;
        const char* typed;
    };
    constexpr Example examples[] = {
        { paramFilterFreq, "1.2k" },  { paramVolume, "-6 dB" },     { param1Attack, "350 ms" },
        { param1Decay, "1,5 s" },     { paramOsc1Wave, "pulse" },   { paramOsc1Range, "-12" },
        { paramOsc2Fine, "7 cents" }, { param2ToFilter, "+30 %" },  { paramLfoRate, "5 Hz" },
        { paramVoices, "8" },         { paramFilterFreq, "99999" },
    };
    std::vector<Row> rows;
    for (const Example& example : examples)
    {
        const auto value = instrument::valueFromText (example.parameter, example.typed, {});
        if (!value)
            throw std::runtime_error (std::string ("not understood: ") + example.typed);
        const auto controls = panel::controls ();
        const auto control = std::ranges::find (controls, example.parameter, &panel::Control::tag);
        rows.push_back ({ printedName (*control), code (example.typed),
                          instrument::valueText (example.parameter, *value, {}) });
    }
    return markdown ({ "Control", "Typed", "Becomes" }, rows);
}

std::string syncList ()
{
    constexpr double usualTempo = 120.0; // quarter notes a minute
    std::vector<Row> rows;
    for (const SyncDivision& division : syncDivisions)
    {
        const double quarters = static_cast<double> (division.divisor / divisorPerQuarter);
        const double seconds = static_cast<double> (division.divisor) / usualTempo;
        rows.push_back ({ division.label, format ("%.4g", quarters), format ("%.3g s", seconds),
                          format ("%.3g Hz", 1.0 / seconds) });
    }
    return markdown ({ "Display", "Quarter notes in a cycle", "Cycle at 120 BPM", "Rate at 120 BPM" }, rows);
}

// What the random sounds of no kind touch.
std::string randomList ()
{
    std::set<std::int32_t> touched;
    editor::RandomSound random (1);
    for (std::int32_t kind = 0; kind < editor::RandomSound::categoryCount; ++kind)
        random.generate (kind, [&touched] (std::int32_t parameter, float) { touched.insert (parameter); });
    std::vector<std::string> kept;
    for (const panel::Control& control : panel::controls ())
    {
        if (isControlOfParameter (control) && !touched.contains (control.tag))
            kept.push_back (printedName (control));
    }
    return "They leave alone: " + joined (kept) + ".\n";
}

// --- Programs

std::string programList (const Programs& programs)
{
    std::string text;
    for (const editor::ProgramGroup& group : editor::programGroups ())
    {
        std::vector<Row> rows;
        for (const std::int32_t number : group.programs)
        {
            const bank::SourceProgram& program = programs.at (static_cast<std::size_t> (number));
            rows.push_back (
                { format ("%03d", static_cast<int> (number) + 1), program.name (), program.about });
        }
        text += (text.empty () ? "**" : "\n**") + std::string (group.title) + "**\n\n" +
                markdown ({ "Number", "Name", "What it is for" }, rows);
    }
    return text;
}

// --- MIDI

struct ControllerText
{
    const char* name = nullptr;
    const char* effect = nullptr;
    bool always = false; // else with the addition alone
};

ControllerText textOf (engine::Controller controller)
{
    switch (controller)
    {
    case engine::controllerModulation:
        return { "Modulation wheel", "vibrato in the LFO's wave and rate, 50 cents at the upper end" };
    case engine::controllerDataEntry:
        return { "Data entry",
                 "after 101 = 0 and 100 = 0: range of the pitch wheel, 0 to 24 semitones (2 at first)" };
    case engine::controllerVolume:
        return { "Volume", "100 leaves the sound as it is, 127 is 4.2 dB louder, 50 is 12 dB quieter" };
    case engine::controllerExpression:
        return { "Expression", "level, 0 silent to 127 full", true };
    case engine::controllerSustain:
        return { "Sustain pedal", "from 64 on, keys that are let go sound on until the pedal is lifted" };
    case engine::controllerFirstParameterNumber:
    case engine::controllerLastParameterNumber:
        return { "Parameter number", "says what data entry sets" };
    case engine::controllerAllSoundOff:
        return { "All sound off", "silence at once" };
    case engine::controllerReset:
        return { "Reset", "pedal up, both wheels at rest, expression full" };
    case engine::controllerAllNotesOff:
        return { "All notes off", "every note is let go and fades by its release", true };
    }
    return {};
}

std::string controllerList ()
{
    constexpr std::uint32_t controllers = 128;
    std::vector<Row> rows;
    for (std::uint32_t number = 0; number < controllers; ++number)
    {
        const ControllerText text = textOf (static_cast<engine::Controller> (number));
        if (text.name == nullptr || number == engine::controllerLastParameterNumber)
            continue;
        std::string numbers = std::to_string (number);
        if (number == engine::controllerFirstParameterNumber)
            numbers += " to " + std::to_string (engine::controllerLastParameterNumber);
        rows.push_back ({ numbers, text.name, text.effect, text.always ? "always" : "*Pedal and wheel* on" });
    }
    return markdown ({ "Controller", "Name", "What it does", "When" }, rows);
}

// --- All of them

struct Entry
{
    std::string name;
    std::function<std::string (const Programs&)> make;
};

std::vector<Entry> entries ()
{
    const auto alone = [] (std::string (*make) ()) { return [make] (const Programs&) { return make (); }; };
    std::vector<Entry> all = {
        { "sections", alone (sectionList) },       { "menu", alone (menuList) },
        { "typed values", alone (typedValues) },   { "sync", alone (syncList) },
        { "random", alone (randomList) },          { "programs", programList },
        { "controllers", alone (controllerList) }, { "parameters", alone (parameterTable) }
    };
    for (const panel::Section& section : panel::sections ())
    {
        const auto controls = panel::controls ();
        const bool hasControls = std::ranges::any_of (
            controls, [&section] (const panel::Control& control)
            { return isControlOfParameter (control) && sectionOf (control) == &section; });
        if (hasControls)
            all.push_back ({ std::string ("controls ") + section.name,
                             [&section] (const Programs&) { return controlsOf (section); } });
    }
    return all;
}
}

std::vector<std::string> tableNames ()
{
    std::vector<std::string> names;
    for (const Entry& entry : entries ())
        names.push_back (entry.name);
    return names;
}

std::string table (const std::string& name, const Programs& programs)
{
    for (const Entry& entry : entries ())
    {
        if (entry.name == name)
            return entry.make (programs);
    }
    throw std::runtime_error ("there is no table called \"" + name + "\"");
}
}
