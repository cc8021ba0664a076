#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include <lv2/core/lv2.h>

inline constexpr std::uint32_t firstLv2Control = 4; // its port; two of sound and two of events come before

// The instrument in LV2, made. Where there is the library that hosts use for it, by that; elsewhere from what
// the bundle holds.
struct Lv2Instance
{
    const LV2_Descriptor* descriptor = nullptr;
    LV2_Handle handle = nullptr;
    std::vector<float> defaults;   // of all ports, as they are described; NaN where there is none
    std::shared_ptr<void> library; // goes last
};

// At 44.1 kHz. Throws std::runtime_error when there is none.
Lv2Instance makeLv2Instance (const LV2_Feature* const* features);
