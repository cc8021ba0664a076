#include "resources/panel/PanelArt.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <numbers>

namespace panel
{
namespace
{
constexpr double plateRadius = 4;
constexpr double logoX = 17;
constexpr int titleBand = 15; // height of the strip that carries a plate's title

const TextStyle logoStyle{ fontFamily, true, 20, -0.6, letterColour };
const TextStyle subtitleStyle{ "Liberation Sans Narrow", true, 6, 1.45, scaleColour };

void platePath (Canvas& canvas, const Section& section)
{
    for (const Rect& part : { section.first, section.second })
    {
        if (part.width > 0)
            canvas.roundedRect (part.x, part.y, part.width, part.height, plateRadius);
    }
}

void drawPlate (Canvas& canvas, const Section& section)
{
    cairo_t* cr = canvas.context ();
    cairo_save (cr);
    cairo_translate (cr, 0, 1);
    canvas.setColour (shadowColour);
    platePath (canvas, section);
    cairo_fill (cr);
    cairo_restore (cr);

    canvas.setColour (plateColour);
    platePath (canvas, section);
    cairo_fill (cr);

    cairo_save (cr);
    platePath (canvas, { section.name, section.titled, section.first, {} });
    cairo_clip (cr);
    if (section.titled)
    {
        canvas.fillRect (section.first.x, section.first.y, section.first.width, titleBand,
                         mix (plateColour, highlightColour, 0.09));
    }
    canvas.fillRect (section.first.x, section.first.y, section.first.width, 1,
                     mix (plateColour, highlightColour, 0.25));
    cairo_restore (cr);
}

PrintedText printed (const Canvas& canvas, std::string_view text, double x, double capTop, Align align,
                     const TextStyle& style)
{
    const double width = textWidth (canvas, text, style);
    const double left = align == Align::left ? x : align == Align::right ? x - width : x - width / 2;
    return { std::string (text), { canvas.nearestEdge (left), capTop, width, style.capHeight }, &style };
}

void drawSliderGroove (Canvas& canvas, const Control& control)
{
    const Rect& rect = control.rect;
    const double middle = rect.y + rect.height / 2.0;
    canvas.setColour (mix (plateColour, highlightColour, 0.14));
    canvas.fillRoundedRect (rect.x, middle - 0.5, rect.width, 3, 1.5);
    canvas.setColour (shadowColour);
    canvas.fillRoundedRect (rect.x, middle - 1.5, rect.width, 3, 1.5);
}

// Eleven ticks below the upper slider serve both.
void drawSliderTicks (Canvas& canvas)
{
    constexpr int steps = 10;
    const Control& upper = *std::ranges::find (controls (), ControlKind::slider, &Control::kind);
    const Bitmap& handle = *findBitmap (upper.bitmapId);
    const double travel = upper.rect.width - handle.width;
    for (int tick = 0; tick <= steps; ++tick)
    {
        const double x = upper.rect.x + handle.width / 2.0 + travel * tick / steps;
        canvas.fillRect (std::round (x - 0.5), upper.rect.bottom () + 2, 1, 3, scaleColour,
                         tick % (steps / 2) == 0 ? 1.0 : 0.6);
    }
}

void drawGlass (Canvas& canvas, const Rect& rect)
{
    canvas.setColour (mix (plateColour, highlightColour, 0.18));
    canvas.fillRoundedRect (rect.x - 2, rect.y - 1, rect.width + 4, rect.height + 4, 3);
    canvas.setColour (shadowColour);
    canvas.fillRoundedRect (rect.x - 2, rect.y - 2, rect.width + 4, rect.height + 4, 3);
    canvas.fillRect (rect.x, rect.y, rect.width, rect.height, glassColour);
}

void drawKeyBed (Canvas& canvas, const Control& keyboard)
{
    const Rect& keys = keyboard.rect;
    canvas.setColour (shadowColour);
    canvas.fillRoundedRect (keys.x - 7, keys.y - 6, keys.width + 7, keys.height + 13, 3);
    canvas.fillRect (keys.x, keys.y - 4, whiteKeyCount * findBitmap (whiteKeyUpId)->width, 2, accentColour);
}

// Under the name runs a horizon that turns into the waves that the instrument is made of.
void drawHorizon (Canvas& canvas)
{
    cairo_t* cr = canvas.context ();
    const double ground = 60.5, height = 7;
    cairo_move_to (cr, logoX, ground);
    cairo_line_to (cr, 40, ground);
    cairo_curve_to (cr, 47, ground, 47, ground - height, 54, ground - height);
    cairo_curve_to (cr, 61, ground - height, 61, ground, 68, ground);
    cairo_line_to (cr, 80, ground);
    cairo_line_to (cr, 100.5, ground - height);
    cairo_line_to (cr, 100.5, ground);
    cairo_line_to (cr, 116.5, ground);
    cairo_line_to (cr, 116.5, ground - height);
    cairo_line_to (cr, 130.5, ground - height);
    cairo_line_to (cr, 130.5, ground);
    cairo_line_to (cr, 160, ground);
    canvas.setColour (accentColour);
    cairo_set_line_width (cr, 1.5);
    cairo_set_line_join (cr, CAIRO_LINE_JOIN_ROUND);
    cairo_stroke (cr);
}

// A sun behind two hills, in a ring.
void drawBadge (Canvas& canvas, double x, double y)
{
    constexpr double radius = 16;
    cairo_t* cr = canvas.context ();
    canvas.fillCircle (x, y, radius, caseColour);
    cairo_save (cr);
    cairo_arc (cr, x, y, radius, 0, 2 * std::numbers::pi);
    cairo_clip (cr);
    canvas.fillCircle (x, y - 2, 7, accentColour);
    canvas.fillCircle (x - 11, y + 15, 16, mix (plateColour, highlightColour, 0.26));
    canvas.fillCircle (x + 10, y + 19, 18, mix (plateColour, highlightColour, 0.1));
    cairo_restore (cr);
    canvas.setColour (scaleColour);
    cairo_set_line_width (cr, 1);
    cairo_arc (cr, x, y, radius, 0, 2 * std::numbers::pi);
    cairo_stroke (cr);
}
}

std::vector<PrintedText> printedTexts (const Canvas& canvas)
{
    std::vector<PrintedText> texts{ printed (canvas, "Brimvale", logoX, 25, Align::left, logoStyle),
                                    printed (canvas, "SUBTRACTIVE SYNTHESIZER", logoX, 74, Align::left,
                                             subtitleStyle) };
    for (const Control& control : controls ())
    {
        int top = labelTop (control);
        for (const char* line : { control.label, control.secondLabel })
        {
            if (line != nullptr)
                texts.push_back (printed (canvas, line, control.centreX (), top, Align::centre, labelStyle));
            top += labelLinePitch;
        }
        std::ranges::move (printedPositionNames (canvas, control), std::back_inserter (texts));
    }
    for (const Label& label : labels ())
    {
        texts.push_back (printed (canvas, label.text, label.x, label.capTop, label.align,
                                  label.style == LabelStyle::section ? titleStyle : labelStyle));
    }
    return texts;
}

Picture drawBackground (double scale)
{
    Canvas canvas (panelRect.width, panelRect.height, caseColour, scale);
    for (const Section& section : sections ())
        drawPlate (canvas, section);
    drawSliderTicks (canvas);
    for (const Control& control : controls ())
    {
        drawTicks (canvas, control.scale, control.rect.x, control.rect.y, control.rect.width);
        drawPositionDrawings (canvas, control);
        if (control.kind == ControlKind::slider)
        {
            drawSliderGroove (canvas, control);
        }
        else if (control.kind == ControlKind::valueDisplay)
        {
            drawGlass (canvas, control.rect);
        }
        else if (control.kind == ControlKind::keyboard)
        {
            drawKeyBed (canvas, control);
        }
    }
    drawGlass (canvas, programDisplayRect);
    drawHorizon (canvas);
    drawBadge (canvas, 572, 249);
    for (const PrintedText& text : printedTexts (canvas))
        drawText (canvas, text.text, text.box.x, text.box.y, Align::left, *text.style);
    return canvas.image ();
}
}
