#pragma once

#include <optional>
#include <span>

#include "picture/Picture.h"

namespace picture
{
// The picture in a device-independent bitmap, whose bytes start at the info header: 8-bit palette, 24-bit or
// 32-bit pixels, uncompressed, stored from the bottom row up or, with a negative height, from the top down.
// The fourth byte of wide pixels is not used. Nothing when the header is unknown or the pixels are not all
// there.
std::optional<Picture> readDib (std::span<const std::byte> bytes);

// The same of a .bmp file, which has a header more.
std::optional<Picture> readBmpFile (std::span<const std::byte> file);
}
