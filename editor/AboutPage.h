#pragma once

#include "editor/Toolkit.h"

namespace editor
{
// Covers the panel: a picture with the version on it, and shade around it. A click anywhere asks the listener
// to take it away: its tag and value are that command.
class CAboutPage : public VSTGUI::CControl
{
public:
    struct Places
    {
        VSTGUI::CRect all, picture, version;
    };

    CAboutPage (const Places& where, VSTGUI::IControlListener* listener, std::int32_t tag,
                VSTGUI::CBitmap* picture, VSTGUI::CFontDesc* versionFont);

    void draw (VSTGUI::CDrawContext* context) override;
    void onMouseDownEvent (VSTGUI::MouseDownEvent& event) override;

    CLASS_METHODS_NOCOPY (CAboutPage, CControl)

private:
    Places places;
    VSTGUI::SharedPointer<VSTGUI::CFontDesc> font;
};
}
