#include "editor/RightMenu.h"

#include "editor/Colours.h"
#include "editor/MenuTable.h"
#include "editor/QuietMenu.h"

namespace editor
{
using namespace VSTGUI;

namespace VstGraph
{
CRightMenu::CRightMenu (const CRect& size, IControlListener* viewListener, std::int32_t viewTag,
                        CControl* servedControl)
    : CControl (size, viewListener, viewTag),
      served (servedControl)
{
    setTransparency (true);
}

CRightMenu::CRightMenu (const CRightMenu& other)
    : CControl (other),
      served (other.served),
      controller (other.controller),
      learning (other.learning),
      openMenuWith (other.openMenuWith),
      askForValue (other.askForValue)
{
}

bool CRightMenu::isTypeOf (std::string_view className) const
{
    return className == "CRightMenu" || className == "CControl" || className == "CView" ||
           className == "CBaseObject";
}

std::int32_t CRightMenu::getTag () const
{
    return served != nullptr ? served->getTag () : -1;
}

void CRightMenu::setLearning (bool on)
{
    if (learning == on)
        return;
    learning = on;
    invalid ();
}

void CRightMenu::setActions (MenuOpener opener, std::function<void ()> typeValue)
{
    openMenuWith = std::move (opener);
    askForValue = std::move (typeValue);
}

// A frame around the control while it waits.
void CRightMenu::draw (CDrawContext* context)
{
    if (learning)
    {
        const CRect& all = getViewSize ();
        context->setFillColor (toColour (panel::accentColour));
        for (const CRect& side : { CRect (all.left, all.top, all.right, all.top + 1.0),
                                   CRect (all.left, all.bottom - 1.0, all.right, all.bottom),
                                   CRect (all.left, all.top, all.left + 1.0, all.bottom),
                                   CRect (all.right - 1.0, all.top, all.right, all.bottom) })
            context->drawRect (side, kDrawFilled);
    }
    setDirty (false);
}

void CRightMenu::onMouseDownEvent (MouseDownEvent& event)
{
    const CPoint where = event.mousePosition;
    if (event.buttonState.isRight ())
    {
        event.ignoreFollowUpMoveAndUpEvents (true);
        openMenu (where);
    }
    else if (served != nullptr)
    {
        if (event.buttonState.isLeft ())
        {
            const bool second = clicks.isSecond (where.x, where.y, std::chrono::steady_clock::now ());
            event.clickCount = second || event.clickCount == 2 ? 2 : 1;
        }
        if (event.clickCount == 2 && event.modifiers.has (ModifierKey::Shift) && askForValue)
        {
            event.ignoreFollowUpMoveAndUpEvents (true);
            askForValue ();
        }
        else
        {
            served->dispatchEvent (event);
        }
    }
    event.consumed = true;
}

void CRightMenu::onMouseMoveEvent (MouseMoveEvent& event)
{
    if (served == nullptr || !event.buttonState.isLeft ())
        return;
    served->dispatchEvent (event);
    event.consumed = true;
}

void CRightMenu::onMouseUpEvent (MouseUpEvent& event)
{
    if (served != nullptr)
        served->dispatchEvent (event);
    event.consumed = true;
}

void CRightMenu::onMouseCancelEvent (MouseCancelEvent& event)
{
    if (served != nullptr)
        served->dispatchEvent (event);
    event.consumed = true;
}

void CRightMenu::onMouseWheelEvent (MouseWheelEvent& event)
{
    if (served != nullptr)
        served->dispatchEvent (event);
}

void CRightMenu::openMenu (const CPoint& where)
{
    if (!openMenuWith)
        return;
    CRect spot (where.x, where.y, where.x + 1, where.y + 1);
    spot.normalize ();
    const auto menu = makeOwned<QuietMenu> (spot, nullptr, 0);
    for (const auto& title : learnMenuEntries (controller))
        menu->addEntry (title.c_str ());
    const auto self = shared (this); // what is chosen may come after the panel was closed
    openMenuWith (menu, spot, [self] (std::int32_t entry) { self->chosen (entry); });
}

void CRightMenu::chosen (std::int32_t entry)
{
    if (entry != learnEntry && entry != forgetEntry)
        return;
    if (served != nullptr)
        value = static_cast<float> (served->getTag ()) + (entry == forgetEntry ? forgetOffset : 0.0f);
    valueChanged ();
}
}
}
