#include "editor/StepKnob.h"

#include <algorithm>
#include <cmath>

#include "editor/Turning.h"

namespace editor
{
using namespace VSTGUI;

StepKnob::StepKnob (const CRect& size, IControlListener* viewListener, std::int32_t viewTag,
                    std::int32_t frames, CCoord frameHeight, CBitmap* bitmap, PositionLaw positionLaw)
    : CAnimKnob (size, viewListener, viewTag, frames, frameHeight, bitmap, CPoint (0, 0)),
      law (positionLaw)
{
    setWheelInc (wheelShare);
    setZoomFactor (fineDragFactor);
}

std::int32_t StepKnob::position () const
{
    const std::int32_t last = std::max (0, getNumSubPixmaps () - 1);
    if (law != nullptr)
        return std::clamp (law (value), 0, last);
    // A value read back from a program may lie a hair below its position.
    constexpr float roundingRoom = 1e-4f;
    return static_cast<std::int32_t> (
        std::floor (getValueNormalized () * static_cast<float> (last) + roundingRoom));
}

void StepKnob::draw (CDrawContext* context)
{
    if (law == nullptr)
    {
        CAnimKnob::draw (context);
        return;
    }
    if (CBitmap* picture = getDrawBackground ())
        picture->draw (context, getViewSize (), CPoint (0.0, position () * getHeightOfOneImage ()));
    setDirty (false);
}

void StepKnob::onMouseWheelEvent (MouseWheelEvent& event)
{
    if (!isStepped ())
    {
        CAnimKnob::onMouseWheelEvent (event);
        return;
    }
    event.consumed = true;
    if (event.deltaY == 0.0)
        return;
    const std::int32_t last = getNumSubPixmaps () - 1;
    const std::int32_t to = std::clamp (position () + (event.deltaY > 0.0 ? 1 : -1), 0, last);
    if (to == position ())
        return;
    beginEdit ();
    setValueNormalized (static_cast<float> (to) / static_cast<float> (last));
    valueChanged ();
    endEdit ();
    invalid ();
}
}
