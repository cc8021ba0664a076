#include "editor/AboutPage.h"

#include "brimvale/Version.h"
#include "editor/Colours.h"

#include <string>

namespace editor
{
using namespace VSTGUI;

namespace
{
constexpr std::uint8_t shadeOpacity = 215; // of 255
}

CAboutPage::CAboutPage (const Places& where, IControlListener* viewListener, std::int32_t viewTag,
                        CBitmap* picture, CFontDesc* versionFont)
    : CControl (where.all, viewListener, viewTag, picture),
      places (where),
      font (versionFont)
{
    setTransparency (true); // the panel shows through the shade
}

void CAboutPage::draw (CDrawContext* context)
{
    CColor shade = toColour (panel::caseColour);
    shade.alpha = shadeOpacity;
    context->setFillColor (shade);
    context->drawRect (getViewSize (), kDrawFilled);
    if (getDrawBackground () != nullptr)
        getDrawBackground ()->draw (context, places.picture);
    context->setFont (font);
    context->setFontColor (toColour (panel::letterColour));
    context->drawString (("Version " + std::string (brimvale::shortVersion)).c_str (), places.version,
                         kLeftText);
    setDirty (false);
}

void CAboutPage::onMouseDownEvent (MouseDownEvent& event)
{
    event.consumed = true;
    event.ignoreFollowUpMoveAndUpEvents (true);
    valueChanged ();
}
}
