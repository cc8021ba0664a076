#pragma once

#include <string_view>

#include "editor/Toolkit.h"

namespace editor
{
namespace VstGraph
{
// Lies on a parameter's control, with its rectangle, and receives the mouse first: a right click opens the
// MIDI learn menu, everything else goes on to the control below. Its value after a choice is the parameter to
// learn, or that plus 1000 to forget it; the listener gets it with this object, not with the control's tag.
class CRightMenu : public VSTGUI::CControl
{
public:
    static constexpr std::int32_t storedTag = 53;
    static constexpr float forgetOffset = 1000.0f;

    // `servedControl` may be null; else it must outlive this object's time on the frame.
    CRightMenu (const VSTGUI::CRect& size, VSTGUI::IControlListener* listener, std::int32_t tag,
                VSTGUI::CControl* servedControl);
    CRightMenu (const CRightMenu& other);

    // Answers to its own class name and those of its bases.
    bool isTypeOf (std::string_view className) const;

    // The served control's tag, -1 without one.
    std::int32_t getTag () const override;

    // Bound controller as shown in the menu, 0: none.
    void setController (std::uint32_t number) { controller = number; }
    std::uint32_t boundController () const { return controller; }
    VSTGUI::CControl* servedControl () const { return served; }

    void draw (VSTGUI::CDrawContext* context) override;
    void onMouseDownEvent (VSTGUI::MouseDownEvent& event) override;
    void onMouseMoveEvent (VSTGUI::MouseMoveEvent& event) override;
    void onMouseUpEvent (VSTGUI::MouseUpEvent& event) override;
    void onMouseCancelEvent (VSTGUI::MouseCancelEvent& event) override;
    void onMouseWheelEvent (VSTGUI::MouseWheelEvent& event) override;

    VSTGUI::CBaseObject* newCopy () const override { return new CRightMenu (*this); }

private:
    void openMenu (const VSTGUI::CPoint& where);
    void chosen (std::int32_t entry);

    VSTGUI::COptionMenu* menu = nullptr; // while it is open
    VSTGUI::CControl* served;
    std::uint32_t controller = 0;
};
}
}
