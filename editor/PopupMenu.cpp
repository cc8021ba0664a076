#include "editor/PopupMenu.h"

#include <algorithm>

#include "editor/Colours.h"

namespace editor
{
using namespace VSTGUI;

namespace
{
constexpr auto rest = std::chrono::milliseconds (150); // long enough to cross rows on the way to a submenu
constexpr double rowHeight = 18.0;                     // pixels, all of these
constexpr double separatorHeight = 7.0;
constexpr double textLeft = 22.0;  // room for the check mark
constexpr double textRight = 20.0; // room for the submenu's arrow
constexpr double frameWidth = 1.0;
constexpr double wheelRows = 3.0; // for one notch

bool isSelectable (const CMenuItem& item)
{
    return !item.isSeparator () && item.isEnabled ();
}

double heightOf (const CMenuItem& item)
{
    return item.isSeparator () ? separatorHeight : rowHeight;
}

CRect toRect (const MenuBox& box)
{
    return { box.left, box.top, box.right, box.bottom };
}

MenuBox toBox (const CRect& rect)
{
    return { rect.left, rect.top, rect.right, rect.bottom };
}
}

PopupMenu::PopupMenu (const CRect& panelArea, CFontDesc* textFont, SharedPointer<COptionMenu> rootMenu,
                      const CRect& anchor, Done whenDone)
    : CView (panelArea),
      font (textFont),
      root (std::move (rootMenu)),
      done (std::move (whenDone))
{
    setTransparency (true);
    openLevel (root, -1, toBox (anchor));
}

bool PopupMenu::attached (CView* parent)
{
    const bool joined = CView::attached (parent);
    getFrame ()->registerMouseObserver (this);
    return joined;
}

bool PopupMenu::removed (CView* parent)
{
    getFrame ()->unregisterMouseObserver (this);
    return CView::removed (parent);
}

void PopupMenu::openLevel (COptionMenu* menu, int parentRow, const MenuBox& anchor)
{
    const auto context = COffscreenContext::create (CPoint (1.0, 1.0));
    context->setFont (font);
    double textWidth = 0.0;
    double contentHeight = 0.0;
    for (const auto& item : *menu->getItems ())
    {
        textWidth = std::max (textWidth, context->getStringWidth (item->getTitle ()));
        contentHeight += heightOf (*item);
    }
    const double width = std::ceil (textWidth) + textLeft + textRight;
    const double height = contentHeight + 2.0 * frameWidth;
    const MenuBox area = toBox (getViewSize ());
    const MenuBox box = parentRow < 0 ? placeMenu (width, height, anchor, area)
                                      : placeSubmenu (width, height, levels.back ().box, anchor, area);
    levels.push_back ({ menu, parentRow, box, contentHeight });
    invalidRect (toRect (box));
}

void PopupMenu::closeLevels (std::size_t keep)
{
    while (levels.size () > keep)
    {
        invalidRect (toRect (levels.back ().box));
        levels.pop_back ();
    }
}

void PopupMenu::openSubmenu (std::size_t level, bool selectFirst)
{
    const int row = levels[level].selected;
    const bool isOpen = levels.size () > level + 1 && levels[level + 1].parentRow == row;
    if (!isOpen)
    {
        closeLevels (level + 1);
        CMenuItem* item = levels[level].menu->getEntry (row);
        if (item == nullptr || item->getSubmenu () == nullptr)
            return;
        openLevel (item->getSubmenu (), row, rowBox (levels[level], row));
    }
    if (selectFirst && levels.size () > level + 1)
    {
        levels[level + 1].selected = -1;
        moveSelection (level + 1, 1);
    }
}

void PopupMenu::select (std::size_t level, int row)
{
    for (std::size_t outer = 0; outer < level; ++outer)
        levels[outer].selected = levels[outer + 1].parentRow;
    const CMenuItem* item = levels[level].menu->getEntry (row);
    levels[level].selected = item != nullptr && isSelectable (*item) ? row : -1;
    invalidRect (toRect (levels[level].box));
    if (level > 0)
        invalidRect (toRect (levels[level - 1].box));
}

// The innermost menu with a selection has the keyboard.
std::size_t PopupMenu::activeLevel () const
{
    std::size_t level = levels.size () - 1;
    while (level > 0 && levels[level].selected < 0 && levels[level - 1].selected >= 0)
        --level;
    return level;
}

void PopupMenu::moveSelection (std::size_t level, int step)
{
    closeLevels (level + 1);
    Level& here = levels[level];
    const int count = here.menu->getNbEntries ();
    int row = here.selected >= 0 ? here.selected : (step > 0 ? -1 : count);
    for (int tried = 0; tried < count; ++tried)
    {
        row = (row + step + count) % count;
        if (isSelectable (*here.menu->getEntry (row)))
            break;
    }
    select (level, row);
    bringIntoView (levels[level], row);
}

void PopupMenu::bringIntoView (Level& level, int row)
{
    const MenuBox box = rowBox (level, row);
    if (box.top < level.box.top)
        level.scrolled -= level.box.top - box.top;
    else if (box.bottom > level.box.bottom)
        level.scrolled += box.bottom - level.box.bottom;
}

void PopupMenu::idle ()
{
    if (!waits || std::chrono::steady_clock::now () - hoveredSince < rest)
        return;
    waits = false;
    if (hoveredLevel < levels.size ())
        openSubmenu (hoveredLevel, false);
}

int PopupMenu::levelAt (const CPoint& where) const
{
    for (std::size_t level = levels.size (); level-- > 0;)
    {
        if (levels[level].box.contains (where.x, where.y))
            return static_cast<int> (level);
    }
    return -1;
}

MenuBox PopupMenu::rowBox (const Level& level, int row) const
{
    double top = level.box.top + frameWidth - level.scrolled;
    for (int before = 0; before < row; ++before)
        top += heightOf (*level.menu->getEntry (before));
    return { level.box.left + frameWidth, top, level.box.right - frameWidth,
             top + heightOf (*level.menu->getEntry (row)) };
}

int PopupMenu::rowAt (const Level& level, double y) const
{
    for (int row = 0; row < level.menu->getNbEntries (); ++row)
    {
        const MenuBox box = rowBox (level, row);
        if (y >= box.top && y < box.bottom)
            return row;
    }
    return -1;
}

void PopupMenu::hover (const CPoint& where)
{
    const int found = levelAt (where);
    if (found < 0)
    {
        if (levels.back ().selected >= 0)
            select (levels.size () - 1, -1);
        waits = false;
        return;
    }
    const auto level = static_cast<std::size_t> (found);
    const int row = rowAt (levels[level], where.y);
    if (level == hoveredLevel && row == levels[level].selected)
        return;
    select (level, row);
    hoveredLevel = level;
    hoveredSince = std::chrono::steady_clock::now ();
    waits = true;
}

void PopupMenu::choose (std::size_t level)
{
    const int row = levels[level].selected;
    CMenuItem* item = levels[level].menu->getEntry (row);
    if (item == nullptr)
        return;
    if (item->getSubmenu () != nullptr)
        openSubmenu (level, false);
    else
        finish (levels[level].menu, row);
}

// Not at once: the toolkit is still handing round the event that ended the menu.
void PopupMenu::finish (COptionMenu* menu, std::int32_t entry)
{
    if (finished)
        return;
    finished = true;
    const auto self = shared (this);
    getFrame ()->doAfterEventProcessing (
        [self, menu, entry]
        {
            if (CFrame* frame = self->getFrame ())
                frame->removeView (self);
            self->done (menu, entry);
        });
}

void PopupMenu::onMouseEvent (MouseEvent& event, CFrame* frame)
{
    CPoint where = event.mousePosition;
    if (event.type == EventType::MouseUp) // which alone comes in the window's pixels
        frame->getTransform ().inverse ().transform (where);
    event.consumed = true;
    if (finished)
        return;
    hover (where);
    const int level = levelAt (where);
    if (auto* down = event.type == EventType::MouseDown ? &castMouseDownEvent (event) : nullptr)
    {
        down->ignoreFollowUpMoveAndUpEvents (true);
        if (level < 0)
            finish (nullptr, -1);
    }
    else if (event.type == EventType::MouseUp && level >= 0)
    {
        choose (static_cast<std::size_t> (level));
    }
}

void PopupMenu::onMouseWheelEvent (MouseWheelEvent& event)
{
    event.consumed = true;
    const int found = levelAt (event.mousePosition);
    if (found < 0)
        return;
    Level& level = levels[static_cast<std::size_t> (found)];
    const double furthest = std::max (0.0, level.contentHeight + 2.0 * frameWidth - level.box.height ());
    const double before = level.scrolled;
    level.scrolled = std::clamp (before - event.deltaY * wheelRows * rowHeight, 0.0, furthest);
    if (level.scrolled == before)
        return;
    closeLevels (static_cast<std::size_t> (found) + 1);
    hover (event.mousePosition);
    invalidRect (toRect (level.box));
}

void PopupMenu::onKey (KeyboardEvent& event)
{
    event.consumed = true;
    if (event.type != EventType::KeyDown || finished)
        return;
    waits = false;
    switch (event.virt)
    {
    case VirtualKey::Down:
        moveSelection (activeLevel (), 1);
        break;
    case VirtualKey::Up:
        moveSelection (activeLevel (), -1);
        break;
    case VirtualKey::Right:
        openSubmenu (activeLevel (), true);
        break;
    case VirtualKey::Left:
        if (activeLevel () > 0)
            closeLevels (activeLevel ());
        break;
    case VirtualKey::Escape:
        if (levels.size () > 1)
            closeLevels (levels.size () - 1);
        else
            finish (nullptr, -1);
        break;
    case VirtualKey::Return:
    case VirtualKey::Enter:
        choose (activeLevel ());
        break;
    default:
        break;
    }
}

void PopupMenu::draw (CDrawContext* context)
{
    for (const Level& level : levels)
        drawLevel (*context, level);
    setDirty (false);
}

void PopupMenu::drawLevel (CDrawContext& context, const Level& level) const
{
    const CRect rect = toRect (level.box);
    context.setDrawMode (kAliasing);
    context.setFillColor (toColour (panel::scaleColour)); // the edge
    context.drawRect (rect, kDrawFilled);
    CRect inside = rect;
    inside.inset (frameWidth, frameWidth);
    context.setFillColor (toColour (panel::caseColour));
    context.drawRect (inside, kDrawFilled);
    ConcatClip clip (context, inside);
    for (int row = 0; row < level.menu->getNbEntries (); ++row)
    {
        const MenuBox box = rowBox (level, row);
        if (box.bottom > level.box.top && box.top < level.box.bottom)
            drawRow (context, level, row);
    }
    // A bar where more lies beyond.
    constexpr double barHeight = 2.0;
    context.setFillColor (toColour (panel::accentColour));
    if (level.scrolled > 0.0)
        context.drawRect (CRect (inside.left, inside.top, inside.right, inside.top + barHeight), kDrawFilled);
    if (level.scrolled + inside.getHeight () < level.contentHeight)
        context.drawRect (CRect (inside.left, inside.bottom - barHeight, inside.right, inside.bottom),
                          kDrawFilled);
}

void PopupMenu::drawRow (CDrawContext& context, const Level& level, int row) const
{
    const CMenuItem& item = *level.menu->getEntry (row);
    const CRect rect = toRect (rowBox (level, row));
    const double middle = rect.getCenter ().y;
    if (item.isSeparator ())
    {
        context.setFillColor (toColour (panel::plateColour));
        context.drawRect (CRect (rect.left, std::floor (middle), rect.right, std::floor (middle) + 1.0),
                          kDrawFilled);
        return;
    }
    const bool selected = row == level.selected;
    if (selected)
    {
        context.setFillColor (toColour (panel::accentColour));
        context.drawRect (rect, kDrawFilled);
    }
    CColor ink = toColour (selected ? panel::glassColour : panel::letterColour);
    if (!item.isEnabled ())
        ink.alpha = 110;
    context.setFont (font);
    context.setFontColor (ink);
    const CRect text (rect.left + textLeft - frameWidth, rect.top, rect.right, rect.bottom);
    context.drawString (item.getTitle ().data (), text, kLeftText);

    context.setDrawMode (kAntiAliasing);
    context.setFillColor (ink);
    context.setFrameColor (ink);
    context.setLineWidth (1.6);
    if (item.isChecked ())
    {
        const double x = rect.left + 6.0;
        context.drawLine (CPoint (x, middle), CPoint (x + 3.0, middle + 3.5));
        context.drawLine (CPoint (x + 3.0, middle + 3.5), CPoint (x + 9.0, middle - 4.0));
    }
    if (item.getSubmenu () != nullptr)
    {
        const double x = rect.right - 11.0;
        context.drawPolygon ({ CPoint (x, middle - 4.0), CPoint (x + 5.0, middle), CPoint (x, middle + 4.0),
                               CPoint (x, middle - 4.0) },
                             kDrawFilled);
    }
    context.setDrawMode (kAliasing);
}
}
