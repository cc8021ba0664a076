#include "editor/AboutPage.h"

#include "editor/Colours.h"

namespace editor
{
using namespace VSTGUI;

CAboutPage::CAboutPage (const CRect& size, IControlListener* viewListener, std::int32_t viewTag,
                        CBitmap* picture, const CRect& versionRect, CFontDesc* versionFont)
    : CControl (size, viewListener, viewTag, picture),
      textRect (versionRect),
      font (versionFont)
{
}

void CAboutPage::draw (CDrawContext* context)
{
    if (getDrawBackground () != nullptr)
        getDrawBackground ()->draw (context, getViewSize ());
    context->setFont (font);
    context->setFontColor (toColour (panel::letterColour));
    context->drawString (versionText, textRect, kLeftText);
    setDirty (false);
}

void CAboutPage::onMouseDownEvent (MouseDownEvent& event)
{
    event.consumed = true;
    event.ignoreFollowUpMoveAndUpEvents (true);
    valueChanged ();
}
}
