#include "editor/MenuTable.h"

#include <gtest/gtest.h>

#include <fstream>
#include <map>

using namespace editor;

namespace
{
// The commands' numbers are positions in the menus.
TEST (MenuTable, EntriesStandAtTheirNumbers)
{
    struct Entry
    {
        std::int32_t tag;
        std::size_t number;
        const char* text;
    };
    const Entry entries[] = {
        { commandMainMenu, 0, "Save default bank" },
        { commandMainMenu, 1, "Load factory bank" },
        { commandMainMenu, 2, "About" },
        { commandMainMenu, 3, "Save controller presets" },
        { commandMainMenu, 4, "MidiForget" },
        { paramGlideAuto, 1, "On" },
        { paramShowKeys, 1, "On" },
        { paramHighQuality, 1, "Off" }, // 0.0 turns the quality on
        { commandRandom, 0, "Bass Sounds" },
        { commandRandom, 1, "Pad Sounds" },
        { commandRandom, 2, "Lead Sounds" },
        { commandRandom, 3, "FX Sounds" },
        { commandRandom, useNumberKeysEntry, "Use Keys (1234)" },
    };
    for (const Entry& entry : entries)
        EXPECT_STREQ (menuTable (entry.tag).entries[entry.number], entry.text);
}

TEST (MenuTable, ALargeScreenHasAZoomThatFitsIt)
{
    EXPECT_EQ (zoomEntryFitting (1.0), -1);
    EXPECT_EQ (zoomEntryFitting (0.75), -1);
    EXPECT_EQ (zoomEntryFitting (1.2), 1);
    EXPECT_EQ (zoomEntryFitting (2.25), 4);
    EXPECT_EQ (zoomEntryFitting (2.3), 5);
    EXPECT_EQ (zoomEntryFitting (8.0), 6);
}

TEST (MenuTable, LearnMenus)
{
    EXPECT_EQ (learnMenuEntries (0), std::vector<std::string>{ "MidiLearn" });
    const auto bound = learnMenuEntries (74);
    ASSERT_EQ (bound.size (), 2u);
    EXPECT_EQ (bound[learnEntry], "MidiLearn New");
    EXPECT_EQ (bound[forgetEntry], "Forget CC 74");
}

TEST (MenuTable, EveryProgramStandsOnceInTheGroupOfItsKind)
{
    const std::map<std::string, std::string> groupOfKind = {
        { "bass", "Bass" },
        { "lead", "Leads" },
        { "pad", "Pads" },
        { "keys", "Keys and plucks" },
        { "pluck", "Keys and plucks" },
        { "sequence", "Sequences" },
        { "effect", "Effects" },
    };
    const std::string kindField = "kind = ";
    std::map<std::string, std::vector<std::int32_t>> expected;
    std::int32_t program = 0;
    std::ifstream source (SOURCE_FOLDER "/resources/bank/factorybank.txt");
    for (std::string line; std::getline (source, line);)
    {
        if (line.starts_with (kindField))
            expected[groupOfKind.at (line.substr (kindField.size ()))].push_back (program++);
    }
    EXPECT_EQ (program, 128);
    const auto groups = programGroups ();
    EXPECT_EQ (groups.size (), expected.size ());
    for (const ProgramGroup& group : groups)
        EXPECT_EQ (group.programs, expected[group.title]) << group.title;
}
}
