// The written list of controls is the panel's table.
#include <gtest/gtest.h>

#include "resources/panel/ControlList.h"
#include "tests/panel/PanelFiles.h"

TEST (PanelControlList, isWhatTheTableSays)
{
    const std::vector<std::uint8_t> file = readResource ("../../docs/controls.md");
    EXPECT_EQ (std::string (file.begin (), file.end ()), panel::controlList ())
        << "renew it: makePanel --controls docs/controls.md";
}
