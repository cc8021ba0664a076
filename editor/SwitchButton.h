#pragma once

#include "editor/Toolkit.h"

namespace editor
{
// An on/off button that is on for every value above 0, as what it switches is: learned controllers and drawn
// automation leave values in between. A click, or a notch of the wheel, goes to one of the two ends.
class SwitchButton : public VSTGUI::COnOffButton
{
public:
    using COnOffButton::COnOffButton;

    void draw (VSTGUI::CDrawContext* context) override;
    VSTGUI::CMouseEventResult onMouseUp (VSTGUI::CPoint& where, const VSTGUI::CButtonState& buttons) override;
    void onMouseWheelEvent (VSTGUI::MouseWheelEvent& event) override;

    CLASS_METHODS (SwitchButton, COnOffButton)

private:
    bool isOn () const { return value > getMin (); }
    void change (bool on);
};
}
