// Where things stand: geometry that needs no picture.
#include "resources/panel/PanelLayout.h"

#include <gtest/gtest.h>
#include <map>
#include <set>
#include <vector>

namespace
{
using panel::Control;
using panel::ControlKind;
using panel::Rect;

bool inside (const Rect& inner, const Rect& outer)
{
    return inner.x >= outer.x && inner.y >= outer.y && inner.right () <= outer.right () &&
           inner.bottom () <= outer.bottom ();
}

TEST (PanelLayout, everyTagIsServedOnceButTheRateThatAlsoHasADisplay)
{
    std::map<int, int> served;
    for (const Control& control : panel::controls ())
    {
        if (control.kind != ControlKind::valueDisplay)
            ++served[control.tag];
    }
    // Parameters that only menus reach: automatic glide, volume type, pitch bend, the keyboard's
    // visibility, quality, and the unused one.
    const std::set<int> withoutControl{ 26, 28, 29, 30, 34, 37 };
    for (int parameter = 0; parameter < 38; ++parameter)
        EXPECT_EQ (served[parameter], withoutControl.contains (parameter) ? 0 : 1) << parameter;
    for (const int switchTag : { 39, 40, 41, 42, 49 })
        EXPECT_EQ (served[switchTag], 1) << switchTag;
}

TEST (PanelLayout, controlsHaveTheSizeOfTheirBitmaps)
{
    for (const Control& control : panel::controls ())
    {
        const panel::Bitmap* bitmap = panel::findBitmap (control.bitmapId);
        if (control.kind == ControlKind::knob || control.kind == ControlKind::onOffButton)
        {
            ASSERT_NE (bitmap, nullptr) << control.tag;
            EXPECT_EQ (control.rect.width, bitmap->width) << control.tag;
            EXPECT_EQ (control.rect.height, bitmap->frameHeight ()) << control.tag;
        }
        if (control.kind == ControlKind::lamp)
        {
            EXPECT_EQ (panel::paintedRect (control).width, 6) << control.tag;
            EXPECT_EQ (panel::paintedRect (control).height, control.rect.height) << control.tag;
        }
    }
}

TEST (PanelLayout, nothingOverlapsOrLeavesThePanel)
{
    std::vector<Rect> rects;
    for (const Control& control : panel::controls ())
        rects.push_back (panel::paintedRect (control));
    for (const Rect& extra : { panel::programDisplayRect, panel::previousProgramRect, panel::nextProgramRect,
                               panel::menuButtonRect })
        rects.push_back (extra);

    for (std::size_t first = 0; first < rects.size (); ++first)
    {
        EXPECT_TRUE (inside (rects[first], panel::panelRect)) << "row " << first;
        for (std::size_t second = first + 1; second < rects.size (); ++second)
            EXPECT_FALSE (rects[first].overlaps (rects[second])) << "rows " << first << " and " << second;
    }
}

// A lamp's rectangle is wider than its picture. Only lamps may share room with each other, or a click
// meant for another control would land on them.
TEST (PanelLayout, wholeRectanglesOverlapOnlyBetweenLamps)
{
    for (const Control& first : panel::controls ())
    {
        for (const Control& second : panel::controls ())
        {
            if (&first < &second && first.rect.overlaps (second.rect))
            {
                EXPECT_EQ (first.kind, ControlKind::lamp) << first.tag;
                EXPECT_EQ (second.kind, ControlKind::lamp) << second.tag;
            }
        }
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

TEST (PanelLayout, keysFillTheKeyboard)
{
    const panel::Bitmap* white = panel::findBitmap (panel::whiteKeyUpId);
    for (const Control& control : panel::controls ())
    {
        if (control.kind == ControlKind::keyboard)
        {
            EXPECT_LE (panel::whiteKeyCount * white->width, control.rect.width);
            EXPECT_GT ((panel::whiteKeyCount + 1) * white->width, control.rect.width);
        }
    }
    EXPECT_EQ (panel::keyCount, 25); // two octaves and the C on top: 15 white keys, 10 black ones
}

TEST (PanelLayout, pointersSweepEvenlyAndSymmetrically)
{
    using panel::Scale;
    for (const auto& [scale, frames, last] :
         { std::tuple (Scale::unipolar, 91, 135.0), std::tuple (Scale::range, 5, 120.0),
           std::tuple (Scale::lfoWave, 6, 120.0), std::tuple (Scale::oscWave, 3, 45.0),
           std::tuple (Scale::voices, 8, 135.0), std::tuple (Scale::velocity, 10, 135.0) })
    {
        for (int frame = 0; frame < frames; ++frame)
        {
            EXPECT_NEAR (panel::pointerDegrees (scale, frame, frames),
                         -last + 2 * last * frame / (frames - 1), 1e-9);
        }
    }
}

TEST (PanelLayout, glyphsStayInsideTheirButtons)
{
    for (const panel::ButtonGlyph& glyph : panel::buttonGlyphs ())
    {
        for (const panel::GlyphPoint& point : glyph.points)
        {
            EXPECT_GT (point.x, 3);
            EXPECT_GT (point.y, 3);
            EXPECT_LT (point.x, static_cast<float> (glyph.button.width - 3));
            EXPECT_LT (point.y + 1, static_cast<float> (glyph.button.height - 3)); // pressed: one lower
        }
    }
}
}
