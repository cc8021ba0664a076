#include "editor/MenuTable.h"

#include <gtest/gtest.h>

#include <fstream>
#include <map>

using namespace editor;

namespace
{
TEST (MenuTable, EntriesStandAtTheirNumbers)
{
    using Row = std::pair<std::int32_t, std::vector<const char*>>;
    for (const auto& [tag, texts] :
         { Row{ commandMainMenu,
                { "Save default bank", "Load factory bank", "About", "Save controller presets",
                  "MidiForget" } },
           Row{ paramGlideAuto, { "Off", "On" } }, Row{ paramShowKeys, { "Off", "On" } },
           Row{ paramHighQuality, { "On", "Off" } }, // 0.0 turns the quality on
           Row{ commandRandom, { "Bass Sounds", "Pad Sounds", "Lead Sounds", "FX Sounds" } } })
    {
        for (std::size_t entry = 0; entry < texts.size (); ++entry)
            EXPECT_STREQ (menuTable (tag).entries[entry], texts[entry]);
    }
    EXPECT_STREQ (menuTable (commandRandom).entries[useNumberKeysEntry], "Use Keys (1234)");
    EXPECT_EQ (learnMenuEntries (0), std::vector<std::string>{ "MidiLearn" });
    const auto bound = learnMenuEntries (74);
    ASSERT_EQ (bound.size (), 2u);
    EXPECT_EQ (bound[learnEntry], "MidiLearn New");
    EXPECT_EQ (bound[forgetEntry], "Forget CC 74");
}

TEST (MenuTable, ALargeScreenHasAZoomThatFitsIt)
{
    for (const auto& [scale, entry] : { std::pair{ 1.0, -1 }, std::pair{ 0.75, -1 }, std::pair{ 1.2, 1 },
                                        std::pair{ 2.25, 4 }, std::pair{ 2.3, 5 }, std::pair{ 8.0, 6 } })
        EXPECT_EQ (zoomEntryFitting (scale), entry) << scale;
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
