// The written list of controls is the panel's table.
#include <gtest/gtest.h>

#include "resources/panel/ControlList.h"
#include "tests/panel/PanelFiles.h"

TEST (PanelControlList, isWhatTheTableSays)
{
    const auto file = readResource ("../../docs/controls.md");
    EXPECT_EQ (std::string (reinterpret_cast<const char*> (file.data ()), file.size ()),
               panel::controlList ())
        << "renew it: makePanel --controls docs/controls.md";
}
