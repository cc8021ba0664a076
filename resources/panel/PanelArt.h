// The panel's art: every bitmap of the layout's table, drawn from its rows.
#pragma once

#include "resources/panel/Canvas.h"

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

// All lettering of the background: control labels, free labels, position names, the maker's name.
std::vector<PrintedText> printedTexts ();
std::vector<PrintedText> printedPositionNames (const panel::Control& control);

// Small drawings in place of position names; answers where they stand.
std::vector<Box> drawPositionDrawings (Canvas& canvas, const panel::Control& control);

// How far the ticks reach beyond the knob's frame, in pixels.
inline constexpr double tickReach = 2.3;

// Ticks of a scale around a knob's centre; `knobSize` is the width of its frame. Drawn into the
// background and into every frame alike, so that both agree where the square frame covers ticks.
void drawTicks (Canvas& canvas, panel::Scale scale, double centreX, double centreY, int knobSize);

// The picture for a row of the bitmap table, and the file made of it.
Image drawBitmap (const panel::Bitmap& bitmap);
std::vector<std::uint8_t> bmpFile (const panel::Bitmap& bitmap);

// The pictures behind drawBitmap, by what they show.
Image drawBackground ();
Image drawAbout ();
Image drawControlBitmap (const panel::Bitmap& bitmap);

// The panel as it looks in use: controls at typical values, keys down, texts in the displays.
void savePreview (const std::string& pngPath);
}
