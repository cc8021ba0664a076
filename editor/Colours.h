#pragma once

#include "editor/Toolkit.h"
#include "resources/panel/PanelLayout.h"

namespace editor
{
// The panel's tables in the toolkit's types.

inline VSTGUI::CColor toColour (const panel::Colour& colour)
{
    return { colour.red, colour.green, colour.blue, 255 };
}

inline VSTGUI::CRect toRect (const panel::Rect& rect)
{
    return { static_cast<double> (rect.x), static_cast<double> (rect.y), static_cast<double> (rect.right ()),
             static_cast<double> (rect.bottom ()) };
}
}
