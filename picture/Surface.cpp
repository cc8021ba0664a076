#include "picture/Surface.h"

#include <cstring>

namespace picture
{
namespace
{
unsigned char* pixelAt (cairo_surface_t* surface, int x, int y)
{
    return cairo_image_surface_get_data (surface) +
           static_cast<std::ptrdiff_t> (y) * cairo_image_surface_get_stride (surface) +
           static_cast<std::ptrdiff_t> (x) * 4;
}
}

Surface surfaceOf (const Picture& image)
{
    Surface surface (cairo_image_surface_create (CAIRO_FORMAT_RGB24, image.width, image.height));
    for (int y = 0; y < image.height; ++y)
    {
        for (int x = 0; x < image.width; ++x)
        {
            const Colour& colour = image.at (x, y);
            const auto pixel =
                static_cast<std::uint32_t> (colour.red << 16 | colour.green << 8 | colour.blue);
            std::memcpy (pixelAt (surface.get (), x, y), &pixel, sizeof pixel);
        }
    }
    cairo_surface_mark_dirty (surface.get ());
    return surface;
}

Picture pictureOf (cairo_surface_t* surface)
{
    cairo_surface_flush (surface);
    Picture image{ cairo_image_surface_get_width (surface), cairo_image_surface_get_height (surface), {} };
    image.pixels.reserve (static_cast<std::size_t> (image.width) * static_cast<std::size_t> (image.height));
    for (int y = 0; y < image.height; ++y)
    {
        for (int x = 0; x < image.width; ++x)
        {
            std::uint32_t pixel = 0;
            std::memcpy (&pixel, pixelAt (surface, x, y), sizeof pixel);
            image.pixels.push_back ({ static_cast<std::uint8_t> (pixel >> 16),
                                      static_cast<std::uint8_t> (pixel >> 8),
                                      static_cast<std::uint8_t> (pixel) });
        }
    }
    return image;
}
}
