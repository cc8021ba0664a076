#pragma once

namespace editor
{
// How fast every knob and slider turns.
inline constexpr float wheelShare = 0.02f;     // of the travel, for one notch of the wheel or one arrow key
inline constexpr float fineDragFactor = 10.0f; // shift makes a drag this much longer, a notch so much shorter
}
