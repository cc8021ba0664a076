// Letters on the panel's pictures, set one by one so that upright strokes stay sharp.
#pragma once

#include <string_view>

#include "picture/Canvas.h"
#include "resources/panel/PanelLayout.h"

namespace panel
{
using picture::Canvas;
using picture::mix;
using picture::Picture;

// All art is lit from the upper left: highlights face it, shadows fall to the lower right. Shades are
// mixed with these two.
inline constexpr Colour highlightColour{ 0xff, 0xff, 0xff };
inline constexpr Colour shadowColour{ 0x05, 0x08, 0x09 };

struct Box
{
    double x, y, width, height;
};

struct TextStyle
{
    const char* family;
    bool bold;
    double capHeight; // panel pixels
    double tracking;  // panel pixels added after each letter
    Colour colour;
};

extern const TextStyle labelStyle;
extern const TextStyle titleStyle;
extern const TextStyle scaleStyle;

// Width of a text's ink on this canvas, up to a whole pixel of it.
double textWidth (const Canvas& canvas, std::string_view text, const TextStyle& style);

// x is the edge or centre that `align` names, capTop the top of the capitals.
void drawText (Canvas& canvas, std::string_view text, double x, double capTop, Align align,
               const TextStyle& style);
}
