#pragma once

#include "editor/Toolkit.h"

namespace editor
{
// A picture over the panel with the version on it. A click anywhere on it asks the listener to take it away:
// its tag and value are that command.
class CAboutPage : public VSTGUI::CControl
{
public:
    static constexpr const char* versionText = "Version 1.43";

    CAboutPage (const VSTGUI::CRect& size, VSTGUI::IControlListener* listener, std::int32_t tag,
                VSTGUI::CBitmap* picture, const VSTGUI::CRect& versionRect, VSTGUI::CFontDesc* versionFont);

    void draw (VSTGUI::CDrawContext* context) override;
    void onMouseDownEvent (VSTGUI::MouseDownEvent& event) override;

    CLASS_METHODS_NOCOPY (CAboutPage, CControl)

private:
    VSTGUI::CRect textRect;
    VSTGUI::SharedPointer<VSTGUI::CFontDesc> font;
};
}
