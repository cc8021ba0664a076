#pragma once

#include <cstdint>
#include <string>
#include <vector>

// What places between 0 and 1 mean, for hosts that show a port's bare number and know no texts but those that
// the library's description holds. The port itself keeps the knob's travel: as 32-bit numbers, values in dB,
// Hz or seconds would not lead back to the bits that a song was saved with. User-interface thread.
namespace dpf
{
struct ScaleMark
{
    float shown;       // 0..1
    std::string label; // in the words and units of the panel
};

// The ends and, between them, round values, rising. None for steps, which have names, and for what is hidden.
std::vector<ScaleMark> scaleMarks (std::int32_t index);

// The meaning of the ends and the quarters; empty where there are no marks.
std::string scaleComment (std::int32_t index);
}
