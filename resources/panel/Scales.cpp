// The marks around knobs: ticks, position names, small wave drawings.
#include "resources/panel/PanelArt.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>
#include <span>

namespace panel
{
namespace
{
constexpr double nameGap = 1.5; // from the ticks to a position's name

// One cycle drawn as a polyline in a box of 8 x 6 pixels; halves lie on pixel centres.
using Wave = std::span<const std::array<double, 2>>;
constexpr double waveWidth = 8, waveHeight = 6;
// clang-format off
constexpr std::array<double, 2> roundedTriangle[] = { { 0, 3 }, { 0.7, 1.3 }, { 1.4, 0.6 }, { 2, 0.4 }, { 2.6, 0.6 }, { 3.3, 1.3 }, { 4, 3 }, { 4.7, 4.7 }, { 5.4, 5.4 }, { 6, 5.6 }, { 6.6, 5.4 }, { 7.3, 4.7 }, { 8, 3 } };
constexpr std::array<double, 2> risingSaw[] = { { 0, 6 }, { 7.5, 0.5 }, { 7.5, 6 } };
constexpr std::array<double, 2> fallingSaw[] = { { 0.5, 6 }, { 0.5, 0.5 }, { 8, 6 } };
constexpr std::array<double, 2> square[] = { { 0.5, 6 }, { 0.5, 0.5 }, { 4.5, 0.5 }, { 4.5, 5.5 }, { 7.5, 5.5 }, { 7.5, 0 } };
constexpr std::array<double, 2> pulse[] = { { 0, 5.5 }, { 2.5, 5.5 }, { 2.5, 0.5 }, { 5.5, 0.5 }, { 5.5, 5.5 }, { 8, 5.5 } };
constexpr std::array<double, 2> noise[] = { { 0, 3.5 }, { 1.5, 1 }, { 3, 5.5 }, { 4.5, 0 }, { 6, 5 }, { 7, 1.5 }, { 8, 3.5 } };
constexpr std::array<double, 2> sampleAndHold[] = { { 0, 3.5 }, { 2.5, 3.5 }, { 2.5, 0.5 }, { 4.5, 0.5 }, { 4.5, 5.5 }, { 6.5, 5.5 }, { 6.5, 2.5 }, { 8, 2.5 } };
// clang-format on

// What one position of a knob is called: a word, a drawing, or nothing.
struct PositionName
{
    constexpr PositionName () = default;
    constexpr PositionName (const char* word) : text (word) {}
    constexpr PositionName (Wave drawing) : wave (drawing) {}

    std::string_view text;
    Wave wave;
};

constexpr PositionName rangeNames[] = { "\u221224", "\u221212", "0", "+12", "+24" };
constexpr PositionName oscWaveNames[] = { "OFF", Wave (risingSaw), Wave (pulse) };
constexpr PositionName filterTypeNames[] = { "LP", "BP", "HP" };
constexpr PositionName lfoWaveNames[] = { Wave (roundedTriangle), Wave (risingSaw), Wave (fallingSaw),
                                          Wave (square),          Wave (noise),     Wave (sampleAndHold) };
constexpr PositionName voiceNames[] = { "2", "4", "6", "8", "10", "12", "14", "16" };
constexpr PositionName velocityNames[] = { "0", {}, {}, "3", {}, {}, "6", {}, {}, "9" };

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

int tickCount (Scale scale)
{
    constexpr int continuousTicks = 11;
    if (scale == Scale::none)
        return 0;
    const auto names = positionNames (scale);
    return names.empty () ? continuousTicks : static_cast<int> (names.size ());
}

// A control's frame as the editor places its picture: from a whole pixel on.
Box frameOf (const Canvas& canvas, const Control& control)
{
    const Rect& rect = control.rect;
    return { canvas.nearestEdge (rect.x), canvas.nearestEdge (rect.y), static_cast<double> (rect.width),
             static_cast<double> (rect.height) };
}

// Where a position's name of a given size stands: straight outwards from its tick, as near to the knob
// as a circle around the ticks and the knob's frame, which would cover it, allow.
Box positionBox (const Canvas& canvas, const Control& control, int position, double width, double height)
{
    constexpr double step = 0.05;
    const double degrees = pointerDegrees (control.scale, position, tickCount (control.scale));
    const double radians = degrees * std::numbers::pi / 180;
    const double clearance = control.rect.width / 2.0 + tickReach + nameGap;
    const double outsideFrame = control.rect.width / 2.0 + 0.5; // the rest of a pixel when it is placed
    const auto nearest = [] (double centre, double size)
    { return std::max (0.0, std::abs (centre) - size / 2); };
    double x = 0, y = 0;
    for (double distance = 0; std::hypot (nearest (x, width), nearest (y, height)) < clearance;
         distance += step)
    {
        x = std::sin (radians) * distance;
        y = -std::cos (radians) * distance;
    }
    // The frame's corners reach further than the circle; a name in one moves up or down, where there is room.
    if (nearest (x, width) < outsideFrame)
        y = std::copysign (std::max (std::abs (y), outsideFrame + height / 2), y);
    const Box frame = frameOf (canvas, control);
    return { canvas.nearestEdge (frame.x + frame.width / 2 + x - width / 2),
             canvas.nearestEdge (frame.y + frame.height / 2 + y - height / 2), width, height };
}
}

void drawTicks (Canvas& canvas, Scale scale, double left, double top, int knobSize)
{
    const double centreX = canvas.nearestEdge (left) + knobSize / 2.0;
    const double centreY = canvas.nearestEdge (top) + knobSize / 2.0;
    const double inner = knobSize / 2.0 + tickReach - 2;
    const int count = tickCount (scale);
    for (int tick = 0; tick < count; ++tick)
    {
        const double radians = pointerDegrees (scale, tick, count) * std::numbers::pi / 180;
        const bool strong = scale == Scale::bipolar && tick == count / 2;
        const double outer = inner + (strong ? 4 : 2);
        canvas.line (centreX + std::sin (radians) * inner, centreY - std::cos (radians) * inner,
                     centreX + std::sin (radians) * outer, centreY - std::cos (radians) * outer,
                     strong ? 2 : 1, strong ? letterColour : scaleColour);
    }
}

std::vector<PrintedText> printedPositionNames (const Canvas& canvas, const Control& control)
{
    std::vector<PrintedText> texts;
    const auto names = positionNames (control.scale);
    for (std::size_t position = 0; position < names.size (); ++position)
    {
        const std::string_view name = names[position].text;
        if (name.empty ())
            continue;
        const double width = textWidth (canvas, name, scaleStyle);
        const Box box =
            positionBox (canvas, control, static_cast<int> (position), width, scaleStyle.capHeight);
        texts.push_back ({ std::string (name), box, &scaleStyle });
    }
    return texts;
}

std::vector<Box> drawPositionDrawings (Canvas& canvas, const Control& control)
{
    std::vector<Box> boxes;
    const auto names = positionNames (control.scale);
    for (std::size_t position = 0; position < names.size (); ++position)
    {
        const Wave wave = names[position].wave;
        if (wave.empty ())
            continue;
        const Box box = positionBox (canvas, control, static_cast<int> (position), waveWidth, waveHeight);
        for (const auto& [x, y] : wave)
            cairo_line_to (canvas.context (), box.x + x, box.y + y);
        canvas.setColour (scaleColour);
        cairo_set_line_width (canvas.context (), 1);
        cairo_stroke (canvas.context ());
        boxes.push_back (box);
    }
    return boxes;
}
}
