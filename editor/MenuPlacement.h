#pragma once

namespace editor
{
// Where a menu that the panel draws itself comes to lie. Plain numbers in the panel's pixels.
struct MenuBox
{
    double left, top, right, bottom;

    double width () const { return right - left; }
    double height () const { return bottom - top; }
    bool contains (double x, double y) const { return x >= left && x < right && y >= top && y < bottom; }
};

// A menu of this size that leaves `anchor` (the button that opened it, or the spot that was clicked) free, so
// that no entry lies under the press: below it, else above it, else beside it. Higher than `area`: as high as
// that, and it has to scroll.
MenuBox placeMenu (double width, double height, const MenuBox& anchor, const MenuBox& area);

// The same for a submenu: right of the menu that it belongs to, else left of it, its first entry beside
// `row`, one of that menu's. Where neither side has room it lies beside the row's start and covers what is
// left.
MenuBox placeSubmenu (double width, double height, const MenuBox& menu, const MenuBox& row,
                      const MenuBox& area);
}
