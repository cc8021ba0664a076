// What the pictures show, measured in their pixels.
#include "tests/panel/PanelFiles.h"

#include <array>
#include <cmath>
#include <gtest/gtest.h>
#include <numbers>

namespace
{
using panel::Colour;
using panel::Image;

double grey (Colour colour)
{
    return 0.299 * colour.red + 0.587 * colour.green + 0.114 * colour.blue;
}

// Angle of a frame's pointer, clockwise from straight up, from the centre of gravity of its bright
// pixels. Only the disc inside the ticks is looked at.
double measuredDegrees (const Image& strip, const panel::Bitmap& bitmap, int frame)
{
    constexpr double pointerGrey = 140;
    const int size = bitmap.frameHeight ();
    const double middle = (size - 1) / 2.0;
    double sumX = 0, sumY = 0;
    for (int y = 0; y < size; ++y)
    {
        for (int x = 0; x < size; ++x)
        {
            const double brightness = grey (strip.at (x, frame * size + y)) - pointerGrey;
            if (brightness <= 0 || std::hypot (x - middle, y - middle) > size / 2.0 - 2)
                continue;
            sumX += brightness * (x - middle);
            sumY += brightness * (y - middle);
        }
    }
    return std::atan2 (sumX, -sumY) * 180 / std::numbers::pi;
}

double greyDifference (const Image& image, int width, int height)
{
    double sum = 0;
    for (int y = 0; y < height; ++y)
    {
        for (int x = 0; x < width; ++x)
            sum += std::abs (grey (image.at (x, y)) - grey (image.at (x, y + height)));
    }
    return sum / (width * height);
}

double meanGrey (const Image& image, const panel::Rect& area)
{
    double sum = 0;
    for (int y = area.y; y < area.bottom (); ++y)
    {
        for (int x = area.x; x < area.right (); ++x)
            sum += grey (image.at (x, y));
    }
    return sum / (area.width * area.height);
}

TEST (PanelPictures, pointersStandAtTheirAngles)
{
    for (const panel::Control& control : panel::controls ())
    {
        if (control.kind != panel::ControlKind::knob)
            continue;
        const panel::Bitmap& bitmap = *panel::findBitmap (control.bitmapId);
        const Image strip = readPicture (control.bitmapId);
        for (int frame = 0; frame < bitmap.frames; ++frame)
        {
            EXPECT_NEAR (measuredDegrees (strip, bitmap, frame),
                         panel::pointerDegrees (control.scale, frame, bitmap.frames), 1.5)
                << bitmap.file << " frame " << frame;
        }
    }
}

// A frame is an opaque square: its corners have to continue the panel under it, ticks included.
TEST (PanelPictures, knobFramesJoinTheBackgroundWithoutASeam)
{
    const Image background = readPicture (panel::panelBitmapId);
    for (const panel::Control& control : panel::controls ())
    {
        if (control.kind != panel::ControlKind::knob)
            continue;
        const panel::Bitmap& bitmap = *panel::findBitmap (control.bitmapId);
        const Image strip = readPicture (control.bitmapId);
        const int size = bitmap.frameHeight ();
        const double middle = (size - 1) / 2.0;
        for (int row = 0; row < strip.height; ++row)
        {
            for (int x = 0; x < size; ++x)
            {
                const int y = row % size;
                if (std::hypot (x - middle, y - middle) < size / 2.0 + 1)
                    continue;
                const Colour inFrame = strip.at (x, row);
                const Colour under = background.at (control.rect.x + x, control.rect.y + y);
                ASSERT_NEAR (grey (inFrame), grey (under), 6) << bitmap.file << " at " << x << ", " << row;
            }
        }
    }
}

TEST (PanelPictures, twoStatesDifferWithoutColour)
{
    for (const int id : { 193, 198, 201, 202, 195 })
    {
        const panel::Bitmap& bitmap = *panel::findBitmap (id);
        EXPECT_GT (greyDifference (readPicture (id), bitmap.width, bitmap.frameHeight ()), 12) << bitmap.file;
    }
    for (const auto& [up, down] : { std::pair (panel::whiteKeyUpId, panel::whiteKeyDownId),
                                    std::pair (panel::blackKeyUpId, panel::blackKeyDownId) })
    {
        const panel::Bitmap& bitmap = *panel::findBitmap (up);
        const panel::Rect whole{ 0, 0, bitmap.width, bitmap.height };
        const Image upPicture = readPicture (up), downPicture = readPicture (down);
        EXPECT_LT (meanGrey (downPicture, whole), 0.92 * meanGrey (upPicture, whole)) << bitmap.file;
    }
}

// The grip lies left when off and right when on, brighter than the slot beside it.
TEST (PanelPictures, switchesShowTheirStateByPosition)
{
    for (const int id : { 193, 198, 201 })
    {
        const Image image = readPicture (id);
        const panel::Rect offLeft{ 1, 1, 12, 4 }, offRight{ 18, 1, 12, 4 };
        const panel::Rect onLeft{ 1, 7, 12, 4 }, onRight{ 18, 7, 12, 4 };
        EXPECT_GT (meanGrey (image, offLeft), meanGrey (image, offRight) + 40) << id;
        EXPECT_GT (meanGrey (image, onRight), meanGrey (image, onLeft)) << id;
    }
}

TEST (PanelPictures, knobGroundIsThePlate)
{
    const panel::Colour plate = panel::plateColour;
    for (const int id : { 186, 187, 188, 189, 191, 192 })
    {
        const Colour corner = readPicture (id).at (0, 0);
        EXPECT_EQ (std::tie (corner.red, corner.green, corner.blue),
                   std::tie (plate.red, plate.green, plate.blue))
            << id;
    }
}
}
