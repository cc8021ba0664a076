#include "editor/StepKnob.h"

#include <cmath>

namespace editor
{
using namespace VSTGUI;

namespace
{
constexpr float wheelShare = 0.02f;     // of the travel, for one notch
constexpr float fineDragFactor = 10.0f; // shift makes a drag this much longer
}

StepKnob::StepKnob (const CRect& size, IControlListener* viewListener, std::int32_t viewTag,
                    std::int32_t frames, CCoord frameHeight, CBitmap* bitmap)
    : CAnimKnob (size, viewListener, viewTag, frames, frameHeight, bitmap, CPoint (0, 0))
{
    setWheelInc (wheelShare);
    setZoomFactor (fineDragFactor);
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
    // The position is the one that is drawn; a value read back from a program may lie a hair below it.
    constexpr float roundingRoom = 1e-4f;
    const float last = static_cast<float> (getNumSubPixmaps () - 1);
    const float position = std::floor (getValueNormalized () * last + roundingRoom);
    const float next = std::clamp (position + (event.deltaY > 0.0 ? 1.0f : -1.0f), 0.0f, last) / last;
    if (next == getValueNormalized ())
        return;
    beginEdit ();
    setValueNormalized (next);
    valueChanged ();
    endEdit ();
    invalid ();
}
}
