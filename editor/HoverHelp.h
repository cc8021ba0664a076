#pragma once

#include <chrono>
#include <functional>
#include <optional>
#include <string>

#include "editor/Toolkit.h"

namespace editor
{
// One line about what lies under the mouse: what it is and the value it has. Comes after a moment's rest, at
// once while a control is dragged, and goes when the mouse leaves. Drawn by the editor itself, for not every
// system gives the toolkit tips of its own.
class HoverHelp : public VSTGUI::IMouseObserver
{
public:
    // A place with something to tell.
    struct Zone
    {
        VSTGUI::CRect place;   // where the mouse brings the line
        VSTGUI::CRect caption; // the place and its printed name: the line lies beside it
        std::string text;
        bool draggable = false; // a press brings the line at once and keeps it
    };
    using Lookup = std::function<std::optional<Zone> (const VSTGUI::CPoint& where)>;

    // The line goes directly below `viewAbove`.
    HoverHelp (VSTGUI::CFrame& owner, VSTGUI::CView* viewAbove, VSTGUI::CFontDesc* textFont, Lookup zoneAt);
    ~HoverHelp () override;

    // To be called at every idle; brings the line after the rest.
    void idle ();

    // The value under the mouse may have changed; the user has changed it, so that it is told at once.
    void refresh ();
    void tellNow ();

    // What the line tells while the mouse is nowhere else: a point of its zone. Null: nothing.
    void pin (std::optional<VSTGUI::CPoint> where);

    // While a menu or a text field is open there is no line.
    void setSilent (bool on);

    // Where the mouse was last; null when it has left.
    std::optional<VSTGUI::CPoint> mouse () const;

    void onMouseEntered (VSTGUI::CView* view, VSTGUI::CFrame* frame) override;
    void onMouseExited (VSTGUI::CView* view, VSTGUI::CFrame* frame) override;
    void onMouseEvent (VSTGUI::MouseEvent& event, VSTGUI::CFrame* frame) override;

private:
    class Label;
    void follow (const VSTGUI::CPoint& where);
    void show (const Zone& zone);
    void hide ();

    VSTGUI::CFrame& frame;
    VSTGUI::CView* above;
    VSTGUI::SharedPointer<VSTGUI::CFontDesc> font;
    Lookup lookup;
    VSTGUI::CPoint position;
    bool inside = false;                  // the mouse is on the panel
    std::optional<VSTGUI::CRect> hovered; // place of the zone under the mouse
    bool dragging = false;                // it stays that one
    bool silent = false;
    bool rested = false; // the line for that zone is due
    std::optional<VSTGUI::CPoint> pinned;
    std::chrono::steady_clock::time_point since;
    Label* label = nullptr; // the frame's, while it is shown
};
}
