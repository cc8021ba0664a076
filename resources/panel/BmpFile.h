#pragma once

#include <cstdint>
#include <vector>

#include "picture/Picture.h"

namespace panel
{
// The bytes of an uncompressed bottom-up .bmp file. `bitsPerPixel` is 8, 24 or 32: with 8 the colours
// are reduced to a palette of 256 whose first entry is exactly `keptColour`; with 32 the fourth byte
// is 255, so readers that take it as opacity and readers that ignore it see the same.
std::vector<std::uint8_t> encodeBmp (const picture::Picture& image, int bitsPerPixel,
                                     picture::Colour keptColour);
}
