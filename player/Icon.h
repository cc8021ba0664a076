#pragma once

#include <cstdint>
#include <vector>

namespace player
{
// The program's icon: a knob in the panel's colours. A square of that many pixels, each 0xAARRGGBB, row by
// row.
std::vector<std::uint32_t> drawIcon (int side);
}
