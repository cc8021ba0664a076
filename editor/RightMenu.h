#pragma once

#include <functional>
#include <string_view>

#include "editor/ClickCounter.h"
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

    // Marks the control as waiting for a controller.
    void setLearning (bool on);

    // Shows a menu whose entries keep clear of `anchor` and calls `chosen` with the entry, -1 when it was
    // left.
    using MenuOpener =
        std::function<void (const VSTGUI::SharedPointer<VSTGUI::COptionMenu>& menu,
                            const VSTGUI::CRect& anchor, std::function<void (std::int32_t entry)> chosen)>;
    // `typeValue` is asked for with shift and a double click.
    void setActions (MenuOpener opener, std::function<void ()> typeValue);

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

    VSTGUI::CControl* served;
    std::uint32_t controller = 0;
    bool learning = false;
    MenuOpener openMenuWith;
    std::function<void ()> askForValue;
    ClickCounter clicks;
};
}
}
