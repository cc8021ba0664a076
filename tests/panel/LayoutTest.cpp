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

bool overlap (const Box& a, const Box& b)
{
    return a.x < b.x + b.width && b.x < a.x + a.width && a.y < b.y + b.height && b.y < a.y + a.height;
}

TEST (PanelLayout, nothingOverlapsOrLeavesThePanel)
{
    std::vector<std::pair<std::string, Box>> taken;
    const auto take = [&taken] (const std::string& name, const Box& box)
    {
        for (const auto& [other, otherBox] : taken)
            EXPECT_FALSE (overlap (box, otherBox)) << name << " meets " << other;
        taken.emplace_back (name, box);
    };
    // What the editor puts over the background.
    const auto cover = [&take] (const std::string& name, const Rect& rect)
    {
        EXPECT_TRUE (inside (rect, panel::panelRect)) << name;
        take (name, { 1.0 * rect.x, 1.0 * rect.y, 1.0 * rect.width, 1.0 * rect.height });
    };
    for (const Control& control : panel::controls ())
        cover ("control " + std::to_string (control.tag), panel::paintedRect (control));
    for (const Rect& rect : { panel::programDisplayRect, panel::previousProgramRect, panel::nextProgramRect,
                              panel::menuButtonRect })
        cover ("display or button", rect);

    const auto print = [&take] (const std::string& text, const Box& box)
    {
        EXPECT_GE (box.x, 8) << text;
        EXPECT_LE (box.x + box.width, panel::panelRect.width - 8) << text;
        EXPECT_LE (box.y + box.height, panel::heightWithoutKeys) << text;
        take (text, box);
    };
    panel::Canvas scratch (panel::panelRect.width, panel::panelRect.height, panel::plateColour);
    for (const auto& text : panel::printedTexts (scratch))
        print (text.text, text.box);
    for (const Control& control : panel::controls ())
    {
        for (const Box& box : panel::drawPositionDrawings (scratch, control))
            print ("drawing", box);
        // A label directly under a number of the scale reads as one of them: half a capital stays free.
        for (const auto& name : panel::printedPositionNames (scratch, control))
            EXPECT_LE (name.box.y + name.box.height + 3, panel::labelTop (control)) << name.text;
    }
}

TEST (PanelLayout, controlsHaveTheSizeOfTheirPicturesAndOnlyTheKeyboardCanBeCutOff)
{
    const Rect shortPanel{ 0, 0, panel::panelRect.width, panel::heightWithoutKeys };
    for (const Control& control : panel::controls ())
    {
        EXPECT_EQ (inside (control.rect, shortPanel), control.kind != ControlKind::keyboard) << control.tag;
        if (control.kind != ControlKind::knob && control.kind != ControlKind::onOffButton)
            continue;
        const panel::Bitmap* bitmap = panel::findBitmap (control.bitmapId);
        ASSERT_NE (bitmap, nullptr) << control.tag;
        EXPECT_EQ (control.rect.width, bitmap->width) << control.tag;
        EXPECT_EQ (control.rect.height, bitmap->frameHeight ()) << control.tag;
    }
    EXPECT_TRUE (inside (panel::aboutRect, shortPanel));
    EXPECT_TRUE (inside (panel::aboutVersionRect, panel::aboutRect));
}
}
