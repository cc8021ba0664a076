#include "resources/panel/PanelArt.h"

#include <cmath>
#include <functional>
#include <numbers>

namespace panel
{
namespace
{
constexpr Colour nightSky{ 0x0f, 0x1b, 0x21 };
constexpr Colour dawnSky{ 0x2d, 0x4a, 0x50 };
constexpr Colour nearHill{ 0x0a, 0x11, 0x13 };
constexpr Colour farHill{ 0x35, 0x50, 0x54 };
constexpr double sunX = 430, sunY = 128, sunRadius = 46;

double sine (double cycles)
{
    return std::sin (2 * std::numbers::pi * cycles);
}

// 0..1, rising and dropping back once a cycle.
double saw (double cycles)
{
    return cycles - std::floor (cycles);
}

double pulseTrain (double cycles, double duty)
{
    return saw (cycles) < duty ? 1 : 0;
}

// A range of hills: everything below height(x), which is measured from the top.
void drawHills (Canvas& canvas, Colour colour, const std::function<double (double)>& height)
{
    constexpr int pointsPerPixel = 2;
    constexpr int pointCount = aboutRect.width * pointsPerPixel;
    cairo_t* cr = canvas.context ();
    cairo_move_to (cr, 0, aboutRect.height);
    for (int point = 0; point <= pointCount; ++point)
    {
        const double x = static_cast<double> (point) / pointsPerPixel;
        cairo_line_to (cr, x, height (x));
    }
    cairo_line_to (cr, aboutRect.width, aboutRect.height);
    cairo_close_path (cr);
    canvas.setColour (colour);
    cairo_fill (cr);
}

void drawSky (Canvas& canvas)
{
    constexpr int bands = 7;
    for (int band = 0; band < bands; ++band)
        canvas.fillCircle (sunX, sunY, 620 - band * 86.0, mix (nightSky, dawnSky, (band + 1.0) / bands));
    canvas.fillCircle (sunX, sunY, sunRadius, accentColour);
}
}

// Dawn over a valley whose ranges are the waves of the instrument: saws far off, then sines, then a
// pulse train in front.
Picture drawAbout (double scale)
{
    Canvas canvas (aboutRect.width, aboutRect.height, nightSky, scale);
    drawSky (canvas);

    const auto distance = [] (double amount) { return mix (nearHill, farHill, amount); };
    drawHills (canvas, distance (1.0),
               [] (double x)
               { return 150 - 34 * saw (x / 102 + 0.3) * (0.55 + 0.45 * sine (x / 612 + 0.1)); });
    drawHills (canvas, distance (0.66),
               [] (double x) { return 162 + 13 * sine (x / 245 + 0.12) + 4 * sine (x / 81 + 0.4); });
    drawHills (canvas, distance (0.38), [] (double x) { return 182 + 13 * sine (x / 330 + 0.55); });
    drawHills (canvas, distance (0.0),
               [] (double x)
               { return 214 + 6 * sine (x / 612 + 0.2) - (x > 330 ? 9 * pulseTrain (x / 24, 0.35) : 0); });

    const TextStyle name{ fontFamily, true, 34, -1, letterColour };
    const TextStyle plain{ fontFamily, false, 8, 0.4, letterColour };
    drawText (canvas, "Brimvale", 42, 40, Align::left, name);
    drawText (canvas, "Two-oscillator subtractive synthesizer", 42, 90, Align::left, plain);

    drawText (canvas, "Click or Escape closes", aboutRect.width - 40, aboutVersionRect.y - aboutRect.y + 4,
              Align::right, plain);

    canvas.setColour (mix (plateColour, letterColour, 0.3));
    const double line = canvas.nearestEdge (1);
    cairo_set_line_width (canvas.context (), line);
    cairo_rectangle (canvas.context (), line / 2, line / 2, aboutRect.width - line, aboutRect.height - line);
    cairo_stroke (canvas.context ());
    return canvas.image ();
}
}
