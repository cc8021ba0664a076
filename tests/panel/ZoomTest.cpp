// The whole panel in a real window at every zoom, compared pixel by pixel with the pictures that it is made
// of.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "parameters/Parameters.h"
#include "picture/Png.h"
#include "tests/editor/Bench.h"
#include "tests/panel/PanelFiles.h"

namespace
{
using panel::Control;
using panel::ControlKind;
using panel::Rect;

// What the panel should show, put together from one set of pictures.
class ExpectedPanel
{
public:
    explicit ExpectedPanel (int setPercent) : percent (setPercent), shown (pictureOf (panel::panelBitmapId))
    {
    }

    void paste (const Rect& place, int bitmapId, int frame = 0)
    {
        const Picture source = pictureOf (bitmapId);
        const int rows = panel::findBitmap (bitmapId)->frameHeight () * percent / 100;
        for (int y = pixel (place.y); y < pixel (place.bottom ()); ++y)
        {
            for (int x = pixel (place.x); x < pixel (place.right ()); ++x)
                shown.at (x, y) = source.at (x - pixel (place.x), y - pixel (place.y) + frame * rows);
        }
    }

    void pasteKeys (const Rect& keyboard)
    {
        constexpr bool black[] = { false, true,  false, true,  false, false,
                                   true,  false, true,  false, true,  false };
        for (const bool blackOnes : { false, true })
        {
            int left = keyboard.x;
            for (int key = 0; key < panel::keyCount; ++key)
            {
                const bool isBlack = black[key % 12];
                if (isBlack && blackOnes)
                    paste ({ left - 11, keyboard.y, 21, 59 }, panel::blackKeyUpId);
                else if (!isBlack && !blackOnes)
                    paste ({ left, keyboard.y, 35, keyboard.height }, panel::whiteKeyUpId);
                left += isBlack ? 0 : 35;
            }
        }
    }

    const Picture& picture () const { return shown; }

private:
    int pixel (int place) const { return (place * percent + 50) / 100; }

    Picture pictureOf (int id) const
    {
        if (percent == 100)
            return bitmapFile (id);
        return picture::readPng (resourcePath (panel::largerFile (*panel::findBitmap (id), percent)));
    }

    int percent;
    Picture shown;
};

// Mean of what lies under one pixel of a smaller picture, for each channel.
std::array<double, 3> meanUnder (const Picture& large, double ratio, int x, int y)
{
    std::array<double, 3> sum = {};
    double area = 0.0;
    const auto share = [] (double from, double to, int cell)
    { return std::max (0.0, std::min (to, cell + 1.0) - std::max (from, 1.0 * cell)); };
    for (int row = static_cast<int> (y * ratio); row < std::min ((y + 1) * ratio, 1.0 * large.height); ++row)
    {
        for (int column = static_cast<int> (x * ratio);
             column < std::min ((x + 1) * ratio, 1.0 * large.width); ++column)
        {
            const double weight =
                share (x * ratio, (x + 1) * ratio, column) * share (y * ratio, (y + 1) * ratio, row);
            const auto& colour = large.at (column, row);
            sum[0] += weight * colour.red;
            sum[1] += weight * colour.green;
            sum[2] += weight * colour.blue;
            area += weight;
        }
    }
    for (double& channel : sum)
        channel /= area;
    return sum;
}

class Zoom : public testing::Test
{
protected:
    void SetUp () override { ASSERT_EQ (bench.open ().find ("error"), std::string::npos); }

    int pixels (int places) const { return places * percent / 100; }
    Picture look () { return bench.picture (pixels (612), pixels (433)); }
    Picture lookAnew ()
    {
        if (Bench::isWine ())
            bench.say ("redraw");
        return look ();
    }

    // By keys, from the open main menu's first entry on.
    void chooseFromMenu (const std::string& keys, const std::string& submenuKeys = {})
    {
        const Rect& button = panel::menuButtonRect;
        bench.moveTo (pixels (button.x + 10), pixels (button.y + 10));
        const Picture before = lookAnew ();
        bench.mouse ("click 1");
        Picture last = before;
        ASSERT_TRUE (Bench::eventually (
            [&]
            {
                const Picture now = look ();
                return now != before && std::exchange (last, now) == now;
            }));
        bench.keys (keys);
        if (!submenuKeys.empty ())
        {
            bench.keys ("Right");
            bench.keys (submenuKeys);
        }
    }
    void chooseZoom (int entry)
    {
        std::string downs;
        for (int step = 0; step < entry; ++step)
            downs += "Down ";
        chooseFromMenu ("Down Down Down Down Down Down Down Down Down Down Down", downs + "Return");
    }

    // Where the panel writes and draws for itself, or where what is shown depends on more than one value.
    static bool isLeftOut (double x, double y)
    {
        const auto isIn = [=] (const Rect& rect)
        { return x >= rect.x - 1 && x < rect.right () + 1 && y >= rect.y - 1 && y < rect.bottom () + 1; };
        for (const Rect& rect : { panel::programDisplayRect, panel::previousProgramRect,
                                  panel::nextProgramRect, panel::menuButtonRect })
        {
            if (isIn (rect))
                return true;
        }
        for (const Control& control : panel::controls ())
        {
            const bool compared = control.kind == ControlKind::knob ||
                                  control.kind == ControlKind::onOffButton ||
                                  control.kind == ControlKind::keyboard;
            if (!compared && isIn (control.rect))
                return true;
        }
        const Rect keys = controlOf (49).rect; // at some zooms its lowest row is half a pixel
        return y >= keys.bottom () - 1 && y < keys.bottom () + 1;
    }

    // How many of the compared pixels differ by more than `tolerance` from the picture of a set.
    int wrongPixels (const Picture& seen, const Picture& expected, int setPercent, int tolerance)
    {
        int wrong = 0;
        for (int y = 0; y < seen.height; ++y)
        {
            for (int x = 0; x < seen.width; ++x)
            {
                if (isLeftOut ((x + 0.5) * 100 / percent, (y + 0.5) * 100 / percent))
                    continue;
                const auto& colour = seen.at (x, y);
                const auto mean = meanUnder (expected, 1.0 * setPercent / percent, x, y);
                const double difference =
                    std::max ({ std::abs (colour.red - mean[0]), std::abs (colour.green - mean[1]),
                                std::abs (colour.blue - mean[2]) });
                wrong += difference > tolerance ? 1 : 0;
            }
        }
        return wrong;
    }

    Bench bench;
    int percent = 100;
};

TEST_F (Zoom, EveryStepShowsThePicturesOfItsSize)
{
    struct Step
    {
        int percent, set;
    };
    // Where the set is as large as the panel, each pixel is the picture's. Else the picture is scaled down,
    // which the systems do in ways of their own.
    constexpr Step steps[] = { { 100, 100 }, { 125, 150 }, { 150, 150 }, { 175, 200 },
                               { 200, 200 }, { 250, 300 }, { 300, 300 }, { 100, 100 } };
    for (const Step& step : steps)
    {
        SCOPED_TRACE (step.percent);
        if (step.percent != percent)
        {
            const auto* entry = std::ranges::find (steps, step.percent, &Step::percent);
            chooseZoom (static_cast<int> (entry - steps));
            percent = step.percent;
            const std::string size = std::to_string (pixels (612)) + " " + std::to_string (pixels (433));
            ASSERT_EQ (bench.callsUntil ("size"), "size " + size + ";");
            EXPECT_EQ (bench.say ("rect"), size);
        }
        bench.moveTo (pixels (300), pixels (300));

        ExpectedPanel expected (step.set);
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
            }
        }
        const bool isNative = step.set == step.percent;
        int wrong = 0;
        EXPECT_TRUE (Bench::eventually (
            [&]
            {
                wrong = wrongPixels (lookAnew (), expected.picture (), step.set, isNative ? 0 : 60);
                return wrong <= (isNative ? 0 : pixels (612) * pixels (433) / 200);
            }))
            << wrong;
    }
}

// The mouse finds the controls where they are, and the editor opens as large as it was left.
TEST_F (Zoom, ControlsAreWhereTheyAreShown)
{
    chooseZoom (2);
    percent = 150;
    ASSERT_EQ (bench.callsUntil ("size"), "size 918 649;");
    bench.say ("set 18 0.5");
    const Rect& rect = controlOf (parameters::paramFilterFreq).rect;
    bench.moveTo (pixels (rect.x + 3), pixels (rect.y + 3));
    bench.mouse ("click 4");
    EXPECT_TRUE (Bench::eventually (
        [&] { return std::abs (bench.parameter (parameters::paramFilterFreq) - 0.52f) < 1e-4f; }));
    bench.say ("set 30 0");
    EXPECT_TRUE (bench.callsUntil ("size").ends_with ("size 918 442;")) << "without the keyboard";
    bench.say ("set 30 1");
    bench.say ("close");
    EXPECT_EQ (bench.say ("rect"), "918 649");
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
        std::ifstream settings (std::filesystem::path (std::getenv ("XDG_CONFIG_HOME")) /
                                "corvanex/settings");
        const std::string stored{ std::istreambuf_iterator<char> (settings), {} };
        EXPECT_EQ (stored.find ("EditorZoom"), std::string::npos) << stored;
    }
}

// As long as names can be, and as wide: it stays clear of the sign that a list opens.
TEST_F (Zoom, TheLongestNameFitsItsDisplay)
{
    const Rect& display = panel::programDisplayRect;
    const auto columnHas = [&] (const Picture& picture, int x, auto&& test)
    {
        for (int y = display.y; y < display.bottom (); ++y)
        {
            if (test (picture.at (x, y)))
                return true;
        }
        return false;
    };
    const auto isInk = [] (const picture::Colour& colour) { return colour != panel::glassColour; };
    bench.say ("rename WWWWWWWWWWWWWWWWWWWWWWWW");
    bench.say ("program 1");
    bench.say ("program 0");
    const int nameEnd = display.right () - 26, signStart = display.right () - 18;
    EXPECT_TRUE (Bench::eventually (
        [&]
        {
            const Picture now = lookAnew ();
            return columnHas (now, nameEnd - 3, isInk) && !columnHas (now, nameEnd + 2, isInk) &&
                   !columnHas (now, signStart - 1, isInk) && columnHas (now, signStart + 5, isInk);
        }));
}
}
