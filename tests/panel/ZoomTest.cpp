// The whole panel in a real window at every zoom, compared pixel by pixel with the pictures that it is made
// of.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>

#include "parameters/Parameters.h"
#include "picture/Png.h"
#include "tests/editor/Bench.h"
#include "tests/panel/PanelFiles.h"

namespace
{
using panel::Control;
using panel::ControlKind;
using panel::Rect;

constexpr picture::Colour unknown = { 255, 0, 255 };

// What the panel should show, put together from one set of pictures.
class ExpectedPanel
{
public:
    explicit ExpectedPanel (int setPercent)
        : picture (pictureOf (panel::panelBitmapId, setPercent)),
          percent (setPercent)
    {
    }

    void paste (const Rect& place, int bitmapId, int frame = 0)
    {
        const Picture source = pictureOf (bitmapId, percent);
        const int firstRow = frame * panel::findBitmap (bitmapId)->frameHeight () * percent / 100;
        for (int y = pixel (place.y); y < pixel (place.bottom ()); ++y)
        {
            for (int x = pixel (place.x); x < pixel (place.right ()); ++x)
                picture.at (x, y) = source.at (x - pixel (place.x), y - pixel (place.y) + firstRow);
        }
    }

    void pasteKeys (const Rect& keyboard)
    {
        constexpr int whiteKeys = 15;
        for (int key = 0; key < whiteKeys; ++key)
            paste ({ keyboard.x + key * 35, keyboard.y, 35, keyboard.height }, panel::whiteKeyUpId);
        for (int key = 0; key < whiteKeys; ++key)
        {
            if (key % 7 != 0 && key % 7 != 3) // none left of C and F
                paste ({ keyboard.x + key * 35 - 11, keyboard.y, 21, 59 }, panel::blackKeyUpId);
        }
    }

    // With a pixel around it.
    void leaveOut (const Rect& place)
    {
        for (int y = pixel (place.y - 1); y < std::min (pixel (place.bottom () + 1), picture.height); ++y)
        {
            for (int x = pixel (place.x - 1); x < pixel (place.right () + 1); ++x)
                picture.at (x, y) = unknown;
        }
    }

    Picture picture;

private:
    int pixel (int place) const { return (place * percent + 50) / 100; }

    static Picture pictureOf (int id, int percent)
    {
        if (percent == 100)
            return bitmapFile (id);
        return picture::readPng (resourcePath (panel::largerFile (*panel::findBitmap (id), percent)));
    }

    int percent;
};

class Zoom : public testing::Test
{
protected:
    void SetUp () override { ASSERT_EQ (bench.open ().find ("error"), std::string::npos); }

    int pixels (int places) const { return places * percent / 100; }
    Picture look () { return bench.picture (pixels (612), pixels (433)); }
    Picture lookAnew () { return bench.redrawnPicture (pixels (612), pixels (433)); }

    void chooseZoom (std::size_t entry)
    {
        const Rect& button = panel::menuButtonRect;
        bench.moveTo (pixels (button.x + 10), pixels (button.y + 10));
        ASSERT_TRUE (bench.changesAfter ("click 1", pixels (612), pixels (433)));
        bench.keys (zoomKeys (entry));
    }

    // What every control shows at its value. Left out is where the panel writes and draws for itself, or
    // where what is shown depends on more than one value.
    ExpectedPanel expectedPanel (int set)
    {
        ExpectedPanel expected (set);
        for (const Control& control : panel::controls ())
        {
            if (control.kind == ControlKind::knob || control.kind == ControlKind::onOffButton)
            {
                const double value = static_cast<double> (bench.parameter (control.tag));
                const int frames = panel::findBitmap (control.bitmapId)->frames;
                expected.paste (control.rect, control.bitmapId, static_cast<int> (value * (frames - 1)));
            }
            else if (control.kind == ControlKind::keyboard)
            {
                expected.pasteKeys (control.rect);
                // At some zooms the lowest row is half a pixel.
                expected.leaveOut ({ control.rect.x, control.rect.bottom (), control.rect.width, 0 });
            }
            else
            {
                expected.leaveOut (control.rect);
            }
        }
        for (const Rect& rect : { panel::programDisplayRect, panel::previousProgramRect,
                                  panel::nextProgramRect, panel::menuButtonRect })
            expected.leaveOut (rect);
        return expected;
    }

    // The share of the known pixels that differ by more than `tolerance` from what lies in their middle in
    // the picture of a set.
    static double wrongShare (const Picture& seen, const Picture& expected, int tolerance)
    {
        const double ratio = 1.0 * expected.width / seen.width;
        int wrong = 0, compared = 0;
        for (int y = 0; y < seen.height; ++y)
        {
            for (int x = 0; x < seen.width; ++x)
            {
                const auto& a = seen.at (x, y);
                const auto& b =
                    expected.at (static_cast<int> ((x + 0.5) * ratio), static_cast<int> ((y + 0.5) * ratio));
                if (b == unknown)
                    continue;
                wrong += std::max ({ std::abs (a.red - b.red), std::abs (a.green - b.green),
                                     std::abs (a.blue - b.blue) }) > tolerance;
                ++compared;
            }
        }
        return static_cast<double> (wrong) / compared;
    }

    Bench bench;
    int percent = 100;
};

TEST_F (Zoom, EveryStepShowsAndFindsEverythingInItsSize)
{
    struct Step
    {
        int percent, set;
    };
    // Where the set is as large as the panel, each pixel is the picture's. Else the picture is scaled down,
    // which the systems do in ways of their own.
    constexpr Step steps[] = { { 100, 100 }, { 125, 150 }, { 150, 150 }, { 175, 200 }, { 200, 200 },
                               { 250, 300 }, { 300, 300 }, { 100, 100 }, { 150, 150 } };
    for (const Step& step : steps)
    {
        SCOPED_TRACE (step.percent);
        if (step.percent != percent)
        {
            const auto* entry = std::ranges::find (steps, step.percent, &Step::percent);
            chooseZoom (static_cast<std::size_t> (entry - steps));
            percent = step.percent;
            const std::string size = std::to_string (pixels (612)) + " " + std::to_string (pixels (433));
            ASSERT_EQ (bench.callsUntil ("size"), "size " + size + ";");
            EXPECT_EQ (bench.say ("rect"), size);
        }
        bench.say ("set 18 0.5");
        bench.moveTo (pixels (300), pixels (300));

        const ExpectedPanel expected = expectedPanel (step.set);
        const bool isNative = step.set == step.percent;
        double wrong = 1.0;
        EXPECT_TRUE (Bench::eventually (
            [&]
            {
                wrong = wrongShare (lookAnew (), expected.picture, isNative ? 0 : 80);
                return wrong <= (isNative ? 0.0 : 0.03);
            }))
            << wrong;
        const Rect& rect = controlOf (parameters::paramFilterFreq).rect;
        bench.moveTo (pixels (rect.x + 3), pixels (rect.y + 3));
        bench.mouse ("click 4");
        EXPECT_TRUE (Bench::eventually (
            [&] { return std::abs (bench.parameter (parameters::paramFilterFreq) - 0.52f) < 1e-4f; }))
            << "the mouse finds the control where it is";
        bench.callsUntil ("end 18;"); // the wheel rests
    }
    bench.say ("set 30 0");
    EXPECT_TRUE (bench.callsUntil ("size").ends_with ("size 918 442;")) << "without the keyboard";
    bench.say ("set 30 1");
    bench.say ("close");
    EXPECT_EQ (bench.say ("rect"), "918 649") << "it opens as large as it was left";
}

TEST_F (Zoom, AHostThatKeepsItsWindowKeepsThePanelToo)
{
    bench.moveTo (300, 300);
    const Picture before = lookAnew ();
    bench.say ("fixed");
    chooseZoom (4);
    // A box says so; Return ends it.
    EXPECT_TRUE (Bench::eventually (
        [&]
        {
            bench.moveTo (300, 300);
            bench.keys ("Return");
            return look () == before;
        }));
    EXPECT_EQ (bench.callsUntil ("size"), "size 1224 866;");
    EXPECT_EQ (bench.say ("rect"), "612 433");
    if (!Bench::isWine ())
    {
        const std::filesystem::path settings = std::getenv ("XDG_CONFIG_HOME");
        EXPECT_EQ (readResource (settings / "corvanex/settings").find ("EditorZoom"), std::string::npos);
    }
}

// As long as names can be, and as wide: it stays clear of the sign that a list opens.
TEST_F (Zoom, TheLongestNameFitsItsDisplay)
{
    const Rect& display = panel::programDisplayRect;
    bench.say ("rename WWWWWWWWWWWWWWWWWWWWWWWW");
    bench.say ("program 1");
    bench.say ("program 0");
    const int nameEnd = display.right () - 26, signStart = display.right () - 18;
    EXPECT_TRUE (Bench::eventually (
        [&]
        {
            const Picture now = lookAnew ();
            const auto hasInk = [&] (int x)
            {
                return std::ranges::any_of (now.part (x, display.y, 1, display.height).pixels,
                                            [] (const auto& colour) { return colour != panel::glassColour; });
            };
            return hasInk (nameEnd - 3) && !hasInk (nameEnd + 2) && !hasInk (signStart - 1) &&
                   hasInk (signStart + 5);
        }));
}
}
