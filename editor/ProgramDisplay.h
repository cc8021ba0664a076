#pragma once

#include <functional>
#include <string>

#include "editor/Toolkit.h"

namespace editor
{
// Shows the current program's number and name, and a sign that a list opens. A click asks for the program
// menu, the wheel steps.
class ProgramDisplay : public VSTGUI::CView
{
public:
    struct Actions
    {
        std::function<void ()> openMenu;
        std::function<void (std::int32_t)> step; // +1 next, -1 previous
    };

    ProgramDisplay (const VSTGUI::CRect& size, VSTGUI::CFontDesc* textFont, Actions whatToDo);

    void setText (const std::string& newText);
    const std::string& shownText () const { return text; }

    void draw (VSTGUI::CDrawContext* context) override;
    void onMouseDownEvent (VSTGUI::MouseDownEvent& event) override;
    void onMouseWheelEvent (VSTGUI::MouseWheelEvent& event) override;

private:
    void drawFitting (VSTGUI::CDrawContext* context, const VSTGUI::CRect& rect) const;

    VSTGUI::SharedPointer<VSTGUI::CFontDesc> font;
    Actions actions;
    std::string text;
};
}
