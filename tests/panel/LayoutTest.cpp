// Where things stand: controls and lettering.
#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "resources/panel/PanelArt.h"

namespace
{
using panel::Box;
using panel::Control;
using panel::ControlKind;
using panel::Rect;

bool inside (const Rect& inner, const Rect& outer)
{
    return inner.x >= outer.x && inner.y >= outer.y && inner.right () <= outer.right () &&
           inner.bottom () <= outer.bottom ();
}

// What the editor puts over the background.
std::vector<std::pair<std::string, Rect>> coveredRects ()
{
    std::vector<std::pair<std::string, Rect>> rects;
    for (const Control& control : panel::controls ())
        rects.emplace_back ("control " + std::to_string (control.tag), panel::paintedRect (control));
    for (const Rect& extra : { panel::programDisplayRect, panel::previousProgramRect, panel::nextProgramRect,
                               panel::menuButtonRect })
        rects.emplace_back ("display or button", extra);
    return rects;
}

TEST (PanelLayout, controlsHaveTheSizeOfTheirBitmaps)
{
    for (const Control& control : panel::controls ())
    {
        const panel::Bitmap* bitmap = panel::findBitmap (control.bitmapId);
        if (control.kind != ControlKind::knob && control.kind != ControlKind::onOffButton)
            continue;
        ASSERT_NE (bitmap, nullptr) << control.tag;
        EXPECT_EQ (control.rect.width, bitmap->width) << control.tag;
        EXPECT_EQ (control.rect.height, bitmap->frameHeight ()) << control.tag;
    }
}

TEST (PanelLayout, nothingOverlapsOrLeavesThePanel)
{
    const auto rects = coveredRects ();
    for (std::size_t first = 0; first < rects.size (); ++first)
    {
        EXPECT_TRUE (inside (rects[first].second, panel::panelRect)) << rects[first].first;
        for (std::size_t second = first + 1; second < rects.size (); ++second)
            EXPECT_FALSE (rects[first].second.overlaps (rects[second].second))
                << rects[first].first << " and " << rects[second].first;
    }
}

TEST (PanelLayout, shortPanelCutsOffTheKeyboardAndNothingElse)
{
    const Rect shortPanel{ 0, 0, panel::panelRect.width, panel::heightWithoutKeys };
    for (const Control& control : panel::controls ())
        EXPECT_EQ (inside (control.rect, shortPanel), control.kind != ControlKind::keyboard) << control.tag;
    EXPECT_TRUE (inside (panel::aboutRect, shortPanel));
    EXPECT_TRUE (inside (panel::aboutVersionRect, panel::aboutRect));
}

// Everything printed: texts and the small drawings.
std::vector<std::pair<std::string, Box>> printedBoxes ()
{
    std::vector<std::pair<std::string, Box>> boxes;
    panel::Canvas scratch (panel::panelRect.width, panel::panelRect.height, panel::plateColour);
    for (const auto& text : panel::printedTexts (scratch))
        boxes.emplace_back (text.text, text.box);
    for (const Control& control : panel::controls ())
    {
        for (const Box& box : panel::drawPositionDrawings (scratch, control))
            boxes.emplace_back ("drawing", box);
    }
    return boxes;
}

bool overlap (const Box& a, const Box& b)
{
    return a.x < b.x + b.width && b.x < a.x + a.width && a.y < b.y + b.height && b.y < a.y + a.height;
}

TEST (PanelLayout, letteringStandsInsideThePanelAndClearOfControlsAndOfEachOther)
{
    std::vector<std::pair<std::string, Box>> taken;
    for (const auto& [name, rect] : coveredRects ())
        taken.emplace_back (name, Box{ 1.0 * rect.x, 1.0 * rect.y, 1.0 * rect.width, 1.0 * rect.height });
    for (const auto& [text, box] : printedBoxes ())
    {
        EXPECT_GE (box.x, 8) << text;
        EXPECT_LE (box.x + box.width, panel::panelRect.width - 8) << text;
        EXPECT_LE (box.y + box.height, panel::heightWithoutKeys) << text;
        for (const auto& [other, otherBox] : taken)
            EXPECT_FALSE (overlap (box, otherBox)) << text << " meets " << other;
        taken.emplace_back (text, box);
    }
}

// A label directly under a number of the scale reads as one of them: half a capital stays free.
TEST (PanelLayout, labelsStandClearOfTheNumbersOfTheirScales)
{
    panel::Canvas scratch (1, 1, panel::plateColour);
    for (const Control& control : panel::controls ())
    {
        if (control.label == nullptr)
            continue;
        for (const auto& name : panel::printedPositionNames (scratch, control))
            EXPECT_LE (name.box.y + name.box.height + 3, panel::labelTop (control)) << control.label;
    }
}
}
