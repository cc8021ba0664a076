#include "manual/Sheet.h"

#include <cmath>
#include <string>

#include "resources/panel/PanelLayout.h"

namespace manual
{
Sheet::Sheet (int width, int height, picture::Colour ground) : area (width, height, ground, scale)
{
    cairo_select_font_face (area.context (), panel::fontFamily, CAIRO_FONT_SLANT_NORMAL,
                            CAIRO_FONT_WEIGHT_NORMAL);
}

void Sheet::paint (const picture::Picture& image, double x, double y)
{
    const picture::Surface surface = picture::surfaceOf (image);
    cairo_t* cr = area.context ();
    cairo_save (cr);
    cairo_translate (cr, x, y);
    cairo_scale (cr, 1.0 / scale, 1.0 / scale);
    cairo_set_source_surface (cr, surface.get (), 0.0, 0.0);
    cairo_pattern_set_filter (cairo_get_source (cr), CAIRO_FILTER_NEAREST);
    cairo_paint (cr);
    cairo_restore (cr);
}

void Sheet::text (double x, double baseline, double size, picture::Colour colour, std::string_view words)
{
    area.setColour (colour);
    cairo_set_font_size (area.context (), size);
    cairo_move_to (area.context (), x, baseline);
    cairo_show_text (area.context (), std::string (words).c_str ());
    cairo_new_path (area.context ()); // forgets where the words ended
}

void Sheet::centredText (double x, double baseline, double size, picture::Colour colour,
                         std::string_view words)
{
    cairo_text_extents_t extents;
    cairo_set_font_size (area.context (), size);
    cairo_text_extents (area.context (), std::string (words).c_str (), &extents);
    text (x - extents.x_advance / 2.0, baseline, size, colour, words);
}

void Sheet::polygon (std::initializer_list<std::pair<double, double>> points, picture::Colour colour)
{
    for (const auto& [x, y] : points)
        cairo_line_to (area.context (), x, y);
    cairo_close_path (area.context ());
    area.setColour (colour);
    cairo_fill (area.context ());
}

void Sheet::arrow (double x1, double y1, double x2, double y2, picture::Colour colour)
{
    constexpr double head = 5.0;
    const double length = std::hypot (x2 - x1, y2 - y1);
    const double dx = (x2 - x1) / length * head;
    const double dy = (y2 - y1) / length * head;
    area.line (x1, y1, x2 - dx, y2 - dy, 1.5, colour);
    polygon ({ { x2, y2 },
               { x2 - dx + dy * 0.6, y2 - dy + dx * 0.6 },
               { x2 - dx - dy * 0.6, y2 - dy - dx * 0.6 } },
             colour);
}

void Sheet::curve (const std::vector<std::pair<double, double>>& points, picture::Colour colour)
{
    for (const auto& [x, y] : points)
        cairo_line_to (area.context (), x, y);
    area.setColour (colour);
    cairo_set_line_width (area.context (), 1.5);
    cairo_set_line_join (area.context (), CAIRO_LINE_JOIN_ROUND);
    cairo_stroke (area.context ());
}
}
