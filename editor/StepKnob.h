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

    // The position, from 0, that a value stands for; it may lie outside the frames.
    using PositionLaw = std::int32_t (*) (float value);

    // Without a law of their own the positions share the travel evenly, the last one at the very end.
    StepKnob (const VSTGUI::CRect& size, VSTGUI::IControlListener* listener, std::int32_t tag,
              std::int32_t frames, VSTGUI::CCoord frameHeight, VSTGUI::CBitmap* bitmap,
              PositionLaw positionLaw = nullptr);

    void draw (VSTGUI::CDrawContext* context) override;
    void onMouseWheelEvent (VSTGUI::MouseWheelEvent& event) override;

    CLASS_METHODS (StepKnob, CAnimKnob)

private:
    bool isStepped () const { return getNumSubPixmaps () > 1 && getNumSubPixmaps () <= mostPositions; }
    std::int32_t position () const; // that is shown, 0 .. frames - 1

    PositionLaw law;
};
}
