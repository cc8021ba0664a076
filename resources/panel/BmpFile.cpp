#include "resources/panel/BmpFile.h"

#include <algorithm>
#include <array>
#include <map>
#include <numeric>
#include <stdexcept>

namespace panel
{
using picture::Colour;
using picture::Picture;

namespace
{
constexpr std::size_t fileHeaderBytes = 14;
constexpr std::size_t infoHeaderBytes = 40;
constexpr std::size_t paletteSize = 256;
constexpr std::uint32_t pixelsPerMetre = 2835; // 72 per inch

class ByteWriter
{
public:
    void u8 (unsigned value) { bytes.push_back (static_cast<std::uint8_t> (value)); }
    void u16 (unsigned value)
    {
        u8 (value & 0xff);
        u8 (value >> 8 & 0xff);
    }
    void u32 (std::uint32_t value)
    {
        u16 (value & 0xffff);
        u16 (value >> 16);
    }
    void colour (Colour value)
    {
        u8 (value.blue);
        u8 (value.green);
        u8 (value.red);
    }

    std::vector<std::uint8_t> bytes;
};

std::size_t rowBytes (int width, int bitsPerPixel)
{
    const auto bits = static_cast<std::size_t> (width) * static_cast<std::size_t> (bitsPerPixel);
    return (bits + 31) / 32 * 4;
}

std::uint32_t packed (Colour colour)
{
    return static_cast<std::uint32_t> (colour.red << 16 | colour.green << 8 | colour.blue);
}

int channel (Colour colour, int index)
{
    const std::array<int, 3> channels{ colour.red, colour.green, colour.blue };
    return channels[static_cast<std::size_t> (index)];
}

struct WeightedColour
{
    Colour colour;
    std::size_t count;
};

// A group of colours that one palette entry will stand for.
using ColourBox = std::vector<WeightedColour>;

struct Spread
{
    int channelIndex, width;
};

Spread widestChannel (const ColourBox& box)
{
    Spread widest{ 0, -1 };
    for (int index = 0; index < 3; ++index)
    {
        const auto [low, high] = std::ranges::minmax (
            box, {}, [index] (const WeightedColour& entry) { return channel (entry.colour, index); });
        const int width = channel (high.colour, index) - channel (low.colour, index);
        if (width > widest.width)
            widest = { index, width };
    }
    return widest;
}

Colour mean (const ColourBox& box)
{
    std::array<std::size_t, 4> sums{};
    for (const auto& [colour, count] : box)
    {
        sums[0] += colour.red * count;
        sums[1] += colour.green * count;
        sums[2] += colour.blue * count;
        sums[3] += count;
    }
    const auto average = [&sums] (std::size_t index)
    { return static_cast<unsigned char> ((sums[index] + sums[3] / 2) / sums[3]); };
    return { average (0), average (1), average (2) };
}

// Median cut: the box with the widest channel is halved there until there are enough boxes.
std::vector<Colour> reducedPalette (const Picture& image, Colour keptColour)
{
    std::map<std::uint32_t, WeightedColour> histogram;
    for (const Colour& pixel : image.pixels)
    {
        if (packed (pixel) != packed (keptColour))
            ++histogram.try_emplace (packed (pixel), WeightedColour{ pixel, 0 }).first->second.count;
    }

    ColourBox all;
    for (const auto& entry : histogram)
        all.push_back (entry.second);
    std::vector<ColourBox> boxes;
    if (!all.empty ())
        boxes.push_back (std::move (all));
    while (!boxes.empty () && boxes.size () < paletteSize - 1)
    {
        const auto widest = std::ranges::max_element (
            boxes, {}, [] (const ColourBox& box) { return widestChannel (box).width; });
        const auto [index, width] = widestChannel (*widest);
        if (width == 0)
            break;
        std::ranges::stable_sort (*widest, {},
                                  [index = index] (const WeightedColour& entry)
                                  { return channel (entry.colour, index); });
        const auto middle = widest->begin () + static_cast<std::ptrdiff_t> (widest->size () / 2);
        ColourBox upper (middle, widest->end ());
        widest->erase (middle, widest->end ());
        boxes.push_back (std::move (upper));
    }

    std::vector<Colour> palette{ keptColour };
    std::ranges::transform (boxes, std::back_inserter (palette), mean);
    palette.resize (paletteSize, keptColour);
    return palette;
}

std::size_t nearestIndex (const std::vector<Colour>& palette, Colour colour)
{
    const auto distance = [colour] (Colour entry)
    {
        int sum = 0;
        for (int index = 0; index < 3; ++index)
        {
            const int difference = channel (entry, index) - channel (colour, index);
            sum += difference * difference;
        }
        return sum;
    };
    return static_cast<std::size_t> (std::ranges::min_element (palette, {}, distance) - palette.begin ());
}
}

std::vector<std::uint8_t> encodeBmp (const Picture& image, int bitsPerPixel, Colour keptColour)
{
    if (bitsPerPixel != 8 && bitsPerPixel != 24 && bitsPerPixel != 32)
        throw std::runtime_error ("bitmaps have 8, 24 or 32 bits per pixel");
    std::vector<Colour> palette;
    if (bitsPerPixel == 8)
        palette = reducedPalette (image, keptColour);

    const std::size_t offset = fileHeaderBytes + infoHeaderBytes + palette.size () * 4;
    const std::size_t bytesPerRow = rowBytes (image.width, bitsPerPixel);
    const std::size_t imageBytes = bytesPerRow * static_cast<std::size_t> (image.height);

    ByteWriter out;
    out.u8 ('B');
    out.u8 ('M');
    out.u32 (static_cast<std::uint32_t> (offset + imageBytes));
    out.u32 (0);
    out.u32 (static_cast<std::uint32_t> (offset));
    out.u32 (infoHeaderBytes);
    out.u32 (static_cast<std::uint32_t> (image.width));
    out.u32 (static_cast<std::uint32_t> (image.height)); // positive: the lowest row comes first
    out.u16 (1);
    out.u16 (static_cast<unsigned> (bitsPerPixel));
    out.u32 (0); // not compressed
    out.u32 (static_cast<std::uint32_t> (imageBytes));
    out.u32 (pixelsPerMetre);
    out.u32 (pixelsPerMetre);
    out.u32 (static_cast<std::uint32_t> (palette.size ()));
    out.u32 (0);
    for (const Colour& entry : palette)
    {
        out.colour (entry);
        out.u8 (0);
    }

    std::map<std::uint32_t, std::size_t> indices;
    for (int y = image.height - 1; y >= 0; --y)
    {
        const std::size_t rowStart = out.bytes.size ();
        for (int x = 0; x < image.width; ++x)
        {
            const Colour pixel = image.at (x, y);
            if (bitsPerPixel == 8)
            {
                const auto [entry, isNew] = indices.try_emplace (packed (pixel), 0);
                if (isNew)
                    entry->second = nearestIndex (palette, pixel);
                out.u8 (static_cast<unsigned> (entry->second));
                continue;
            }
            out.colour (pixel);
            if (bitsPerPixel == 32)
                out.u8 (0xff);
        }
        out.bytes.resize (rowStart + bytesPerRow, 0);
    }
    return std::move (out.bytes);
}
}
