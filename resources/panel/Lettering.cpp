#include "resources/panel/Lettering.h"

#include <cmath>
#include <functional>
#include <string>
#include <vector>

namespace panel
{
namespace
{
constexpr const char* narrowFamily = "Liberation Sans Narrow";
}

const TextStyle labelStyle{ narrowFamily, true, labelCapHeight, 0.3, letterColour };
const TextStyle titleStyle{ narrowFamily, true, titleCapHeight, 0.8, letterColour };
const TextStyle scaleStyle{ narrowFamily, true, labelCapHeight, 0.1, scaleColour };

namespace
{
// One UTF-8 letter per entry, so that letters can be set one by one.
std::vector<std::string> letters (std::string_view text)
{
    std::vector<std::string> result;
    for (const char byte : text)
    {
        const bool continues = (static_cast<unsigned char> (byte) & 0xc0) == 0x80;
        if (continues && !result.empty ())
        {
            result.back () += byte;
        }
        else
        {
            result.emplace_back (1, byte);
        }
    }
    return result;
}

// In the size whose capitals are as high as the style says, up to a whole pixel.
void selectFont (const Canvas& canvas, const TextStyle& style)
{
    constexpr double probeSize = 1000.0;
    cairo_t* cr = canvas.context ();
    cairo_select_font_face (cr, style.family, CAIRO_FONT_SLANT_NORMAL,
                            style.bold ? CAIRO_FONT_WEIGHT_BOLD : CAIRO_FONT_WEIGHT_NORMAL);
    cairo_set_font_size (cr, probeSize);
    cairo_text_extents_t capital;
    cairo_text_extents (cr, "H", &capital);
    cairo_set_font_size (cr, canvas.nearestEdge (style.capHeight) * probeSize / capital.height);
}

struct Glyph
{
    std::string letter;
    double inkStart, inkWidth, bearing; // inkStart: where the font's own spacing would put the ink
};

// How uneven the gaps become when every letter's ink is moved to the nearest whole pixel.
double unevenness (const Canvas& canvas, const std::vector<Glyph>& glyphs, double phase, double extraTracking)
{
    double sum = 0, lastShift = 0;
    for (std::size_t index = 0; index < glyphs.size (); ++index)
    {
        const double ideal = glyphs[index].inkStart + phase + extraTracking * static_cast<double> (index);
        const double shift = canvas.nearestEdge (ideal) - ideal;
        if (index > 0)
            sum += (shift - lastShift) * (shift - lastShift);
        lastShift = shift;
    }
    return sum;
}

// Puts every letter's ink on a pixel's edge, which keeps upright strokes sharp. The phase and a small
// change of the tracking are chosen so that the gaps stay as even as they can.
void snapToPixels (const Canvas& canvas, std::vector<Glyph>& glyphs)
{
    constexpr double trackingStep = 0.05, phaseStep = 0.1;
    constexpr int trackingSteps = 5, phaseSteps = 10;
    constexpr double changeCost = 0.02; // per step away from the style's tracking
    double best = 1e9, bestPhase = 0, bestTracking = 0;
    for (int change = -trackingSteps; change <= trackingSteps; ++change)
    {
        for (int step = 0; step < phaseSteps; ++step)
        {
            const double phase = step * phaseStep, tracking = change * trackingStep;
            const double cost = unevenness (canvas, glyphs, phase, tracking) + changeCost * std::abs (change);
            if (cost < best)
            {
                best = cost;
                bestPhase = phase;
                bestTracking = tracking;
            }
        }
    }
    const double first = glyphs.empty () ? 0 : canvas.nearestEdge (glyphs.front ().inkStart + bestPhase);
    for (std::size_t index = 0; index < glyphs.size (); ++index)
    {
        const double ideal = glyphs[index].inkStart + bestPhase + bestTracking * static_cast<double> (index);
        glyphs[index].inkStart = canvas.nearestEdge (ideal) - first;
    }
}

// Calls place(letter, x) for every letter of a text that begins at 0; answers the width of the ink.
double layOut (const Canvas& canvas, std::string_view text, const TextStyle& style,
               const std::function<void (const std::string&, double)>& place)
{
    selectFont (canvas, style);
    std::vector<Glyph> glyphs;
    double pen = 0;
    for (const std::string& letter : letters (text))
    {
        cairo_text_extents_t extents;
        cairo_text_extents (canvas.context (), letter.c_str (), &extents);
        if (extents.width > 0)
            glyphs.push_back ({ letter, pen + extents.x_bearing, extents.width, extents.x_bearing });
        pen += extents.x_advance + style.tracking;
    }
    snapToPixels (canvas, glyphs);
    for (const Glyph& glyph : glyphs)
        place (glyph.letter, glyph.inkStart - glyph.bearing);
    return glyphs.empty () ? 0 : canvas.edgeAfter (glyphs.back ().inkStart + glyphs.back ().inkWidth);
}
}

double textWidth (const Canvas& canvas, std::string_view text, const TextStyle& style)
{
    return layOut (canvas, text, style, [] (const std::string&, double) {});
}

void drawText (Canvas& canvas, std::string_view text, double x, double capTop, Align align,
               const TextStyle& style)
{
    const double width = textWidth (canvas, text, style);
    const double start = align == Align::left ? x : align == Align::right ? x - width : x - width / 2;
    const double baseline = canvas.nearestEdge (capTop) + canvas.nearestEdge (style.capHeight);
    cairo_t* cr = canvas.context ();
    canvas.setColour (style.colour);
    layOut (canvas, text, style,
            [&] (const std::string& letter, double offset)
            {
                cairo_move_to (cr, canvas.nearestEdge (start) + offset, baseline);
                cairo_text_path (cr, letter.c_str ());
                cairo_fill (cr);
            });
}
}
