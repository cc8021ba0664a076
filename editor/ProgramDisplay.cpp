#include "editor/ProgramDisplay.h"

#include <algorithm>
#include <cmath>

#include "editor/Arrow.h"
#include "editor/Colours.h"

namespace editor
{
using namespace VSTGUI;

ProgramDisplay::ProgramDisplay (const CRect& size, CFontDesc* textFont, Actions whatToDo)
    : CView (size),
      font (textFont),
      actions (std::move (whatToDo))
{
    setTransparency (true);
}

void ProgramDisplay::setText (const std::string& newText)
{
    if (text == newText)
        return;
    text = newText;
    invalid ();
}

void ProgramDisplay::draw (CDrawContext* context)
{
    constexpr double inset = 8.0; // panel pixels, as all here
    constexpr double signWidth = 10.0;
    CRect textRect = getViewSize ();
    textRect.inset (inset, 0.0);
    const CPoint sign (textRect.right - signWidth / 2.0, textRect.getCenter ().y);
    textRect.right -= signWidth + inset;
    context->setFontColor (toColour (panel::accentColour));
    drawFitting (context, textRect);
    drawArrow (context, sign, Arrow::down, toColour (panel::letterColour));
    setDirty (false);
}

// A name as long as names can be is set smaller, and what is still too wide then is set closer.
void ProgramDisplay::drawFitting (CDrawContext* context, const CRect& rect) const
{
    constexpr double smallest = 11.0;
    const auto fitted = makeOwned<CFontDesc> (*font);
    context->setFont (fitted);
    double width = context->getStringWidth (text.c_str ());
    if (width > rect.getWidth ())
    {
        fitted->setSize (std::max (smallest, std::floor (font->getSize () * rect.getWidth () / width)));
        width = context->getStringWidth (text.c_str ());
    }
    const double squeeze = std::min (1.0, rect.getWidth () / std::max (width, 1.0));
    const CDrawContext::Transform transform (
        *context,
        CGraphicsTransform ().translate (-rect.left, 0.0).scale (squeeze, 1.0).translate (rect.left, 0.0));
    context->drawString (text.c_str (), CRect (rect.left, rect.top, rect.left + width + 1.0, rect.bottom),
                         kLeftText);
}

void ProgramDisplay::onMouseDownEvent (MouseDownEvent& event)
{
    if (!event.buttonState.isLeft () && !event.buttonState.isRight ())
        return;
    event.consumed = true;
    event.ignoreFollowUpMoveAndUpEvents (true);
    actions.openMenu ();
}

void ProgramDisplay::onMouseWheelEvent (MouseWheelEvent& event)
{
    event.consumed = true;
    if (event.deltaY != 0.0)
        actions.step (event.deltaY > 0.0 ? -1 : 1);
}
}
