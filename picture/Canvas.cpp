#include "picture/Canvas.h"

#include <cmath>
#include <numbers>
#include <stdexcept>

#include "picture/Png.h"

namespace picture
{
namespace
{
int pixels (int units, double scale)
{
    return static_cast<int> (std::ceil (units * scale));
}

// Hinting and subpixel rendering depend on the machine's font settings; both are pinned to off, so
// that the same packages give the same bytes.
void pinFontOptions (cairo_t* cr)
{
    cairo_font_options_t* options = cairo_font_options_create ();
    cairo_font_options_set_antialias (options, CAIRO_ANTIALIAS_GRAY);
    cairo_font_options_set_hint_style (options, CAIRO_HINT_STYLE_NONE);
    cairo_font_options_set_hint_metrics (options, CAIRO_HINT_METRICS_OFF);
    cairo_set_font_options (cr, options);
    cairo_font_options_destroy (options);
}
}

Colour mix (Colour first, Colour second, double amount)
{
    const auto blend = [amount] (std::uint8_t a, std::uint8_t b)
    { return static_cast<std::uint8_t> (std::lround (a + (b - a) * amount)); };
    return { blend (first.red, second.red), blend (first.green, second.green),
             blend (first.blue, second.blue) };
}

Canvas::Canvas (int width, int height, Colour ground, double pixelsPerUnit)
    : scale (pixelsPerUnit),
      surface (
          cairo_image_surface_create (CAIRO_FORMAT_RGB24, pixels (width, scale), pixels (height, scale))),
      cr (cairo_create (surface.get ()))
{
    if (cairo_status (cr.get ()) != CAIRO_STATUS_SUCCESS)
        throw std::runtime_error ("no memory for a picture");
    pinFontOptions (cr.get ());
    setColour (ground);
    cairo_paint (cr.get ());
    cairo_scale (cr.get (), scale, scale);
}

double Canvas::nearestEdge (double place) const
{
    return std::round (place * scale) / scale;
}

double Canvas::edgeAfter (double place) const
{
    return std::ceil (place * scale) / scale;
}

double Canvas::edge (double place) const
{
    return place == std::floor (place) ? nearestEdge (place) : place;
}

void Canvas::setColour (Colour colour, double opacity)
{
    cairo_set_source_rgba (cr.get (), colour.red / 255.0, colour.green / 255.0, colour.blue / 255.0, opacity);
}

void Canvas::fillRect (double x, double y, double width, double height, Colour colour, double opacity)
{
    setColour (colour, opacity);
    const double left = edge (x), top = edge (y);
    cairo_rectangle (cr.get (), left, top, edge (x + width) - left, edge (y + height) - top);
    cairo_fill (cr.get ());
}

void Canvas::fillRoundedRect (double x, double y, double width, double height, double radius)
{
    roundedRect (x, y, width, height, radius);
    cairo_fill (cr.get ());
}

void Canvas::roundedRect (double x, double y, double width, double height, double radius)
{
    constexpr double quarter = std::numbers::pi / 2;
    const double left = edge (x) + radius, top = edge (y) + radius;
    const double right = edge (x + width) - radius, bottom = edge (y + height) - radius;
    cairo_new_sub_path (cr.get ());
    cairo_arc (cr.get (), right, top, radius, -quarter, 0);
    cairo_arc (cr.get (), right, bottom, radius, 0, quarter);
    cairo_arc (cr.get (), left, bottom, radius, quarter, 2 * quarter);
    cairo_arc (cr.get (), left, top, radius, 2 * quarter, 3 * quarter);
    cairo_close_path (cr.get ());
}

void Canvas::fillCircle (double x, double y, double radius, Colour colour, double opacity)
{
    setColour (colour, opacity);
    cairo_arc (cr.get (), x, y, radius, 0, 2 * std::numbers::pi);
    cairo_fill (cr.get ());
}

void Canvas::line (double x1, double y1, double x2, double y2, double width, Colour colour)
{
    setColour (colour);
    cairo_set_line_width (cr.get (), width);
    cairo_move_to (cr.get (), x1, y1);
    cairo_line_to (cr.get (), x2, y2);
    cairo_stroke (cr.get ());
}

Picture Canvas::image () const
{
    return pictureOf (surface.get ());
}

void Canvas::savePng (const std::filesystem::path& file) const
{
    writePng (image (), file);
}
}
