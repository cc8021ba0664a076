#include "editor/MenuTable.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <map>
#include <set>

using namespace editor;

namespace
{
std::vector<std::string> entriesOf (std::int32_t tag)
{
    std::vector<std::string> texts;
    for (const char* entry : menuTable (tag).entries)
        texts.emplace_back (entry != menuSeparator ? entry : "-");
    return texts;
}

// The commands' numbers are positions in these lists.
TEST (MenuTable, EntriesStandAtTheirNumbers)
{
    using Texts = std::vector<std::string>;
    EXPECT_EQ (entriesOf (commandMainMenu), (Texts{ "Save default bank", "Load factory bank", "About",
                                                    "Save controller presets", "MidiForget" }));
    EXPECT_EQ (entriesOf (commandMainMenu)[menuAbout], "About");
    EXPECT_EQ (entriesOf (commandMainMenu)[menuMidiForget], "MidiForget");
    EXPECT_EQ (entriesOf (paramGlideAuto), (Texts{ "Off", "On" }));
    EXPECT_EQ (entriesOf (paramShowKeys), (Texts{ "Off", "On" }));
    EXPECT_EQ (entriesOf (paramHighQuality), (Texts{ "On", "Off" })) << "0.0 turns the quality on";
    EXPECT_EQ (entriesOf (commandRandom),
               (Texts{ "Bass Sounds", "Pad Sounds", "Lead Sounds", "FX Sounds", "-", "Use Keys (1234)" }));
    EXPECT_EQ (entriesOf (commandRandom)[useNumberKeysEntry], "Use Keys (1234)");
}

TEST (MenuTable, SubmenusOfTheMainMenu)
{
    std::vector<std::string> titles;
    std::set<std::int32_t> tags;
    for (const MenuTable& table : menuTables ())
    {
        EXPECT_TRUE (tags.insert (table.tag).second) << "tag used twice: " << table.tag;
        if (table.title != nullptr)
            titles.emplace_back (table.title);
    }
    EXPECT_EQ (titles, (std::vector<std::string>{ "AutoGlide", "Presets", "Keyboard", "Random", "HighQuality",
                                                  "Zoom" }));
    EXPECT_EQ (menuTable (commandProgram).title, std::string ("Presets"));
}

TEST (MenuTable, UnknownZoomsCountAsNone)
{
    EXPECT_EQ (zoomEntryOf (0), 0);
    EXPECT_EQ (zoomEntryOf (100), 0);
    EXPECT_EQ (zoomEntryOf (150), 2);
    EXPECT_EQ (zoomEntryOf (160), 0);
    EXPECT_EQ (zoomEntryOf (300), 6);
    EXPECT_EQ (zoomEntryOf (4000000000u), 0);
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

// Kind of each program as the bank's source tells it.
std::map<std::int32_t, std::string> kindsOfFactoryBank ()
{
    std::map<std::int32_t, std::string> kinds;
    std::ifstream source (SOURCE_FOLDER "/resources/bank/factorybank.txt");
    std::int32_t program = -1;
    for (std::string line; std::getline (source, line);)
    {
        if (line.starts_with ("[") && std::isdigit (static_cast<unsigned char> (line[1])) != 0)
            program = std::stoi (line.substr (1));
        else if (line.starts_with ("kind = ") && program >= 0)
            kinds[program] = line.substr (std::string ("kind = ").size ());
    }
    return kinds;
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
    const auto kinds = kindsOfFactoryBank ();
    ASSERT_EQ (kinds.size (), 128u);
    std::set<std::int32_t> listed;
    for (const ProgramGroup& group : programGroups ())
    {
        EXPECT_TRUE (std::ranges::is_sorted (group.programs)) << group.title;
        for (const std::int32_t program : group.programs)
        {
            EXPECT_TRUE (listed.insert (program).second) << "listed twice: " << program;
            EXPECT_EQ (groupOfKind.at (kinds.at (program)), group.title) << "program " << program;
        }
    }
    EXPECT_EQ (listed.size (), 128u);
}
}
