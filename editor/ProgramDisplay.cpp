#include "editor/ProgramDisplay.h"

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
    constexpr double inset = 8.0;
    CRect textRect = getViewSize ();
    textRect.inset (inset, 0.0);
    context->setFont (font);
    context->setFontColor (toColour (panel::accentColour));
    context->drawString (text.c_str (), textRect, kLeftText);
    setDirty (false);
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
