// Drawing with cairo, reduced to what the panel's art needs.
#pragma once

#include "resources/panel/BmpFile.h"

#include <cairo.h>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

namespace panel
{
// All art is lit from the upper left: highlights face it, shadows fall to the lower right. Shades are
// mixed with these two.
inline constexpr panel::Colour highlightColour{ 0xff, 0xff, 0xff };
inline constexpr panel::Colour shadowColour{ 0x05, 0x08, 0x09 };

struct Box
{
    double x, y, width, height;
};

struct TextStyle
{
    const char* family;
    bool bold;
    double capHeight; // pixels
    double tracking;  // pixels added after each letter
    panel::Colour colour;
};

class Canvas
{
public:
    Canvas (int width, int height, panel::Colour ground);

    cairo_t* context () const { return cr.get (); }

    void setColour (panel::Colour colour, double opacity = 1.0);
    void fillRect (double x, double y, double width, double height, panel::Colour colour,
                   double opacity = 1.0);
    void fillCircle (double x, double y, double radius, panel::Colour colour, double opacity = 1.0);
    // A path of a rectangle with round corners; the caller fills or strokes it.
    void roundedRect (double x, double y, double width, double height, double radius);
    void line (double x1, double y1, double x2, double y2, double width, panel::Colour colour);

    double measure (std::string_view text, const TextStyle& style) const;
    // x is the edge or centre that `align` names, capTop the top of the capitals.
    void text (std::string_view text, double x, double capTop, panel::Align align, const TextStyle& style);

    Image image () const;
    void savePng (const std::string& path) const;
    // Puts a part of a picture at (x, y).
    void paste (const Image& picture, const panel::Rect& part, int x, int y);

private:
    void selectFont (const TextStyle& style) const;
    // Calls place(letter, x) for every letter of a text that begins at 0; answers the width of the ink.
    double layOut (std::string_view text, const TextStyle& style,
                   const std::function<void (const std::string&, double)>& place) const;

    std::unique_ptr<cairo_surface_t, void (*) (cairo_surface_t*)> surface;
    std::unique_ptr<cairo_t, void (*) (cairo_t*)> cr;
};

// Width of a text's ink in whole pixels.
double textWidth (std::string_view text, const TextStyle& style);

// Mix of two colours: 0 gives the first, 1 the second.
panel::Colour mix (panel::Colour first, panel::Colour second, double amount);

extern const TextStyle labelStyle;
extern const TextStyle titleStyle;
extern const TextStyle scaleStyle;
}
