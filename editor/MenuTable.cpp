#include "editor/MenuTable.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <iterator>

namespace editor
{
namespace
{
constexpr const char* mainEntries[] = { "Save default bank", "Load factory bank", "About",
                                        "Save controller presets", "MidiForget" };
constexpr const char* offOnEntries[] = { "Off", "On" };
constexpr const char* randomEntries[] = { "Bass Sounds", "Pad Sounds",  "Lead Sounds",
                                          "FX Sounds",   menuSeparator, "Use Keys (1234)" };
// The parameter is inverted: its 0.0 means on, so "On" comes first.
constexpr const char* onOffEntries[] = { "On", "Off" };
constexpr const char* zoomEntries[] = { "100 %", "125 %", "150 %", "175 %", "200 %", "250 %", "300 %" };
static_assert (std::size (zoomEntries) == std::size (zoomPercents));

constexpr MenuTable tables[] = {
    { commandMainMenu, nullptr, mainEntries },  { paramGlideAuto, "AutoGlide", offOnEntries },
    { commandProgram, "Presets", {} },          { paramShowKeys, "Keyboard", offOnEntries },
    { commandRandom, "Random", randomEntries }, { paramHighQuality, "HighQuality", onOffEntries },
    { zoomMenuTag, "Zoom", zoomEntries },
};

// In their order on the menu.
constexpr CommandEntry commandTable[] = {
    { commandUndo, "Undo" },
    { commandRedo, "Redo" },
    { commandRenameProgram, "Rename program" },
    { commandPedalAndWheel, "Pedal and wheel" },
    { commandSongLock, "Lock LFO to song" },
    { commandLoadFile, "Load file" },
    { commandSaveProgram, "Save program" },
    { commandSaveBank, "Save bank" },
};

// Where the factory bank keeps its kinds of sounds. Banks of the user's own are listed by the same numbers.
struct ProgramRun
{
    std::int32_t first, last;
    const char* group;
};
constexpr const char* bass = "Bass";
constexpr const char* leads = "Leads";
constexpr const char* pads = "Pads";
constexpr const char* keys = "Keys and plucks";
constexpr const char* sequences = "Sequences";
constexpr const char* effects = "Effects";
constexpr const char* groupOrder[] = { bass, leads, pads, keys, sequences, effects };
constexpr ProgramRun programRuns[] = {
    { 0, 23, bass },   { 24, 53, leads },       { 54, 84, pads },      { 85, 85, leads },
    { 86, 102, keys }, { 103, 113, sequences }, { 114, 126, effects }, { 127, 127, pads },
};
}

std::span<const MenuTable> menuTables ()
{
    return tables;
}

const MenuTable& menuTable (std::int32_t tag)
{
    return *std::ranges::find (tables, tag, &MenuTable::tag);
}

std::span<const CommandEntry> commandEntries ()
{
    return commandTable;
}

int zoomEntryOf (std::uint32_t percent)
{
    const auto* found = std::ranges::find (zoomPercents, static_cast<int> (percent));
    return found == std::end (zoomPercents) ? 0 : static_cast<int> (found - std::begin (zoomPercents));
}

int zoomEntryFitting (double screenScale)
{
    if (screenScale <= 1.0)
        return -1;
    const auto distance = [screenScale] (int percent) { return std::abs (percent - screenScale * 100.0); };
    return static_cast<int> (std::ranges::min_element (zoomPercents, {}, distance) -
                             std::begin (zoomPercents));
}

std::vector<ProgramGroup> programGroups ()
{
    std::vector<ProgramGroup> groups;
    for (const char* title : groupOrder)
    {
        ProgramGroup& group = groups.emplace_back (ProgramGroup{ title, {} });
        for (const ProgramRun& run : programRuns)
        {
            for (std::int32_t program = run.first; run.group == title && program <= run.last; ++program)
                group.programs.push_back (program);
        }
    }
    return groups;
}

std::string programEntry (std::int32_t program, std::string_view name)
{
    char prefix[16];
    std::snprintf (prefix, sizeof prefix, "%03d", static_cast<int> (program) + 1);
    return std::string (prefix) + ' ' + std::string (name);
}

std::vector<std::string> learnMenuEntries (std::uint32_t controller)
{
    if (controller == 0)
        return { "MidiLearn" };
    char forget[32];
    std::snprintf (forget, sizeof forget, "Forget CC %d", static_cast<int> (controller));
    return { "MidiLearn New", forget };
}
}
