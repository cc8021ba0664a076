// The panel's art: every bitmap of the layout's table, drawn from its rows.
#pragma once

#include "resources/panel/BmpFile.h"
#include "resources/panel/Lettering.h"

#include <string>
#include <vector>

namespace panel
{
// One piece of lettering on the background; the box is that of its capitals.
struct PrintedText
{
    std::string text;
    Box box;
    const TextStyle* style;
};

// All lettering of the background: control labels, free labels, position names, the maker's name. Placed to
// whole pixels of the canvas.
std::vector<PrintedText> printedTexts (const Canvas& canvas);
std::vector<PrintedText> printedPositionNames (const Canvas& canvas, const Control& control);

// Small drawings in place of position names; answers where they stand.
std::vector<Box> drawPositionDrawings (Canvas& canvas, const Control& control);

// How far the ticks reach beyond the knob's frame, in pixels.
inline constexpr double tickReach = 2.3;

// Ticks of a scale around a knob whose frame's top left is given; `knobSize` is the width of its frame. Drawn
// into the background and into every frame alike, so that both agree where the square frame covers ticks.
void drawTicks (Canvas& canvas, Scale scale, double left, double top, int knobSize);

// The picture for a row of the bitmap table in one of the sets, and the file made of the smallest.
Picture drawBitmap (const Bitmap& bitmap, int percent = bitmapPercent);
std::vector<std::uint8_t> bmpFile (const Bitmap& bitmap);

// The pictures behind drawBitmap, by what they show.
Picture drawBackground (double scale);
Picture drawAbout (double scale);
Picture drawControlBitmap (const Bitmap& bitmap, double scale);
}
