#pragma once

#include <cstdint>
#include <vector>

namespace icon
{
// The program's icon: a knob in the panel's colours. A square of that many pixels, each 0xAARRGGBB, row by
// row.
std::vector<std::uint32_t> draw (int side);
}
