#include "editor/MenuPlacement.h"

#include <algorithm>

namespace editor
{
namespace
{
// From `low` on, but inside begin..end.
double kept (double low, double size, double begin, double end)
{
    return std::max (begin, std::min (low, end - size));
}
}

MenuBox placeMenu (double width, double wantedHeight, const MenuBox& anchor, const MenuBox& area)
{
    const double height = std::min (wantedHeight, area.height ());
    double left = kept (anchor.left, width, area.left, area.right);
    double top = anchor.bottom;
    if (top + height > area.bottom)
        top = anchor.top - height;
    if (top < area.top)
    {
        top = kept (anchor.bottom, height, area.top, area.bottom);
        left = anchor.right + width <= area.right ? anchor.right : anchor.left - width;
        left = kept (left, width, area.left, area.right);
    }
    return { left, top, left + width, top + height };
}

MenuBox placeSubmenu (double width, double wantedHeight, const MenuBox& menu, const MenuBox& row,
                      const MenuBox& area)
{
    const double height = std::min (wantedHeight, area.height ());
    const double top = kept (row.top, height, area.top, area.bottom);
    double left = menu.right;
    if (left + width > area.right)
        left = menu.left - width;
    left = kept (left, width, area.left, area.right);
    return { left, top, left + width, top + height };
}
}
