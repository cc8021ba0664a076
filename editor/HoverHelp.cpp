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

    // Below the control where there is room, else above it.
    void placeAt (const CRect& control, const CRect& area)
    {
        const auto context = COffscreenContext::create (CPoint (1.0, 1.0));
        context->setFont (font);
        const double width = context->getStringWidth (text.c_str ()) + 2.0 * padding;
        const double left =
            std::clamp (control.getCenter ().x - width / 2.0, 0.0, std::max (0.0, area.right - width));
        const bool fitsBelow = control.bottom + gap + height <= area.bottom;
        const double top = fitsBelow ? control.bottom + gap : control.top - gap - height;
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

HoverHelp::HoverHelp (CFrame& owner, CView* viewAbove, CFontDesc* textFont, Lookup textOf)
    : frame (owner),
      above (viewAbove),
      font (textFont),
      lookup (std::move (textOf))
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
    if (hovered != nullptr && !isShown () && std::chrono::steady_clock::now () - since >= rest)
        show ();
}

void HoverHelp::show ()
{
    const std::string text = hovered != nullptr ? lookup (hovered) : std::string ();
    if (text.empty ())
    {
        hide ();
        return;
    }
    if (label == nullptr)
    {
        label = new Label (text, font);
        frame.addView (label, above);
    }
    else if (label->shownText () != text)
    {
        label->setText (text);
    }
    CRect area = frame.getViewSize ();
    frame.getTransform ().inverse ().transform (area);
    label->placeAt (hovered->getViewSize (), area);
}

void HoverHelp::refresh ()
{
    if (isShown ())
        show ();
}

void HoverHelp::hide ()
{
    if (label != nullptr)
        frame.removeView (label);
    label = nullptr;
}

void HoverHelp::onMouseEntered (CView* view, CFrame* /*frame*/)
{
    hovered = view;
    since = std::chrono::steady_clock::now ();
}

void HoverHelp::onMouseExited (CView* view, CFrame* /*frame*/)
{
    if (view != hovered)
        return;
    hovered = nullptr;
    hide ();
}

// A press on a control brings the line at once, for its value is what is being set.
void HoverHelp::onMouseEvent (MouseEvent& event, CFrame* /*frame*/)
{
    if (event.type != EventType::MouseDown)
        return;
    since = std::chrono::steady_clock::now ();
    const bool drags = event.buttonState.isLeft () && dynamic_cast<CControl*> (hovered) != nullptr;
    if (drags)
        show ();
    else
        hide ();
}
}
