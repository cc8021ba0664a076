#include "editor/MenuPlacement.h"

#include <gtest/gtest.h>

using namespace editor;

namespace
{
bool overlap (const MenuBox& one, const MenuBox& other)
{
    return one.left < other.right && other.left < one.right && one.top < other.bottom &&
           other.top < one.bottom;
}

bool inside (const MenuBox& box, const MenuBox& area)
{
    return box.left >= area.left && box.right <= area.right && box.top >= area.top &&
           box.bottom <= area.bottom;
}

// The widths and heights of the main menu, the list of groups and the longest group, about.
constexpr double mainWidth = 190.0, mainHeight = 330.0;
constexpr double groupWidth = 140.0, groupHeight = 110.0;
constexpr double listWidth = 210.0, listHeight = 560.0;

// Wherever it opens, with and without the keyboard: no entry under the press, everything on the panel, and
// every submenu beside the menu that it belongs to.
TEST (MenuPlacement, EveryMenuCanBeReachedFromEverywhere)
{
    for (const double height : { 433.0, 295.0 })
    {
        const MenuBox area = { 0.0, 0.0, 612.0, height };
        for (double x = 0.0; x < 612.0; x += 9.0)
        {
            for (double y = 0.0; y < height; y += 9.0)
            {
                const MenuBox spot = { x, y, x + 1.0, y + 1.0 };
                const MenuBox menu = placeMenu (mainWidth, mainHeight, spot, area);
                const MenuBox row = { menu.left, menu.bottom - 60.0, menu.right, menu.bottom - 42.0 };
                const MenuBox groups = placeSubmenu (groupWidth, groupHeight, menu, row, area);
                const MenuBox list = placeSubmenu (listWidth, listHeight, groups, groups, area);
                ASSERT_FALSE (overlap (menu, spot) || overlap (groups, menu) || overlap (list, groups))
                    << x << " " << y;
                ASSERT_TRUE (inside (menu, area) && inside (groups, area) && inside (list, area))
                    << x << " " << y;
            }
        }
    }
}

TEST (MenuPlacement, BelowThenAboveThenBeside)
{
    const MenuBox area = { 0.0, 0.0, 612.0, 433.0 };
    const MenuBox button = { 575.0, 48.0, 595.0, 68.0 };
    EXPECT_EQ (placeMenu (100.0, 300.0, button, area).top, 68.0);
    EXPECT_EQ (placeMenu (100.0, 300.0, button, area).right, 612.0) << "moved in from the edge";
    const MenuBox low = { 10.0, 400.0, 30.0, 420.0 };
    EXPECT_EQ (placeMenu (100.0, 300.0, low, area).bottom, 400.0);
    EXPECT_EQ (placeMenu (100.0, 400.0, button, area).right, 575.0);
    EXPECT_EQ (placeMenu (100.0, 425.0, low, area).left, 30.0);
}
}
