// Lettering: readable, complete, and not covered by anything.
#include "resources/panel/PanelArt.h"
#include "tests/panel/PanelFiles.h"

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <map>

namespace
{
using panel::Box;
using panel::Colour;

constexpr double requiredContrast = 4.5;

// Relative luminance and contrast ratio as the WCAG define them for sRGB.
double luminance (Colour colour)
{
    const auto linear = [] (unsigned char value)
    {
        const double scaled = value / 255.0;
        return scaled <= 0.04045 ? scaled / 12.92 : std::pow ((scaled + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear (colour.red) + 0.7152 * linear (colour.green) + 0.0722 * linear (colour.blue);
}

double contrast (Colour a, Colour b)
{
    const auto [low, high] = std::minmax ({ luminance (a), luminance (b) });
    return (high + 0.05) / (low + 0.05);
}

// The most frequent colour around a text is its ground.
Colour groundAround (const panel::Image& image, const Box& box)
{
    std::map<std::uint32_t, std::pair<int, Colour>> counts;
    for (int y = static_cast<int> (box.y) - 2; y < box.y + box.height + 2; ++y)
    {
        for (int x = static_cast<int> (box.x) - 2; x < box.x + box.width + 2; ++x)
        {
            const Colour pixel = image.at (x, y);
            auto& [count, colour] =
                counts[static_cast<std::uint32_t> (pixel.red << 16 | pixel.green << 8 | pixel.blue)];
            ++count;
            colour = pixel;
        }
    }
    return std::ranges::max_element (counts, {}, [] (const auto& entry) { return entry.second.first; })
        ->second.second;
}

Box boxOf (const panel::Rect& rect)
{
    return { static_cast<double> (rect.x), static_cast<double> (rect.y), static_cast<double> (rect.width),
             static_cast<double> (rect.height) };
}

bool overlap (const Box& a, const Box& b)
{
    return a.x < b.x + b.width && b.x < a.x + a.width && a.y < b.y + b.height && b.y < a.y + a.height;
}

// Everything printed: texts and the small drawings.
std::map<std::string, std::vector<Box>> printedBoxes ()
{
    std::map<std::string, std::vector<Box>> boxes;
    for (const auto& text : panel::printedTexts ())
        boxes[text.text].push_back (text.box);
    panel::Canvas scratch (panel::panelRect.width, panel::panelRect.height, panel::plateColour);
    for (const panel::Control& control : panel::controls ())
    {
        for (const Box& box : panel::drawPositionDrawings (scratch, control))
            boxes["drawing"].push_back (box);
    }
    return boxes;
}

TEST (PanelLettering, coloursContrastWithTheirGrounds)
{
    for (const Colour ground : { panel::plateColour, panel::caseColour, panel::glassColour })
    {
        for (const Colour ink : { panel::letterColour, panel::scaleColour, panel::accentColour })
            EXPECT_GE (contrast (ink, ground), requiredContrast);
    }
}

// Thin strokes never reach their full colour, so lettering is also measured as drawn. Whatever letter
// a band of six columns (a letter and its gap) falls on, some pixel in it has to stand out.
TEST (PanelLettering, drawnPixelsContrastWithTheirGrounds)
{
    constexpr int bandWidth = 6;
    const panel::Image image = readPicture (panel::panelBitmapId);
    for (const auto& [text, boxes] : printedBoxes ())
    {
        for (const Box& box : boxes)
        {
            const Colour ground = groundAround (image, box);
            const int left = static_cast<int> (box.x), right = static_cast<int> (box.x + box.width);
            int lastStrong = left - 1;
            for (int x = left; x < right; ++x)
            {
                for (int y = static_cast<int> (box.y); y < box.y + box.height; ++y)
                {
                    if (contrast (image.at (x, y), ground) >= requiredContrast)
                        lastStrong = x;
                }
                ASSERT_LE (x - lastStrong, bandWidth) << text << " at " << x << ", " << box.y;
            }
            EXPECT_GE (lastStrong, left) << text;
        }
    }
}

TEST (PanelLettering, standsInsideThePanelAndClearOfControlsAndOfEachOther)
{
    std::vector<std::pair<std::string, Box>> taken;
    for (const panel::Control& control : panel::controls ())
        taken.emplace_back ("control " + std::to_string (control.tag), boxOf (panel::paintedRect (control)));
    for (const panel::Rect& extra : { panel::programDisplayRect, panel::previousProgramRect,
                                      panel::nextProgramRect, panel::menuButtonRect })
        taken.emplace_back ("display or button", boxOf (extra));

    for (const auto& [text, boxes] : printedBoxes ())
    {
        for (const Box& box : boxes)
        {
            EXPECT_GE (box.x, 8) << text;
            EXPECT_LE (box.x + box.width, panel::panelRect.width - 8) << text;
            EXPECT_LE (box.y + box.height, panel::heightWithoutKeys) << text;
            for (const auto& [other, otherBox] : taken)
                EXPECT_FALSE (overlap (box, otherBox)) << text << " meets " << other;
            taken.emplace_back (text, box);
        }
    }
}

TEST (PanelLettering, labelsStandCentredAtOneDistanceBelowTheirControls)
{
    const auto boxes = printedBoxes ();
    for (const panel::Control& control : panel::controls ())
    {
        if (control.label == nullptr)
            continue;
        const auto& candidates = boxes.at (control.label);
        EXPECT_TRUE (std::ranges::any_of (candidates,
                                          [&] (const Box& box)
                                          {
                                              return box.y == control.rect.bottom () + 6 &&
                                                     std::abs (box.x + box.width / 2 - control.centreX ()) <=
                                                         0.5;
                                          }))
            << control.label;
    }
}

TEST (PanelLettering, everyStepOfTheSteppedKnobsIsNamed)
{
    const auto boxes = printedBoxes ();
    for (const char* semitones : { "\u221224", "\u221212", "0", "+12", "+24" })
        EXPECT_GE (boxes.at (semitones).size (), 2u) << semitones; // one for each oscillator
    for (const char* name : { "LP", "BP", "HP", "2", "4", "6", "8", "10", "12", "14", "16" })
        EXPECT_TRUE (boxes.contains (name)) << name;
    EXPECT_EQ (boxes.at ("OFF").size (), 2u);
    EXPECT_EQ (boxes.at ("drawing").size (), 2u * 2u + 6u); // saw and pulse twice, six LFO waves
}
}
