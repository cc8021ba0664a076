#include "tools/makePanelArt.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>
#include <span>

namespace panelart
{
using namespace panel;

namespace
{
constexpr Colour black{ 0x05, 0x08, 0x09 };
constexpr Colour white{ 0xff, 0xff, 0xff };
constexpr double plateRadius = 4;
constexpr int titleBand = 15; // height of the strip that carries a plate's title

// A plate is one rectangle or, where two sections interlock, two that share an edge.
struct Plate
{
    bool titled;
    Rect first, second;
};

constexpr Plate plates[] = {
    { true, { 176, 8, 259, 87 }, {} },                    // program
    { true, { 438, 8, 131, 87 }, {} },                    // voices and velocity
    { false, { 572, 8, 26, 87 }, {} },                    // menu
    { true, { 14, 98, 45, 189 }, {} },                    // master
    { true, { 62, 98, 142, 189 }, { 190, 211, 63, 76 } }, // oscillators and noise
    { true, { 207, 98, 96, 110 }, { 256, 190, 47, 97 } }, // LFO
    { true, { 306, 98, 96, 189 }, {} },                   // filter
    { true, { 405, 98, 138, 110 }, {} },                  // amplitude envelope
    { true, { 405, 211, 138, 76 }, {} },                  // filter envelope
    { true, { 546, 98, 52, 110 }, {} },                   // output
    { false, { 546, 211, 52, 76 }, {} },                  // badge
};

void platePath (Canvas& canvas, const Plate& plate, double inset)
{
    for (const Rect& part : { plate.first, plate.second })
        if (part.width > 0)
            canvas.roundedRect (part.x + inset, part.y + inset, part.width - 2 * inset,
                                part.height - 2 * inset, plateRadius);
}

void drawPlate (Canvas& canvas, const Plate& plate)
{
    cairo_t* cr = canvas.context ();
    cairo_save (cr);
    cairo_translate (cr, 0, 1);
    canvas.setColour (black);
    platePath (canvas, plate, 0);
    cairo_fill (cr);
    cairo_restore (cr);

    canvas.setColour (plateColour);
    platePath (canvas, plate, 0);
    cairo_fill (cr);

    cairo_save (cr);
    platePath (canvas, { plate.titled, plate.first, {} }, 0);
    cairo_clip (cr);
    if (plate.titled)
        canvas.fillRect (plate.first.x, plate.first.y, plate.first.width, titleBand,
                         mix (plateColour, white, 0.09));
    canvas.fillRect (plate.first.x, plate.first.y, plate.first.width, 1, mix (plateColour, white, 0.25));
    cairo_restore (cr);
}

// A drawing of one cycle in a box of 9 x 6 pixels, as a polyline.
using Wave = std::span<const std::array<double, 2>>;
constexpr std::array<double, 2> risingSaw[] = { { 0, 6 }, { 7.5, 0.5 }, { 7.5, 6 } };
constexpr std::array<double, 2> fallingSaw[] = { { 0.5, 6 }, { 0.5, 0.5 }, { 8, 6 } };
constexpr std::array<double, 2> square[] = { { 0.5, 6 },   { 0.5, 0.5 }, { 4.5, 0.5 },
                                             { 4.5, 5.5 }, { 7.5, 5.5 }, { 7.5, 0 } };
constexpr std::array<double, 2> pulse[] = { { 0, 5.5 },   { 2.5, 5.5 }, { 2.5, 0.5 },
                                            { 5.5, 0.5 }, { 5.5, 5.5 }, { 8, 5.5 } };
constexpr std::array<double, 2> noise[] = { { 0, 3.5 }, { 1.5, 1 }, { 3, 5.5 }, { 4.5, 0 },
                                            { 6, 5 },   { 7, 1.5 }, { 8, 3.5 } };
constexpr std::array<double, 2> sampleAndHold[] = { { 0, 3.5 },   { 2.5, 3.5 }, { 2.5, 0.5 }, { 4.5, 0.5 },
                                                    { 4.5, 5.5 }, { 6.5, 5.5 }, { 6.5, 2.5 }, { 8, 2.5 } };

struct PositionName
{
    std::string_view text; // empty: a drawing
    Wave wave;             // empty, with no text: the rounded triangle or nothing
};

constexpr PositionName rangeNames[] = {
    { "\u221224", {} }, { "\u221212", {} }, { "0", {} }, { "+12", {} }, { "+24", {} }
};
constexpr PositionName oscWaveNames[] = { { "OFF", {} }, { "", risingSaw }, { "", pulse } };
constexpr PositionName filterTypeNames[] = { { "LP", {} }, { "BP", {} }, { "HP", {} } };
constexpr PositionName lfoWaveNames[] = { { "", {} },     { "", risingSaw }, { "", fallingSaw },
                                          { "", square }, { "", noise },     { "", sampleAndHold } };
constexpr PositionName voiceNames[] = { { "2", {} },  { "4", {} },  { "6", {} },  { "8", {} },
                                        { "10", {} }, { "12", {} }, { "14", {} }, { "16", {} } };
constexpr PositionName velocityNames[] = { { "0", {} }, { " ", {} }, { " ", {} }, { "3", {} }, { " ", {} },
                                           { " ", {} }, { "6", {} }, { " ", {} }, { " ", {} }, { "9", {} } };

std::span<const PositionName> positionNames (Scale scale)
{
    switch (scale)
    {
    case Scale::range:
        return rangeNames;
    case Scale::oscWave:
        return oscWaveNames;
    case Scale::filterType:
        return filterTypeNames;
    case Scale::lfoWave:
        return lfoWaveNames;
    case Scale::voices:
        return voiceNames;
    case Scale::velocity:
        return velocityNames;
    case Scale::none:
    case Scale::unipolar:
    case Scale::bipolar:
        break;
    }
    return {};
}

constexpr double nameGap = 1.5; // from the ticks to a position's name
constexpr double waveWidth = 8, waveHeight = 6;

struct Box
{
    double x, y, width, height;
};

// Where a position's name of a given size stands: straight outwards from its tick, as near to the knob
// as a circle around the ticks allows.
Box positionBox (const Control& control, int position, int count, double width, double height)
{
    constexpr double step = 0.05;
    const double radians = pointerDegrees (control.scale, position, count) * std::numbers::pi / 180;
    const double clearance = control.rect.width / 2.0 + tickReach + nameGap;
    const auto nearest = [] (double centre, double size)
    { return std::max (0.0, std::abs (centre) - size / 2); };
    double x = 0, y = 0;
    for (double distance = 0; std::hypot (nearest (x, width), nearest (y, height)) < clearance;
         distance += step)
    {
        x = std::sin (radians) * distance;
        y = -std::cos (radians) * distance;
    }
    const double centreX = control.rect.x + control.rect.width / 2.0;
    const double centreY = control.rect.y + control.rect.height / 2.0;
    return { std::round (centreX + x - width / 2), std::round (centreY + y - height / 2), width, height };
}

void drawWave (Canvas& canvas, const Box& box, Wave wave)
{
    cairo_t* cr = canvas.context ();
    canvas.setColour (scaleColour);
    cairo_set_line_width (cr, 1);
    if (wave.empty ())
    {
        const double third = waveWidth / 4;
        const double middle = box.y + waveHeight / 2;
        cairo_move_to (cr, box.x, middle);
        cairo_curve_to (cr, box.x + third * 0.8, middle - 4.2, box.x + third * 1.2, middle - 4.2,
                        box.x + third * 2, middle);
        cairo_curve_to (cr, box.x + third * 2.8, middle + 4.2, box.x + third * 3.2, middle + 4.2,
                        box.x + third * 4, middle);
    }
    for (const auto& [x, y] : wave)
        cairo_line_to (cr, box.x + x, box.y + y);
    cairo_stroke (cr);
}

void drawScaleNames (Canvas& canvas, const Control& control)
{
    const auto names = positionNames (control.scale);
    for (std::size_t position = 0; position < names.size (); ++position)
        if (names[position].text.empty ())
            drawWave (canvas,
                      positionBox (control, static_cast<int> (position), static_cast<int> (names.size ()),
                                   waveWidth, waveHeight),
                      names[position].wave);
}

PrintedText printed (std::string_view text, double x, double capTop, Align align, const TextStyle& style)
{
    static const Canvas measure (1, 1, black);
    const double width = measure.textWidth (text, style);
    const double left = align == Align::left ? x : align == Align::right ? x - width : x - width / 2;
    return { std::string (text), left, capTop, width, style.capHeight, &style };
}

void drawSliderGroove (Canvas& canvas, const Control& control)
{
    const Rect& rect = control.rect;
    const double middle = rect.y + rect.height / 2.0;
    canvas.setColour (mix (plateColour, white, 0.14));
    canvas.roundedRect (rect.x, middle - 0.5, rect.width, 3, 1.5);
    cairo_fill (canvas.context ());
    canvas.setColour (black);
    canvas.roundedRect (rect.x, middle - 1.5, rect.width, 3, 1.5);
    cairo_fill (canvas.context ());
}

// Eleven ticks between the two sliders serve both.
void drawSliderTicks (Canvas& canvas)
{
    const Bitmap* handle = findBitmap (184);
    for (int tick = 0; tick <= 10; ++tick)
    {
        const double x = 88 + handle->width / 2.0 + tick * (100 - handle->width) / 10.0;
        canvas.fillRect (std::round (x - 0.5), 202, 1, 3, scaleColour, tick % 5 == 0 ? 1.0 : 0.6);
    }
}

void drawGlass (Canvas& canvas, const Rect& rect)
{
    canvas.setColour (mix (plateColour, white, 0.18));
    canvas.roundedRect (rect.x - 2, rect.y - 1, rect.width + 4, rect.height + 4, 3);
    cairo_fill (canvas.context ());
    canvas.setColour (black);
    canvas.roundedRect (rect.x - 2, rect.y - 2, rect.width + 4, rect.height + 4, 3);
    cairo_fill (canvas.context ());
    canvas.fillRect (rect.x, rect.y, rect.width, rect.height, glassColour);
}

void drawKeyBed (Canvas& canvas, const Control& keyboard)
{
    const Rect& keys = keyboard.rect;
    canvas.setColour (black);
    canvas.roundedRect (keys.x - 7, keys.y - 6, keys.width + 7, keys.height + 13, 3);
    cairo_fill (canvas.context ());
    canvas.fillRect (keys.x, keys.y - 4, 15 * 35, 2, accentColour);
}

// Under the name runs a horizon that turns into the waves that the instrument is made of.
void drawLogo (Canvas& canvas)
{
    const TextStyle word{ "Liberation Sans", true, 20, -0.6, letterColour };
    const TextStyle line{ "Liberation Sans Narrow", true, 6, 1.45, scaleColour };
    canvas.text ("Brimvale", 17, 25, Align::left, word);
    canvas.text ("SUBTRACTIVE SYNTHESIZER", 17, 74, Align::left, line);

    cairo_t* cr = canvas.context ();
    const double ground = 60.5, height = 7;
    cairo_move_to (cr, 17, ground);
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

// A sun behind the valley, in a ring.
void drawBadge (Canvas& canvas, double x, double y)
{
    cairo_t* cr = canvas.context ();
    constexpr double radius = 15;
    cairo_save (cr);
    cairo_arc (cr, x, y, radius, 0, 2 * std::numbers::pi);
    cairo_clip (cr);
    canvas.fillRect (x - radius, y - radius, 2 * radius, 2 * radius, caseColour);
    canvas.fillCircle (x, y - 1, 6.5, accentColour);
    canvas.setColour (mix (plateColour, white, 0.3));
    cairo_move_to (cr, x - radius, y - 3);
    cairo_curve_to (cr, x - 6, y - 3, x - 4, y + 7, x + 4, y + 9);
    cairo_line_to (cr, x - radius, y + radius);
    cairo_fill (cr);
    canvas.setColour (mix (plateColour, white, 0.16));
    cairo_move_to (cr, x + radius, y - 1);
    cairo_curve_to (cr, x + 7, y - 1, x + 5, y + 8, x - radius, y + 9);
    cairo_line_to (cr, x - radius, y + radius);
    cairo_line_to (cr, x + radius, y + radius);
    cairo_fill (cr);
    cairo_restore (cr);
    canvas.setColour (scaleColour);
    cairo_set_line_width (cr, 1);
    cairo_arc (cr, x, y, radius, 0, 2 * std::numbers::pi);
    cairo_stroke (cr);
}
}

std::vector<PrintedText> printedTexts ()
{
    std::vector<PrintedText> texts;
    for (const Control& control : controls ())
    {
        const int top = control.rect.bottom () + labelGap;
        if (control.label != nullptr)
            texts.push_back (printed (control.label, control.rect.x + control.rect.width / 2.0, top,
                                      Align::centre, labelStyle));
        if (control.secondLabel != nullptr)
            texts.push_back (printed (control.secondLabel, control.rect.x + control.rect.width / 2.0,
                                      top + labelLinePitch, Align::centre, labelStyle));

        const auto names = positionNames (control.scale);
        for (std::size_t position = 0; position < names.size (); ++position)
        {
            if (names[position].text.empty () || names[position].text == " ")
                continue;
            PrintedText name = printed (names[position].text, 0, 0, Align::left, scaleStyle);
            const Box box = positionBox (control, static_cast<int> (position),
                                         static_cast<int> (names.size ()), name.width, name.height);
            name.x = box.x;
            name.y = box.y;
            texts.push_back (name);
        }
    }
    for (const Label& label : labels ())
        texts.push_back (printed (label.text, label.x, label.capTop, label.align,
                                  label.style == LabelStyle::section ? titleStyle : labelStyle));
    return texts;
}

Image drawBackground ()
{
    Canvas canvas (panelRect.width, panelRect.height, caseColour);
    for (const Plate& plate : plates)
        drawPlate (canvas, plate);
    drawSliderTicks (canvas);
    for (const Control& control : controls ())
    {
        drawTicks (canvas, control.scale, control.rect.x + control.rect.width / 2.0,
                   control.rect.y + control.rect.height / 2.0, control.rect.width);
        drawScaleNames (canvas, control);
        if (control.kind == ControlKind::slider)
            drawSliderGroove (canvas, control);
        else if (control.kind == ControlKind::valueDisplay)
            drawGlass (canvas, control.rect);
        else if (control.kind == ControlKind::keyboard)
            drawKeyBed (canvas, control);
    }
    drawGlass (canvas, programDisplayRect);
    drawLogo (canvas);
    drawBadge (canvas, 572, 249);
    for (const PrintedText& text : printedTexts ())
        canvas.text (text.text, text.x, text.y, Align::left, *text.style);
    return canvas.image ();
}
}
