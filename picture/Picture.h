#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace picture
{
// 0..255 each.
struct Colour
{
    std::uint8_t red, green, blue;

    bool operator== (const Colour&) const = default;
};

// An opaque picture in memory.
struct Picture
{
    int width = 0; // pixels
    int height = 0;
    std::vector<Colour> pixels; // from the top left, row by row

    // x from the left, y from the top, within the size.
    const Colour& at (int x, int y) const { return pixels[index (x, y)]; }
    Colour& at (int x, int y) { return pixels[index (x, y)]; }

    // A copy of the rectangle, which must lie inside.
    Picture part (int x, int y, int partWidth, int partHeight) const
    {
        Picture copy{ partWidth, partHeight, {} };
        for (int row = 0; row < partHeight; ++row)
        {
            const auto start = pixels.begin () + static_cast<std::ptrdiff_t> (index (x, y + row));
            copy.pixels.insert (copy.pixels.end (), start, start + partWidth);
        }
        return copy;
    }

    bool operator== (const Picture&) const = default;

private:
    std::size_t index (int x, int y) const
    {
        return static_cast<std::size_t> (y) * static_cast<std::size_t> (width) + static_cast<std::size_t> (x);
    }
};
}
