#include "picture/Dib.h"

#include <cstring>

namespace picture
{
namespace
{
// The 40 bytes of a BITMAPINFOHEADER.
struct InfoHeader
{
    std::uint32_t size;
    std::int32_t width;
    std::int32_t height;
    std::uint16_t planes;
    std::uint16_t bitsPerPixel;
    std::uint32_t compression;
    std::uint32_t imageBytes;
    std::int32_t pixelsPerMetreX;
    std::int32_t pixelsPerMetreY;
    std::uint32_t coloursUsed;
    std::uint32_t coloursImportant;
};
static_assert (sizeof (InfoHeader) == 40);

// A colour as files hold it.
struct FilePixel
{
    std::uint8_t blue, green, red, reserved;
};

constexpr std::size_t fileHeaderBytes = 14;
constexpr std::size_t wholePalette = 256;
constexpr std::int32_t mostPixels = 1 << 14; // a side; far above anything on a panel
}

std::optional<Picture> readDib (std::span<const std::byte> bytes)
{
    InfoHeader header;
    if (bytes.size () < sizeof header)
        return std::nullopt;
    std::memcpy (&header, bytes.data (), sizeof header);
    const bool topDown = header.height < 0;
    const std::int32_t rows = topDown && header.height > -mostPixels ? -header.height : header.height;
    const bool knownDepth =
        header.bitsPerPixel == 8 || header.bitsPerPixel == 24 || header.bitsPerPixel == 32;
    if (header.size < sizeof header || header.size > bytes.size () || header.compression != 0 ||
        !knownDepth || header.width <= 0 || header.width > mostPixels || rows <= 0 || rows > mostPixels)
        return std::nullopt;

    std::size_t paletteSize = 0;
    if (header.bitsPerPixel == 8)
        paletteSize = header.coloursUsed == 0 ? wholePalette : header.coloursUsed;
    if (paletteSize > wholePalette)
        return std::nullopt;
    const std::size_t columns = static_cast<std::size_t> (header.width);
    const std::size_t bytesPerPixel = header.bitsPerPixel / 8u;
    const std::size_t rowBytes = (columns * bytesPerPixel + 3) / 4 * 4; // rows are padded to four bytes
    const std::size_t start = header.size + paletteSize * sizeof (FilePixel);
    if (bytes.size () < start + rowBytes * static_cast<std::size_t> (rows))
        return std::nullopt;

    FilePixel palette[wholePalette] = {};
    if (paletteSize > 0)
        std::memcpy (palette, bytes.data () + header.size, paletteSize * sizeof (FilePixel));

    Picture image{ header.width, rows, {} };
    image.pixels.reserve (columns * static_cast<std::size_t> (rows));
    for (std::int32_t y = 0; y < rows; ++y)
    {
        const auto row = static_cast<std::size_t> (topDown ? y : rows - 1 - y);
        const std::byte* in = bytes.data () + start + row * rowBytes;
        for (std::size_t x = 0; x < columns; ++x, in += bytesPerPixel)
        {
            FilePixel pixel = {};
            if (bytesPerPixel == 1)
                pixel = palette[std::to_integer<std::size_t> (*in)];
            else
                std::memcpy (&pixel, in, bytesPerPixel);
            image.pixels.push_back ({ pixel.red, pixel.green, pixel.blue });
        }
    }
    return image;
}
std::optional<Picture> readBmpFile (std::span<const std::byte> file)
{
    return file.size () < fileHeaderBytes ? std::nullopt : readDib (file.subspan (fileHeaderBytes));
}
}
