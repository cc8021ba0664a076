// The written list of controls is the panel's table.
#include <gtest/gtest.h>

#include "tests/panel/PanelFiles.h"
#include "tools/makePanel/ControlList.h"

TEST (PanelControlList, isWhatTheTableSays)
{
    const std::vector<std::uint8_t> file = readResource ("../docs/controls.md");
    EXPECT_EQ (std::string (file.begin (), file.end ()), panelart::controlList ())
        << "renew it: makePanel --controls docs/controls.md";
}
