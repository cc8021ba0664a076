#include "editor/Arrow.h"

namespace editor
{
using namespace VSTGUI;

void drawArrow (CDrawContext* context, const CPoint& middle, Arrow direction, const CColor& colour)
{
    constexpr double halfLength = 3.0; // from the base to the tip
    constexpr double halfBase = 4.0;
    const auto corner = [&] (double along, double across)
    {
        if (direction == Arrow::down)
            return CPoint (middle.x + across, middle.y + along);
        return CPoint (middle.x + (direction == Arrow::left ? -along : along), middle.y + across);
    };
    const CDrawContext::PointList triangle = { corner (halfLength, 0.0), corner (-halfLength, -halfBase),
                                               corner (-halfLength, halfBase), corner (halfLength, 0.0) };
    context->setFillColor (colour);
    // Not to whole pixels, which made the two sides of an arrow, and two arrows, differ.
    context->setDrawMode (kAntiAliasing | kNonIntegralMode);
    context->drawPolygon (triangle, kDrawFilled);
}
}
