#include "picture/Png.h"

#include <cairo.h>
#include <stdexcept>

#include "picture/Surface.h"

namespace picture
{
void writePng (const Picture& image, const std::filesystem::path& file)
{
    const Surface surface = surfaceOf (image);
    if (cairo_surface_write_to_png (surface.get (), file.c_str ()) != CAIRO_STATUS_SUCCESS)
        throw std::runtime_error ("cannot write " + file.string ());
}

Picture readPng (const std::filesystem::path& file)
{
    const Surface surface (cairo_image_surface_create_from_png (file.c_str ()));
    if (cairo_surface_status (surface.get ()) != CAIRO_STATUS_SUCCESS)
        throw std::runtime_error ("cannot read " + file.string ());
    return pictureOf (surface.get ());
}
}
