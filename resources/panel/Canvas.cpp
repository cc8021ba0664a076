#include "resources/panel/Canvas.h"

#include <cmath>
#include <cstring>
#include <numbers>
#include <stdexcept>
#include <utility>
#include <vector>

namespace panel
{
using panel::Align;
using panel::Colour;

namespace
{
constexpr const char* narrowFamily = "Liberation Sans Narrow";
}

const TextStyle labelStyle{ narrowFamily, true, panel::labelCapHeight, 0.3, panel::letterColour };
const TextStyle titleStyle{ narrowFamily, true, panel::titleCapHeight, 0.8, panel::letterColour };
const TextStyle scaleStyle{ narrowFamily, true, panel::labelCapHeight, 0.1, panel::scaleColour };

namespace
{
// One UTF-8 letter per entry, so that letters can be set one by one.
std::vector<std::string> letters (std::string_view text)
{
    std::vector<std::string> result;
    for (const char byte : text)
    {
        const bool continues = (static_cast<unsigned char> (byte) & 0xc0) == 0x80;
        if (continues && !result.empty ())
        {
            result.back () += byte;
        }
        else
        {
            result.emplace_back (1, byte);
        }
    }
    return result;
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
    const auto blend = [amount] (unsigned char a, unsigned char b)
    { return static_cast<unsigned char> (std::lround (a + (b - a) * amount)); };
    return { blend (first.red, second.red), blend (first.green, second.green),
             blend (first.blue, second.blue) };
}

double textWidth (std::string_view text, const TextStyle& style)
{
    return Canvas (1, 1, style.colour).measure (text, style);
}

Canvas::Canvas (int width, int height, Colour ground)
    : surface (cairo_image_surface_create (CAIRO_FORMAT_RGB24, width, height), cairo_surface_destroy),
      cr (cairo_create (surface.get ()), cairo_destroy)
{
    if (cairo_status (cr.get ()) != CAIRO_STATUS_SUCCESS)
        throw std::runtime_error ("no memory for a picture");
    pinFontOptions (cr.get ());
    setColour (ground);
    cairo_paint (cr.get ());
}

void Canvas::setColour (Colour colour, double opacity)
{
    cairo_set_source_rgba (cr.get (), colour.red / 255.0, colour.green / 255.0, colour.blue / 255.0, opacity);
}

void Canvas::fillRect (double x, double y, double width, double height, Colour colour, double opacity)
{
    setColour (colour, opacity);
    cairo_rectangle (cr.get (), x, y, width, height);
    cairo_fill (cr.get ());
}

void Canvas::fillCircle (double x, double y, double radius, Colour colour, double opacity)
{
    setColour (colour, opacity);
    cairo_arc (cr.get (), x, y, radius, 0, 2 * std::numbers::pi);
    cairo_fill (cr.get ());
}

void Canvas::roundedRect (double x, double y, double width, double height, double radius)
{
    constexpr double quarter = std::numbers::pi / 2;
    cairo_new_sub_path (cr.get ());
    cairo_arc (cr.get (), x + width - radius, y + radius, radius, -quarter, 0);
    cairo_arc (cr.get (), x + width - radius, y + height - radius, radius, 0, quarter);
    cairo_arc (cr.get (), x + radius, y + height - radius, radius, quarter, 2 * quarter);
    cairo_arc (cr.get (), x + radius, y + radius, radius, 2 * quarter, 3 * quarter);
    cairo_close_path (cr.get ());
}

void Canvas::line (double x1, double y1, double x2, double y2, double width, Colour colour)
{
    setColour (colour);
    cairo_set_line_width (cr.get (), width);
    cairo_move_to (cr.get (), x1, y1);
    cairo_line_to (cr.get (), x2, y2);
    cairo_stroke (cr.get ());
}

void Canvas::selectFont (const TextStyle& style) const
{
    constexpr double probeSize = 1000.0;
    cairo_select_font_face (cr.get (), style.family, CAIRO_FONT_SLANT_NORMAL,
                            style.bold ? CAIRO_FONT_WEIGHT_BOLD : CAIRO_FONT_WEIGHT_NORMAL);
    cairo_set_font_size (cr.get (), probeSize);
    cairo_text_extents_t capital;
    cairo_text_extents (cr.get (), "H", &capital);
    cairo_set_font_size (cr.get (), style.capHeight * probeSize / capital.height);
}

namespace
{
struct Glyph
{
    std::string letter;
    double inkStart, inkWidth, bearing; // inkStart: where the font's own spacing would put the ink
};

// How uneven the gaps become when every letter's ink is moved to the nearest whole pixel.
double unevenness (const std::vector<Glyph>& glyphs, double phase, double extraTracking)
{
    double sum = 0, lastShift = 0;
    for (std::size_t index = 0; index < glyphs.size (); ++index)
    {
        const double ideal = glyphs[index].inkStart + phase + extraTracking * static_cast<double> (index);
        const double shift = std::round (ideal) - ideal;
        if (index > 0)
            sum += (shift - lastShift) * (shift - lastShift);
        lastShift = shift;
    }
    return sum;
}

// Puts every letter's ink on a pixel's edge, which keeps upright strokes sharp. The phase and a small
// change of the tracking are chosen so that the gaps stay as even as they can.
void snapToPixels (std::vector<Glyph>& glyphs)
{
    constexpr double trackingStep = 0.05, phaseStep = 0.1;
    constexpr int trackingSteps = 5, phaseSteps = 10;
    constexpr double changeCost = 0.02; // per step away from the style's tracking
    double best = 1e9, bestPhase = 0, bestTracking = 0;
    for (int change = -trackingSteps; change <= trackingSteps; ++change)
    {
        for (int step = 0; step < phaseSteps; ++step)
        {
            const double phase = step * phaseStep, tracking = change * trackingStep;
            const double cost = unevenness (glyphs, phase, tracking) + changeCost * std::abs (change);
            if (cost < best)
            {
                best = cost;
                bestPhase = phase;
                bestTracking = tracking;
            }
        }
    }
    const double first = glyphs.empty () ? 0 : std::round (glyphs.front ().inkStart + bestPhase);
    for (std::size_t index = 0; index < glyphs.size (); ++index)
    {
        glyphs[index].inkStart =
            std::round (glyphs[index].inkStart + bestPhase + bestTracking * static_cast<double> (index)) -
            first;
    }
}
}

double Canvas::layOut (std::string_view text, const TextStyle& style,
                       const std::function<void (const std::string&, double)>& place) const
{
    selectFont (style);
    std::vector<Glyph> glyphs;
    double pen = 0;
    for (const std::string& letter : letters (text))
    {
        cairo_text_extents_t extents;
        cairo_text_extents (cr.get (), letter.c_str (), &extents);
        if (extents.width > 0)
            glyphs.push_back ({ letter, pen + extents.x_bearing, extents.width, extents.x_bearing });
        pen += extents.x_advance + style.tracking;
    }
    snapToPixels (glyphs);
    for (const Glyph& glyph : glyphs)
        place (glyph.letter, glyph.inkStart - glyph.bearing);
    return glyphs.empty () ? 0 : std::ceil (glyphs.back ().inkStart + glyphs.back ().inkWidth);
}

double Canvas::measure (std::string_view text, const TextStyle& style) const
{
    return layOut (text, style, [] (const std::string&, double) {});
}

void Canvas::text (std::string_view text, double x, double capTop, Align align, const TextStyle& style)
{
    const double width = measure (text, style);
    const double start = align == Align::left ? x : align == Align::right ? x - width : x - width / 2;
    setColour (style.colour);
    layOut (text, style,
            [&] (const std::string& letter, double offset)
            {
                cairo_move_to (cr.get (), std::round (start) + offset, capTop + style.capHeight);
                cairo_text_path (cr.get (), letter.c_str ());
                cairo_fill (cr.get ());
            });
}

Image Canvas::image () const
{
    cairo_surface_flush (surface.get ());
    const unsigned char* data = cairo_image_surface_get_data (surface.get ());
    const int stride = cairo_image_surface_get_stride (surface.get ());
    Image result{ cairo_image_surface_get_width (surface.get ()),
                  cairo_image_surface_get_height (surface.get ()),
                  {} };
    for (int y = 0; y < result.height; ++y)
    {
        const unsigned char* row = data + static_cast<std::ptrdiff_t> (y) * stride;
        for (int x = 0; x < result.width; ++x)
        {
            std::uint32_t pixel = 0; // 0x00RRGGBB in the machine's byte order
            std::memcpy (&pixel, row + static_cast<std::ptrdiff_t> (x) * 4, sizeof (pixel));
            result.pixels.push_back ({ static_cast<unsigned char> (pixel >> 16),
                                       static_cast<unsigned char> (pixel >> 8),
                                       static_cast<unsigned char> (pixel) });
        }
    }
    return result;
}

void Canvas::savePng (const std::string& path) const
{
    if (cairo_surface_write_to_png (surface.get (), path.c_str ()) != CAIRO_STATUS_SUCCESS)
        throw std::runtime_error ("cannot write " + path);
}

void Canvas::paste (const Image& picture, const panel::Rect& part, int x, int y)
{
    cairo_set_antialias (cr.get (), CAIRO_ANTIALIAS_NONE);
    for (int row = 0; row < part.height; ++row)
    {
        for (int column = 0; column < part.width; ++column)
            fillRect (x + column, y + row, 1, 1, picture.at (part.x + column, part.y + row));
    }
    cairo_set_antialias (cr.get (), CAIRO_ANTIALIAS_DEFAULT);
}
}
