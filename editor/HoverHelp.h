#pragma once

#include <chrono>
#include <functional>
#include <string>

#include "editor/Toolkit.h"

namespace editor
{
// One line about the view under the mouse: what it is and the value it has. Comes after a moment's rest, at
// once while a control is dragged, and goes when the mouse leaves. Drawn by the editor itself, for not every
// system gives the toolkit tips of its own.
class HoverHelp : public VSTGUI::IMouseObserver
{
public:
    // Tells a view's line; empty for views without one.
    using Lookup = std::function<std::string (VSTGUI::CView*)>;

    // The line goes directly below `viewAbove`.
    HoverHelp (VSTGUI::CFrame& owner, VSTGUI::CView* viewAbove, VSTGUI::CFontDesc* textFont, Lookup textOf);
    ~HoverHelp () override;

    // To be called at every idle; brings the line after the rest.
    void idle ();

    // The value under the mouse may have changed.
    void refresh ();
    void hide ();
    bool isShown () const { return label != nullptr; }

    void onMouseEntered (VSTGUI::CView* view, VSTGUI::CFrame* frame) override;
    void onMouseExited (VSTGUI::CView* view, VSTGUI::CFrame* frame) override;
    void onMouseEvent (VSTGUI::MouseEvent& event, VSTGUI::CFrame* frame) override;

private:
    class Label;
    void show ();

    VSTGUI::CFrame& frame;
    VSTGUI::CView* above;
    VSTGUI::SharedPointer<VSTGUI::CFontDesc> font;
    Lookup lookup;
    VSTGUI::CView* hovered = nullptr;
    std::chrono::steady_clock::time_point since;
    Label* label = nullptr; // the frame's, while it is shown
};
}
