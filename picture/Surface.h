#pragma once

#include <cairo.h>

#include <memory>

#include "picture/Picture.h"

namespace picture
{
// Cairo's image surfaces, which hold a pixel in four bytes as 0x00RRGGBB in the machine's order.
struct SurfaceRelease
{
    void operator() (cairo_surface_t* surface) const { cairo_surface_destroy (surface); }
};
using Surface = std::unique_ptr<cairo_surface_t, SurfaceRelease>;

Surface surfaceOf (const Picture& image);
Picture pictureOf (cairo_surface_t* surface);
}
