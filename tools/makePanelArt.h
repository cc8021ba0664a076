// The panel's art: every bitmap of the layout's table, drawn from its rows.
#pragma once

#include "tools/makePanelDrawing.h"

#include <string>
#include <vector>

namespace panelart
{
// One piece of lettering on the background, with the rectangle of its capitals.
struct PrintedText
{
    std::string text;
    double x, y, width, height;
    const TextStyle* style;
};

// All lettering of the background: control labels, free labels, position names.
std::vector<PrintedText> printedTexts ();

// How far the ticks reach beyond the knob's frame, in pixels.
inline constexpr double tickReach = 2.3;

// Ticks of a scale around a knob's centre; `knobSize` is the width of its frame. Drawn into the
// background and into every frame alike, so that both agree where the square frame covers ticks.
void drawTicks (Canvas& canvas, panel::Scale scale, double centreX, double centreY, int knobSize);

// The picture for a row of the bitmap table.
Image drawBitmap (const panel::Bitmap& bitmap);
std::vector<std::uint8_t> bmpFile (const panel::Bitmap& bitmap);

// The panel as it looks in use: controls at typical values, keys down, texts in the displays.
void savePreview (const std::string& pngPath);

// The pictures behind drawBitmap, by what they show.
Image drawBackground ();
Image drawAbout ();
Image drawControlBitmap (const panel::Bitmap& bitmap);
}
