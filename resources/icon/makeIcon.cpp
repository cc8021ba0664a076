// Draws the icon's files into a folder: makeIcon resources/icon
#include <cairo.h>

#include <cstdio>
#include <cstring>
#include <filesystem>
#include <memory>
#include <string>

#include "resources/icon/Icon.h"

namespace
{
constexpr int sides[] = { 16, 32, 48, 64, 128, 256 }; // pixels

// Cairo's pixels hold their colours multiplied by their opacity.
std::uint32_t premultiplied (std::uint32_t pixel)
{
    const std::uint32_t alpha = pixel >> 24;
    std::uint32_t result = alpha << 24;
    for (const int shift : { 0, 8, 16 })
        result |= ((pixel >> shift & 0xff) * alpha + 127) / 255 << shift;
    return result;
}

bool write (int side, const std::filesystem::path& file)
{
    const std::unique_ptr<cairo_surface_t, decltype (&cairo_surface_destroy)> surface (
        cairo_image_surface_create (CAIRO_FORMAT_ARGB32, side, side), &cairo_surface_destroy);
    cairo_surface_flush (surface.get ());
    unsigned char* place = cairo_image_surface_get_data (surface.get ());
    for (const std::uint32_t pixel : icon::draw (side)) // without gaps: a row is as long as its pixels
    {
        const std::uint32_t stored = premultiplied (pixel);
        std::memcpy (place, &stored, sizeof stored);
        place += sizeof stored;
    }
    cairo_surface_mark_dirty (surface.get ());
    return cairo_surface_write_to_png (surface.get (), file.c_str ()) == CAIRO_STATUS_SUCCESS;
}
}

int main (int argc, char** argv)
{
    if (argc != 2)
    {
        std::fprintf (stderr, "makeIcon: it needs the folder for the icons, and nothing else.\n");
        return 2;
    }
    for (const int side : sides)
    {
        const auto file = std::filesystem::path (argv[1]) / std::to_string (side) / "brimvale.png";
        std::error_code failed; // seen when the file is written
        std::filesystem::create_directories (file.parent_path (), failed);
        if (!write (side, file))
        {
            std::fprintf (stderr, "makeIcon: cannot write %s.\n", file.c_str ());
            return 1;
        }
    }
    return 0;
}
