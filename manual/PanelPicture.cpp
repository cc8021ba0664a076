// The panel with its sections numbered, put together from the pictures that the editor shows.
#include "manual/PanelPicture.h"

#include <algorithm>
#include <cmath>

#include "editor/KeyGeometry.h"
#include "editor/MenuTable.h"
#include "instrument/ValueText.h"
#include "manual/Sections.h"
#include "manual/Sheet.h"
#include "parameters/KnobLaws.h"
#include "resources/panel/PanelArt.h"

namespace manual
{
namespace
{
constexpr int percent = static_cast<int> (Sheet::scale * panel::bitmapPercent);
constexpr double markRadius = 6.0; // panel pixels, as everything here

picture::Picture frameOf (int bitmapId, int frame)
{
    const panel::Bitmap& bitmap = *panel::findBitmap (bitmapId);
    const picture::Picture strip = panel::drawBitmap (bitmap, percent);
    const int height = strip.height / bitmap.frames;
    return strip.part (0, frame * height, strip.width, height);
}

float valueOf (const bank::SourceProgram& program, std::int32_t tag)
{
    const ParamRow& row = paramTable[static_cast<std::size_t> (tag)];
    return row.scope == Scope::program ? program.value (row.index) : row.initial;
}

void drawControl (Sheet& sheet, const panel::Control& control, const bank::SourceProgram& program)
{
    const panel::Rect& rect = control.rect;
    if (control.kind == panel::ControlKind::lamp)
    {
        sheet.paint (frameOf (control.bitmapId, 0), rect.x, rect.y);
        return;
    }
    if (!isParameter (control.tag))
        return;
    const float value = valueOf (program, control.tag);
    if (control.kind == panel::ControlKind::knob)
    {
        const int last = panel::findBitmap (control.bitmapId)->frames - 1;
        const int frame = control.tag == paramVoices ? voiceCountFor (value).value_or (mostVoices) / 2 - 1
                                                     : positionOf (value, static_cast<float> (last));
        sheet.paint (frameOf (control.bitmapId, frame), rect.x, rect.y);
    }
    else if (control.kind == panel::ControlKind::onOffButton)
    {
        sheet.paint (frameOf (control.bitmapId, value > 0.0f ? 1 : 0), rect.x, rect.y);
    }
    else if (control.kind == panel::ControlKind::slider)
    {
        const int travel = rect.width - panel::findBitmap (control.bitmapId)->width;
        cairo_t* cr = sheet.canvas ().context ();
        cairo_save (cr);
        cairo_rectangle (cr, rect.x, rect.y, rect.width, rect.height);
        cairo_clip (cr);
        sheet.paint (frameOf (control.bitmapId, 0),
                     rect.x + std::round (static_cast<double> (value) * travel),
                     rect.y + panel::sliderHandleOffsetY);
        cairo_restore (cr);
    }
    else
    {
        std::string rate;
        instrument::lfoRateText (value, false, rate);
        sheet.centredText (control.centreX (), control.centreY () + panel::valueFontSize * 0.36,
                           panel::valueFontSize, panel::accentColour, rate);
    }
}

void drawKeys (Sheet& sheet, const panel::Rect& rect)
{
    const panel::Bitmap& white = *panel::findBitmap (panel::whiteKeyUpId);
    const panel::Bitmap& black = *panel::findBitmap (panel::blackKeyUpId);
    const editor::KeyGeometry keys = { panel::firstKey,
                                       panel::keyCount,
                                       static_cast<double> (white.width),
                                       static_cast<double> (white.height),
                                       static_cast<double> (black.width),
                                       static_cast<double> (black.height) };
    for (const bool isWhite : { true, false })
    {
        const picture::Picture key = frameOf (isWhite ? white.id : black.id, 0);
        for (int note = panel::firstKey; note < panel::firstKey + panel::keyCount; ++note)
        {
            if (editor::KeyGeometry::isWhite (note) == isWhite)
                sheet.paint (key, rect.x + std::floor (keys.left (note)), rect.y);
        }
    }
}

void drawProgramDisplay (Sheet& sheet, const std::string& name)
{
    const auto triangle = [&sheet] (double x, double y, double width, double height, picture::Colour colour)
    {
        if (height > 0.0) // down
            sheet.polygon ({ { x - width, y - height }, { x + width, y - height }, { x, y + height } },
                           colour);
        else // to the side that `width` tells
            sheet.polygon ({ { x - width, y - 4.0 }, { x - width, y + 4.0 }, { x + width, y } }, colour);
    };
    const panel::Rect& display = panel::programDisplayRect;
    const double middle = display.y + display.height / 2.0;
    sheet.text (display.x + 8.0, middle + panel::programFontSize * 0.36, panel::programFontSize,
                panel::accentColour, editor::programEntry (0, name));
    triangle (display.right () - 14.0, middle, 4.0, 2.5, panel::letterColour);
    for (const panel::Rect& button :
         { panel::previousProgramRect, panel::nextProgramRect, panel::menuButtonRect })
        sheet.paint (frameOf (panel::smallButtonBitmapId, 0), button.x, button.y);
    triangle (panel::previousProgramRect.x + 10.0, panel::previousProgramRect.y + 10.0, -3.0, 0.0,
              panel::letterColour);
    triangle (panel::nextProgramRect.x + 10.0, panel::nextProgramRect.y + 10.0, 3.0, 0.0,
              panel::letterColour);
    for (const int line : { -4, 0, 4 })
        sheet.canvas ().fillRect (panel::menuButtonRect.x + 5, panel::menuButtonRect.y + 9 + line, 10, 2,
                                  panel::letterColour);
}

// A corner of the section where nothing stands.
std::pair<double, double> placeOfMark (const Marked& section, const std::vector<panel::Box>& taken)
{
    constexpr double inset = markRadius + 2.0;
    constexpr double room = markRadius + 1.5;
    const panel::Rect& rect = section.first;
    const std::pair<double, double> corners[] = { { rect.right () - inset, rect.bottom () - inset },
                                                  { rect.right () - inset, rect.y + inset },
                                                  { rect.x + inset, rect.bottom () - inset },
                                                  { rect.x + rect.width / 2.0, rect.y + inset },
                                                  { rect.x - 2.5 * inset, rect.y + rect.height / 2.0 } };
    const auto isFree = [&taken] (const std::pair<double, double>& corner)
    {
        return std::ranges::none_of (taken,
                                     [&corner] (const panel::Box& box)
                                     {
                                         return box.x < corner.first + room &&
                                                corner.first - room < box.x + box.width &&
                                                box.y < corner.second + room &&
                                                corner.second - room < box.y + box.height;
                                     });
    };
    const auto* const found = std::ranges::find_if (corners, isFree);
    return found == std::end (corners) ? corners[0] : *found;
}

void drawMarks (Sheet& sheet)
{
    std::vector<panel::Box> taken;
    for (const panel::PrintedText& text : panel::printedTexts (sheet.canvas ()))
        taken.push_back (text.box);
    for (const panel::Control& control : panel::controls ())
    {
        const panel::Rect rect = panel::paintedRect (control);
        taken.push_back ({ double (rect.x), double (rect.y), double (rect.width), double (rect.height) });
    }
    const auto button = panel::menuButtonRect;
    taken.push_back ({ double (button.x), double (button.y), double (button.width), double (button.height) });
    for (const Marked& section : markedSections ())
    {
        const auto [x, y] = placeOfMark (section, taken);
        sheet.canvas ().fillCircle (x, y, markRadius, panel::accentColour);
        sheet.centredText (x, y + 2.9, 8.0, panel::caseColour, std::to_string (section.number));
    }
}
}

picture::Picture drawPanel (const Programs& programs)
{
    const bank::SourceProgram& program = programs.front ();
    Sheet sheet (panel::panelRect.width, panel::panelRect.height, panel::caseColour);
    sheet.paint (panel::drawBackground (Sheet::scale), 0.0, 0.0);
    for (const panel::Control& control : panel::controls ())
    {
        if (control.kind == panel::ControlKind::keyboard)
            drawKeys (sheet, control.rect);
        else
            drawControl (sheet, control, program);
    }
    drawProgramDisplay (sheet, program.name ());
    drawMarks (sheet);
    return sheet.image ();
}
}
