#include "analysis/Sheet.h"

namespace analysis
{
picture::Canvas emptySheet (int width, int height)
{
    picture::Canvas canvas (width, height, paper);
    cairo_select_font_face (canvas.context (), "Liberation Sans", CAIRO_FONT_SLANT_NORMAL,
                            CAIRO_FONT_WEIGHT_NORMAL);
    return canvas;
}

void text (picture::Canvas& canvas, double x, double y, double size, const std::string& words)
{
    canvas.setColour (ink);
    cairo_set_font_size (canvas.context (), size);
    cairo_move_to (canvas.context (), x, y);
    cairo_show_text (canvas.context (), words.c_str ());
}
}
