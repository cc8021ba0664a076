#pragma once

#include <chrono>
#include <functional>
#include <vector>

#include "editor/MenuPlacement.h"
#include "editor/Toolkit.h"

namespace editor
{
// A menu drawn inside the panel, for systems whose menus the toolkit would draw there too: that one opens
// under the pointer. Covers the panel while it is open, and gets every mouse event and, from its owner, every
// key. Goes by itself once an entry was chosen or it was left.
class PopupMenu : public VSTGUI::CView, public VSTGUI::IMouseObserver
{
public:
    // The chosen entry and the (sub)menu that it belongs to; null and -1 when the menu was left.
    using Done = std::function<void (VSTGUI::COptionMenu* menu, std::int32_t entry)>;

    // `anchor` stays free of entries: what was pressed to open the menu.
    PopupMenu (const VSTGUI::CRect& panelArea, VSTGUI::CFontDesc* textFont,
               VSTGUI::SharedPointer<VSTGUI::COptionMenu> rootMenu, const VSTGUI::CRect& anchor,
               Done whenDone);

    // To be called at every idle: opens the submenu that the mouse rests on.
    void idle ();
    void onKey (VSTGUI::KeyboardEvent& event);

    bool attached (VSTGUI::CView* parent) override;
    bool removed (VSTGUI::CView* parent) override;
    void draw (VSTGUI::CDrawContext* context) override;
    void onMouseWheelEvent (VSTGUI::MouseWheelEvent& event) override;
    void onMouseEntered (VSTGUI::CView* /*view*/, VSTGUI::CFrame* /*frame*/) override {}
    void onMouseExited (VSTGUI::CView* /*view*/, VSTGUI::CFrame* /*frame*/) override {}
    void onMouseEvent (VSTGUI::MouseEvent& event, VSTGUI::CFrame* frame) override;

private:
    // One open menu; each but the first belongs to a row of the one before.
    struct Level
    {
        VSTGUI::COptionMenu* menu;
        int parentRow; // -1 for the first
        MenuBox box;
        double contentHeight;
        double scrolled = 0.0; // pixels
        int selected = -1;     // row, -1: none
    };

    void openLevel (VSTGUI::COptionMenu* menu, int parentRow, const MenuBox& anchor);
    void closeLevels (std::size_t keep); // all but the first `keep`
    void openSubmenu (std::size_t level, bool selectFirst);
    void select (std::size_t level, int row);
    void moveSelection (std::size_t level, int step);
    void bringIntoView (Level& level, int row);
    void hover (const VSTGUI::CPoint& where);
    void choose (std::size_t level);
    void finish (VSTGUI::COptionMenu* menu, std::int32_t entry);
    std::size_t activeLevel () const;
    int levelAt (const VSTGUI::CPoint& where) const;
    int rowAt (const Level& level, double y) const;
    MenuBox rowBox (const Level& level, int row) const;
    void drawLevel (VSTGUI::CDrawContext& context, const Level& level) const;
    void drawRow (VSTGUI::CDrawContext& context, const Level& level, int row) const;

    VSTGUI::SharedPointer<VSTGUI::CFontDesc> font;
    VSTGUI::SharedPointer<VSTGUI::COptionMenu> root;
    Done done;
    std::vector<Level> levels;
    std::size_t hoveredLevel = 0;
    std::chrono::steady_clock::time_point hoveredSince;
    bool waits = false; // for the mouse to rest
    bool finished = false;
};
}
