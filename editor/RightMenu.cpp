#include "editor/RightMenu.h"

#include "editor/MenuTable.h"

namespace editor
{
using namespace VSTGUI;

namespace VstGraph
{
namespace
{
// The host would take the menu's tag for a parameter that is being edited.
class LearnPopup : public COptionMenu
{
public:
    using COptionMenu::COptionMenu;
    void beginEdit () override {}
    void endEdit () override {}
};
}

CRightMenu::CRightMenu (const CRect& size, IControlListener* viewListener, std::int32_t viewTag,
                        CControl* servedControl)
    : CControl (size, viewListener, viewTag),
      served (servedControl)
{
    setTransparency (true);
}

CRightMenu::CRightMenu (const CRightMenu& other)
    : CControl (other),
      menu (other.menu),
      served (other.served),
      controller (other.controller)
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

void CRightMenu::draw (CDrawContext* /*context*/)
{
    setDirty (false);
}

void CRightMenu::onMouseDownEvent (MouseDownEvent& event)
{
    if (event.buttonState.isRight ())
    {
        const CPoint where = event.mousePosition;
        const auto self = shared (this);
        getFrame ()->doAfterEventProcessing ([self, where] { self->openMenu (where); });
        event.ignoreFollowUpMoveAndUpEvents (true);
    }
    else if (served != nullptr)
    {
        served->dispatchEvent (event);
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
    if (getFrame () == nullptr || menu != nullptr)
        return;
    CRect rect (where.x, where.y, where.x + 1, where.y + 1);
    rect.normalize ();
    menu = new LearnPopup (rect, nullptr, 0);
    for (const auto& title : learnMenuEntries (controller))
        menu->addEntry (title.c_str ());
    getFrame ()->addView (menu);

    // The toolkit's menus may close later than this call returns, and with the frame.
    const auto self = shared (this);
    menu->popup (
        [self] (COptionMenu* closed)
        {
            const std::int32_t entry = closed->getLastResult ();
            self->menu = nullptr;
            if (CFrame* frame = closed->getFrame ())
                frame->removeView (closed);
            self->chosen (entry);
        });
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
