#pragma once

#include "editor/Toolkit.h"

namespace editor
{
enum class Arrow
{
    left,
    right,
    down
};

// The panel's one arrow: a filled triangle around `middle`, in panel pixels.
void drawArrow (VSTGUI::CDrawContext* context, const VSTGUI::CPoint& middle, Arrow direction,
                const VSTGUI::CColor& colour);
}
