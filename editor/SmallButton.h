#pragma once

#include <functional>

#include "editor/Toolkit.h"

namespace editor
{
// A push button with a sign on it that acts while going down: steps the program or opens the menu. The one
// for the menu stays down until it is released from outside, for the open menu gets the mouse.
class SmallButton : public VSTGUI::CView
{
public:
    enum class Sign
    {
        left,
        right,
        menu // three bars
    };

    // `picture` holds the button up, then pressed.
    SmallButton (const VSTGUI::CRect& size, VSTGUI::CBitmap* picture, Sign buttonSign,
                 std::function<void ()> onPress);

    void release () { setPressed (false); }

    void draw (VSTGUI::CDrawContext* context) override;
    void onMouseDownEvent (VSTGUI::MouseDownEvent& event) override;
    void onMouseUpEvent (VSTGUI::MouseUpEvent& event) override;
    void onMouseCancelEvent (VSTGUI::MouseCancelEvent& event) override;

private:
    void setPressed (bool isPressed);
    void drawSign (VSTGUI::CDrawContext* context) const;

    Sign sign;
    std::function<void ()> press;
    bool pressed = false;
};
}
