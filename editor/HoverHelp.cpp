#include "editor/HoverHelp.h"

#include <algorithm>

#include "editor/Colours.h"

namespace editor
{
using namespace VSTGUI;

namespace
{
constexpr auto rest = std::chrono::milliseconds (700);
constexpr double padding = 6.0; // pixels beside the text
constexpr double height = 17.0;
constexpr double gap = 4.0; // from the control
}

class HoverHelp::Label : public CView
{
public:
    Label (const std::string& help, CFontDesc* textFont) : CView (CRect ()), text (help), font (textFont)
    {
        setMouseEnabled (false);
    }

    const std::string& shownText () const { return text; }

    void setText (const std::string& help)
    {
        text = help;
        invalid ();
    }

    // Below the caption where there is room, else above the place.
    void placeBeside (const CRect& place, const CRect& caption, const CRect& area)
    {
        const auto context = COffscreenContext::create (CPoint (1.0, 1.0));
        context->setFont (font);
        const double width = context->getStringWidth (text.c_str ()) + 2.0 * padding;
        const double left =
            std::clamp (place.getCenter ().x - width / 2.0, 0.0, std::max (0.0, area.right - width));
        const bool fitsBelow = caption.bottom + gap + height <= area.bottom;
        const double top = fitsBelow ? caption.bottom + gap : place.top - gap - height;
        CRect rect (left, top, left + width, top + height);
        rect.makeIntegral ();
        if (rect == getViewSize ())
            return;
        invalid ();
        setViewSize (rect);
        setMouseableArea (rect);
        invalid ();
    }

    void draw (CDrawContext* context) override
    {
        context->setFillColor (toColour (panel::glassColour));
        context->setFrameColor (toColour (panel::scaleColour));
        context->setLineWidth (1.0);
        context->drawRect (getViewSize (), kDrawFilledAndStroked);
        context->setFont (font);
        context->setFontColor (toColour (panel::letterColour));
        context->drawString (text.c_str (), getViewSize ());
        setDirty (false);
    }

private:
    std::string text;
    SharedPointer<CFontDesc> font;
};

HoverHelp::HoverHelp (CFrame& owner, CView* viewAbove, CFontDesc* textFont, Lookup zoneAt)
    : frame (owner),
      above (viewAbove),
      font (textFont),
      lookup (std::move (zoneAt))
{
    frame.registerMouseObserver (this);
}

HoverHelp::~HoverHelp ()
{
    frame.unregisterMouseObserver (this);
    hide ();
}

void HoverHelp::idle ()
{
    if (!hovered || rested || std::chrono::steady_clock::now () - since < rest)
        return;
    rested = true;
    refresh ();
}

void HoverHelp::show (const Zone& zone)
{
    if (label == nullptr)
    {
        label = new Label (zone.text, font);
        frame.addView (label, above);
    }
    else if (label->shownText () != zone.text)
    {
        label->setText (zone.text);
    }
    CRect area = frame.getViewSize ();
    frame.getTransform ().inverse ().transform (area);
    label->placeBeside (zone.place, zone.caption, area);
}

void HoverHelp::refresh ()
{
    std::optional<Zone> zone;
    if (!silent && hovered && rested)
        zone = lookup (hovered->getCenter ());
    else if (!silent && pinned)
        zone = lookup (*pinned);
    if (zone)
        show (*zone);
    else
        hide ();
}

void HoverHelp::tellNow ()
{
    rested = hovered.has_value ();
    refresh ();
}

void HoverHelp::hide ()
{
    if (label != nullptr)
        frame.removeView (label);
    label = nullptr;
}

void HoverHelp::pin (std::optional<CPoint> where)
{
    pinned = where;
    refresh ();
}

void HoverHelp::setSilent (bool on)
{
    silent = on;
    hovered.reset ();
    dragging = false;
    refresh ();
}

std::optional<CPoint> HoverHelp::mouse () const
{
    return inside ? std::optional (position) : std::nullopt;
}

void HoverHelp::follow (const CPoint& where)
{
    position = where;
    inside = true;
    if (dragging || silent)
        return;
    const auto zone = lookup (where);
    const auto place = zone ? std::optional (zone->place) : std::nullopt;
    if (place == hovered)
        return;
    hovered = place;
    rested = false;
    since = std::chrono::steady_clock::now ();
    refresh ();
}

void HoverHelp::onMouseEntered (CView* /*view*/, CFrame* /*frame*/) {}

// Of a view, or of the panel: a move that follows tells that it was not the panel.
void HoverHelp::onMouseExited (CView* /*view*/, CFrame* /*frame*/)
{
    inside = false;
    if (dragging || !hovered)
        return;
    hovered.reset ();
    refresh ();
}

void HoverHelp::onMouseEvent (MouseEvent& event, CFrame* /*frame*/)
{
    if (event.type == EventType::MouseUp)
    {
        dragging = false;
        return;
    }
    follow (event.mousePosition);
    if (event.type != EventType::MouseDown || !hovered || silent)
        return;
    // A press on a control brings the line at once, for its value is what is being set.
    const auto zone = lookup (event.mousePosition);
    dragging = zone && zone->draggable && event.buttonState.isLeft ();
    rested = dragging;
    since = std::chrono::steady_clock::now ();
    refresh ();
}
}
