#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace editor
{
// A device-independent bitmap, taken apart: 8-bit palette, 24-bit or 32-bit pixels, uncompressed, stored
// from the bottom row up or, with a negative height, from the top down. Alpha is not used.
class DibBitmap
{
public:
    struct Pixel
    {
        std::uint8_t blue, green, red, reserved;
    };

    // `bytes` starts at the info header. Nothing when the header is unknown or the pixels are not all there.
    static std::optional<DibBitmap> read (std::span<const std::byte> bytes);

    // x from the left, y from the top, within the size.
    const Pixel& at (int x, int y) const
    {
        return pixels[static_cast<std::size_t> (y) * static_cast<std::size_t> (width) +
                      static_cast<std::size_t> (x)];
    }

    int width = 0;
    int height = 0;

private:
    std::vector<Pixel> pixels; // from the top left, row by row
};
}
