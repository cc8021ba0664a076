// Pictures in memory and Windows bitmap files made of them.
#pragma once

#include "resources/panel/PanelLayout.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace panel
{
struct Image
{
    int width = 0, height = 0;
    std::vector<panel::Colour> pixels; // rows from the top

    const panel::Colour& at (int x, int y) const
    {
        return pixels[static_cast<std::size_t> (y) * static_cast<std::size_t> (width) +
                      static_cast<std::size_t> (x)];
    }
};

// The bytes of an uncompressed bottom-up .bmp file. `bitsPerPixel` is 8, 24 or 32: with 8 the colours
// are reduced to a palette of 256 whose first entry is exactly `keptColour`; with 32 the fourth byte
// is 255, so readers that take it as opacity and readers that ignore it see the same.
std::vector<std::uint8_t> encodeBmp (const Image& image, int bitsPerPixel, panel::Colour keptColour);

// The picture in a file that encodeBmp can have written. Throws std::runtime_error for any other.
Image decodeBmp (std::span<const std::uint8_t> file);

// Width, height and bits per pixel as the headers of such a file state them.
struct BmpFormat
{
    int width, height, bitsPerPixel;
};
BmpFormat readBmpFormat (std::span<const std::uint8_t> file);
}
