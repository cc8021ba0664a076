#include "editor/SwitchButton.h"

namespace editor
{
using namespace VSTGUI;

void SwitchButton::draw (CDrawContext* context)
{
    if (CBitmap* picture = getDrawBackground ())
    {
        const CCoord frameHeight = picture->getHeight () / 2.0;
        picture->draw (context, getViewSize (), CPoint (0.0, isOn () ? frameHeight : 0.0));
    }
    setDirty (false);
}

CMouseEventResult SwitchButton::onMouseUp (CPoint& where, const CButtonState& /*buttons*/)
{
    if (!isEditing ())
        return kMouseEventHandled;
    if (getViewSize ().pointInside (where))
        change (!isOn ());
    endEdit ();
    return kMouseEventHandled;
}

void SwitchButton::onMouseWheelEvent (MouseWheelEvent& event)
{
    event.consumed = true;
    const bool on = event.deltaY > 0.0;
    if (event.deltaY == 0.0 || on == isOn ())
        return;
    beginEdit ();
    change (on);
    endEdit ();
}

void SwitchButton::change (bool on)
{
    value = on ? getMax () : getMin ();
    invalid ();
    valueChanged ();
}
}
