#pragma once

#include "editor/Toolkit.h"

namespace editor
{
// A horizontal slider that also follows the vertical wheel: a notch is a fiftieth of its travel, a tenth of
// that with shift.
class LevelSlider : public VSTGUI::CHorizontalSlider
{
public:
    LevelSlider (const VSTGUI::CRect& size, VSTGUI::IControlListener* listener, std::int32_t tag,
                 const VSTGUI::CPoint& handleOffset, VSTGUI::CBitmap* handle);

    void onMouseWheelEvent (VSTGUI::MouseWheelEvent& event) override;

    CLASS_METHODS (LevelSlider, CHorizontalSlider)
};
}
