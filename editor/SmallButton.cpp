#include "editor/SmallButton.h"

#include "editor/Arrow.h"
#include "editor/Colours.h"

namespace editor
{
using namespace VSTGUI;

SmallButton::SmallButton (const CRect& size, CBitmap* picture, Sign buttonSign,
                          std::function<void ()> onPress)
    : CView (size),
      sign (buttonSign),
      press (std::move (onPress))
{
    setBackground (picture);
}

void SmallButton::draw (CDrawContext* context)
{
    if (getBackground () != nullptr)
    {
        const CCoord frameHeight = getBackground ()->getHeight () / 2.0;
        getBackground ()->draw (context, getViewSize (), CPoint (0.0, pressed ? frameHeight : 0.0));
    }
    drawSign (context);
    setDirty (false);
}

void SmallButton::drawSign (CDrawContext* context) const
{
    // Pixels from the button's middle; a pressed button's sign sinks with it.
    constexpr double barHalfWidth = 5.0;
    constexpr double barPitch = 4.0;
    CPoint middle = getViewSize ().getCenter ();
    middle.y += pressed ? 1.0 : 0.0;

    if (sign == Sign::menu)
    {
        context->setFillColor (toColour (panel::letterColour));
        context->setDrawMode (kAliasing); // on whole pixels
        for (const double offset : { -barPitch, 0.0, barPitch })
        {
            const CRect bar (middle.x - barHalfWidth, middle.y + offset - 1.0, middle.x + barHalfWidth,
                             middle.y + offset + 1.0);
            context->drawRect (bar, kDrawFilled);
        }
        return;
    }
    drawArrow (context, middle, sign == Sign::left ? Arrow::left : Arrow::right,
               toColour (panel::letterColour));
}

void SmallButton::onMouseDownEvent (MouseDownEvent& event)
{
    if (!event.buttonState.isLeft ())
        return;
    setPressed (true);
    event.consumed = true;
    if (sign == Sign::menu)
        event.ignoreFollowUpMoveAndUpEvents (true);
    press ();
}

void SmallButton::onMouseUpEvent (MouseUpEvent& event)
{
    setPressed (false);
    event.consumed = true;
}

void SmallButton::onMouseCancelEvent (MouseCancelEvent& event)
{
    setPressed (false);
    event.consumed = true;
}

void SmallButton::setPressed (bool isPressed)
{
    if (pressed == isPressed)
        return;
    pressed = isPressed;
    invalid ();
}
}
