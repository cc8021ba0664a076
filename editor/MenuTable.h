#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "parameters/Parameters.h"

namespace editor
{
using namespace parameters;

// Every menu of the editor as data. An entry's index, counted from 0 with separators, is its meaning.

// Tag of the zoom menu: above every command, for it concerns the editor alone.
inline constexpr std::int32_t zoomMenuTag = commandRandom + 1;

inline constexpr const char* menuSeparator = nullptr; // in place of an entry's text

struct MenuTable
{
    std::int32_t tag;                     // what a choice travels under
    const char* title;                    // as a submenu of the main menu; null for the main menu itself
    std::span<const char* const> entries; // empty: the list of programs
};

// The main menu first, then its submenus in order.
std::span<const MenuTable> menuTables ();
const MenuTable& menuTable (std::int32_t tag); // `tag` must be in the table

// What follows below the submenus in the main menu: commands of the panel's own, each under a tag of its own.
enum PanelCommand : std::int32_t
{
    commandUndo = 60,
    commandRedo,
    commandRenameProgram,
    commandPedalAndWheel,
    commandSongLock,
    commandLoadFile,
    commandSaveProgram,
    commandSaveBank
};
struct CommandEntry
{
    std::int32_t tag;
    const char* title;
};
std::span<const CommandEntry> commandEntries ();

// Entries of the random-sound menu: the categories from 0, then this one.
inline constexpr int useNumberKeysEntry = 5;

// Entries of the zoom menu, in percent.
inline constexpr int zoomPercents[] = { 100, 125, 150, 175, 200, 250, 300 };

// A stored zoom as an entry of that menu; 0 for unknown ones.
int zoomEntryOf (std::uint32_t percent);

// The entry that comes nearest to what the system enlarges everything by; -1 where it enlarges nothing. The
// menu marks it with these words.
int zoomEntryFitting (double screenScale);
inline constexpr const char* fittingZoomMark = " (fits this screen)";

// The programs of one kind, in the order of their numbers.
struct ProgramGroup
{
    const char* title;
    std::vector<std::int32_t> programs;
};
std::vector<ProgramGroup> programGroups ();

// "001 Init": number from 1 with three digits, and the name.
std::string programEntry (std::int32_t program, std::string_view name);

// The menu behind a right click on a control: learn first, then what forgets the bound controller, if any.
inline constexpr std::int32_t learnEntry = 0;
inline constexpr std::int32_t forgetEntry = 1;
std::vector<std::string> learnMenuEntries (std::uint32_t controller);
}
