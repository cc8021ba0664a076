#include "editor/LevelSlider.h"

#include "editor/Turning.h"

namespace editor
{
using namespace VSTGUI;

LevelSlider::LevelSlider (const CRect& size, IControlListener* viewListener, std::int32_t viewTag,
                          const CPoint& handleOffset, CBitmap* handle)
    : CHorizontalSlider (size, viewListener, viewTag, handleOffset,
                         static_cast<std::int32_t> (size.getWidth ()), handle, nullptr, CPoint (0, 0),
                         CSlider::kLeft)
{
    setWheelInc (wheelShare);
    setZoomFactor (fineDragFactor);
}

void LevelSlider::onMouseWheelEvent (MouseWheelEvent& event)
{
    event.consumed = true;
    const auto notches = static_cast<float> (event.deltaY != 0.0 ? event.deltaY : -event.deltaX);
    if (notches == 0.0f)
        return;
    onMouseWheelEditing (this);
    const float step = event.modifiers.has (ModifierKey::Shift) ? wheelShare / fineDragFactor : wheelShare;
    setValueNormalized (getValueNormalized () + notches * step);
    if (!isDirty ())
        return;
    invalid ();
    valueChanged ();
}
}
