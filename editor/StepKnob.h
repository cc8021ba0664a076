#pragma once

#include "editor/Toolkit.h"

namespace editor
{
// A knob drawn from stacked frames. A notch of the wheel moves one with few positions to the next of them,
// and one with many by a fiftieth of its travel, a tenth of that with shift.
class StepKnob : public VSTGUI::CAnimKnob
{
public:
    static constexpr std::int32_t mostPositions = 16; // more frames than this count as continuous

    StepKnob (const VSTGUI::CRect& size, VSTGUI::IControlListener* listener, std::int32_t tag,
              std::int32_t frames, VSTGUI::CCoord frameHeight, VSTGUI::CBitmap* bitmap);

    void onMouseWheelEvent (VSTGUI::MouseWheelEvent& event) override;

    CLASS_METHODS (StepKnob, CAnimKnob)

private:
    bool isStepped () const { return getNumSubPixmaps () > 1 && getNumSubPixmaps () <= mostPositions; }
};
}
