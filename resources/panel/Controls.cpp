#include "resources/panel/PanelArt.h"

#include <cmath>
#include <numbers>
#include <stdexcept>

namespace panel
{
namespace
{
constexpr Colour ivory{ 0xf0, 0xeb, 0xdf };

struct Point
{
    double x, y;
};

// 0 degrees is up, positive angles turn clockwise.
Point onCircle (Point centre, double radius, double degrees)
{
    const double radians = degrees * std::numbers::pi / 180;
    return { centre.x + radius * std::sin (radians), centre.y - radius * std::cos (radians) };
}

// A disc shaded from the upper left to the lower right.
void shadedDisc (Canvas& canvas, Point centre, double radius, Colour lit, Colour shaded)
{
    const double reach = radius * std::numbers::sqrt2 / 2;
    cairo_pattern_t* shade =
        cairo_pattern_create_linear (centre.x - reach, centre.y - reach, centre.x + reach, centre.y + reach);
    cairo_pattern_add_color_stop_rgb (shade, 0, lit.red / 255.0, lit.green / 255.0, lit.blue / 255.0);
    cairo_pattern_add_color_stop_rgb (shade, 1, shaded.red / 255.0, shaded.green / 255.0,
                                      shaded.blue / 255.0);
    cairo_set_source (canvas.context (), shade);
    cairo_arc (canvas.context (), centre.x, centre.y, radius, 0, 2 * std::numbers::pi);
    cairo_fill (canvas.context ());
    cairo_pattern_destroy (shade);
}

void drawKnob (Canvas& canvas, Point centre, double radius, double degrees)
{
    canvas.fillCircle (centre.x + 0.7, centre.y + 1.1, radius + 0.4, shadowColour, 0.55);
    shadedDisc (canvas, centre, radius, mix (plateColour, highlightColour, 0.42),
                mix (plateColour, shadowColour, 0.5));
    canvas.fillCircle (centre.x, centre.y, radius - 1, mix (caseColour, shadowColour, 0.35));
    shadedDisc (canvas, centre, radius - 3, mix (plateColour, highlightColour, 0.25),
                mix (plateColour, highlightColour, 0.06));

    cairo_set_line_cap (canvas.context (), CAIRO_LINE_CAP_ROUND);
    const Point inner = onCircle (centre, radius * 0.3, degrees);
    const Point outer = onCircle (centre, radius - 1.3, degrees);
    canvas.line (inner.x, inner.y, outer.x, outer.y, 2.0, ivory);
    cairo_set_line_cap (canvas.context (), CAIRO_LINE_CAP_BUTT);
}

// The scale of the first control that shows a bitmap; those that share a bitmap share its ticks.
Scale scaleOf (int bitmapId)
{
    for (const Control& control : controls ())
    {
        if (control.bitmapId == bitmapId)
            return control.scale == Scale::bipolar ? Scale::unipolar : control.scale;
    }
    return Scale::none;
}

void drawKnobStrip (Canvas& canvas, const Bitmap& bitmap)
{
    const Scale scale = scaleOf (bitmap.id);
    for (int frame = 0; frame < bitmap.frames; ++frame)
    {
        const Point centre{ bitmap.width / 2.0, (frame + 0.5) * bitmap.frameHeight () };
        cairo_save (canvas.context ());
        cairo_rectangle (canvas.context (), 0, frame * bitmap.frameHeight (), bitmap.width,
                         bitmap.frameHeight ());
        cairo_clip (canvas.context ());
        drawTicks (canvas, scale, 0, frame * bitmap.frameHeight (), bitmap.width);
        drawKnob (canvas, centre, bitmap.width / 2.0 - 1.8, pointerDegrees (scale, frame, bitmap.frames));
        cairo_restore (canvas.context ());
    }
}

// A slide switch: off is an empty slot with the grip at its left, on a lit slot with the grip at its
// right, so that position tells the state as well as colour does.
void drawSwitch (Canvas& canvas, int y, bool on)
{
    constexpr int width = 31, height = 6, gripWidth = 12;
    canvas.setColour (on ? accentColour : shadowColour);
    canvas.fillRoundedRect (0, y, width, height, 2);
    const int gripX = on ? width - gripWidth - 1 : 1;
    canvas.fillRect (gripX, y + 1, gripWidth, height - 2, on ? ivory : scaleColour);
    for (int groove = 0; groove < 3; ++groove)
        canvas.fillRect (gripX + 3 + groove * 2, y + 2, 1, height - 4, caseColour, 0.7);
}

// Off: a dark hollow ring. On: filled and bright to the rim.
void drawLamp (Canvas& canvas, int y, bool on)
{
    const Point centre{ 3, y + 3.0 };
    canvas.fillCircle (centre.x, centre.y, 3,
                       on ? mix (accentColour, shadowColour, 0.35) : mix (plateColour, highlightColour, 0.3));
    canvas.fillCircle (centre.x, centre.y, on ? 2.4 : 2, on ? accentColour : shadowColour);
    if (on)
        canvas.fillCircle (centre.x - 0.6, centre.y - 0.6, 1, highlightColour, 0.85);
}

void drawSliderHandle (Canvas& canvas)
{
    canvas.fillRect (0, 1, 6, 10, shadowColour);
    canvas.fillRect (0, 1, 5, 9, mix (plateColour, highlightColour, 0.42));
    canvas.fillRect (1, 2, 4, 8, mix (plateColour, highlightColour, 0.14));
    canvas.fillRect (2, 2, 2, 8, ivory);
}

void drawSmallButton (Canvas& canvas, int y, bool pressed)
{
    constexpr int size = 20;
    canvas.setColour (shadowColour);
    canvas.fillRoundedRect (0, y, size, size, 3.5);
    const double drop = pressed ? 1 : 0;
    canvas.setColour (pressed ? mix (plateColour, shadowColour, 0.35)
                              : mix (plateColour, highlightColour, 0.34));
    canvas.fillRoundedRect (1, y + 1 + drop, size - 2, size - 3, 2.5);
    canvas.setColour (pressed ? mix (plateColour, shadowColour, 0.15)
                              : mix (plateColour, highlightColour, 0.14));
    canvas.fillRoundedRect (1, y + 2 + drop, size - 2, size - 4, 2.5);
}

// Shows a sounding key.
void drawKeyMark (Canvas& canvas, double centreX, double centreY, double length)
{
    constexpr double thickness = 5;
    canvas.setColour (accentColour);
    canvas.fillRoundedRect (centreX - length / 2, centreY - thickness / 2, length, thickness, thickness / 2);
}

// A white key leaves one dark column at its right, the gap to its neighbour. Pressed, it sinks: its
// front edge nearly goes, the shadow of the case reaches further down, and a mark lights up.
void drawWhiteKey (Canvas& canvas, bool down)
{
    constexpr int width = 35, height = 98, body = width - 1;
    const Colour top = mix (ivory, plateColour, down ? 0.35 : 0.04);
    const Colour front = mix (ivory, caseColour, down ? 0.55 : 0.3);
    const int frontHeight = down ? 2 : 6;
    canvas.fillRect (0, 0, width, height, shadowColour);
    canvas.setColour (front);
    canvas.fillRoundedRect (0, -6, body, height + 5, 2.5);
    canvas.setColour (top);
    canvas.fillRoundedRect (0, -6, body, height + 5 - frontHeight, 2.5);
    canvas.fillRect (0, 0, 1, height - frontHeight - 4, highlightColour, down ? 0.15 : 0.6);
    canvas.fillRect (body - 1, 0, 1, height - frontHeight - 4, caseColour, 0.15);
    const int shadowRows = down ? 9 : 5;
    for (int row = 0; row < shadowRows; ++row)
        canvas.fillRect (0, row, body, 1, shadowColour, 0.4 * (shadowRows - row) / shadowRows);
    if (down)
        drawKeyMark (canvas, body / 2.0, height - 16, 14);
}

void drawBlackKey (Canvas& canvas, bool down)
{
    constexpr int width = 21, height = 59;
    const int frontHeight = down ? 3 : 8;
    canvas.fillRect (0, 0, width, height, shadowColour);
    canvas.setColour (mix (plateColour, highlightColour, down ? 0.02 : 0.08));
    canvas.fillRoundedRect (1, -4, width - 2, height + 3, 2);
    canvas.setColour (mix (plateColour, shadowColour, down ? 0.72 : 0.45));
    canvas.fillRoundedRect (3, -4, width - 6, height + 3 - frontHeight, 2);
    canvas.fillRect (2, 0, 1, height - frontHeight - 3, highlightColour, down ? 0.1 : 0.3);
    if (down)
        drawKeyMark (canvas, width / 2.0, height - 13, 9);
}
}

Picture drawControlBitmap (const Bitmap& bitmap, double scale)
{
    Canvas canvas (bitmap.width, bitmap.height, plateColour, scale);
    switch (bitmap.id)
    {
    case 179:
    case 180:
        drawBlackKey (canvas, bitmap.id == blackKeyDownId);
        break;
    case 181:
    case 182:
        drawWhiteKey (canvas, bitmap.id == whiteKeyDownId);
        break;
    case 184:
        drawSliderHandle (canvas);
        break;
    case 193:
    case 198:
    case 201:
        drawSwitch (canvas, 0, false);
        drawSwitch (canvas, bitmap.frameHeight (), true);
        break;
    case 195:
        drawSmallButton (canvas, 0, false);
        drawSmallButton (canvas, bitmap.frameHeight (), true);
        break;
    case 202:
        drawLamp (canvas, 0, false);
        drawLamp (canvas, bitmap.frameHeight (), true);
        break;
    default:
        if (scaleOf (bitmap.id) == Scale::none)
            throw std::runtime_error ("no drawing for bitmap " + std::to_string (bitmap.id));
        drawKnobStrip (canvas, bitmap);
    }
    return canvas.image ();
}
}
