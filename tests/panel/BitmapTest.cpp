// The picture files: their format, and that the generator still draws exactly them.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <map>
#include <span>
#include <sstream>

#include "picture/Png.h"
#include "resources/panel/PanelArt.h"
#include "tests/panel/PanelFiles.h"

namespace
{
using panel::Bitmap;
using picture::Picture;

struct Expected
{
    int id, width, height, bitsPerPixel;
};

// What the editor and old hosts' resource viewers expect under each id.
constexpr Expected expectedBitmaps[] = {
    { 176, 612, 433, 32 }, { 178, 612, 244, 32 }, { 179, 21, 59, 24 },  { 180, 21, 59, 24 },
    { 181, 35, 98, 24 },   { 182, 35, 98, 24 },   { 184, 6, 12, 24 },   { 186, 22, 2002, 8 },
    { 187, 22, 66, 32 },   { 188, 22, 110, 32 },  { 189, 22, 132, 32 }, { 191, 24, 192, 24 },
    { 192, 24, 240, 24 },  { 193, 31, 12, 24 },   { 195, 20, 40, 24 },  { 198, 31, 12, 24 },
    { 201, 31, 12, 24 },   { 202, 6, 12, 24 },
};

std::uint32_t number (const std::vector<std::byte>& file, std::size_t at, std::size_t bytes)
{
    std::uint32_t value = 0;
    for (std::size_t index = bytes; index-- > 0;)
        value = value << 8 | std::to_integer<std::uint32_t> (file.at (at + index));
    return value;
}

TEST (PanelBitmaps, filesAreUncompressedBottomUpBitmapsOfTheirSizes)
{
    ASSERT_EQ (panel::bitmaps ().size (), std::size (expectedBitmaps));
    for (const Expected& expected : expectedBitmaps)
    {
        SCOPED_TRACE (expected.id);
        const Bitmap* bitmap = panel::findBitmap (expected.id);
        ASSERT_NE (bitmap, nullptr);
        EXPECT_EQ (bitmap->width, expected.width);
        EXPECT_EQ (bitmap->height, expected.height);
        EXPECT_EQ (bitmap->height % bitmap->frames, 0);

        const auto file = readResource (panel::bitmapFile (*bitmap));
        ASSERT_GT (file.size (), 54u);
        const std::uint32_t paletteBytes = expected.bitsPerPixel == 8 ? 256 * 4 : 0;
        const auto rowBytes =
            static_cast<std::uint32_t> ((expected.width * expected.bitsPerPixel / 8 + 3) / 4 * 4);
        const auto imageBytes = rowBytes * static_cast<std::uint32_t> (expected.height);
        EXPECT_EQ (number (file, 0, 2), 0x4d42u);
        EXPECT_EQ (number (file, 2, 4), file.size ());
        EXPECT_EQ (number (file, 10, 4), 54 + paletteBytes);
        EXPECT_EQ (number (file, 14, 4), 40u);
        EXPECT_EQ (number (file, 18, 4), static_cast<std::uint32_t> (expected.width));
        EXPECT_EQ (number (file, 22, 4), static_cast<std::uint32_t> (expected.height));
        EXPECT_EQ (number (file, 26, 2), 1u);
        EXPECT_EQ (number (file, 28, 2), static_cast<std::uint32_t> (expected.bitsPerPixel));
        EXPECT_EQ (number (file, 30, 4), 0u);
        EXPECT_EQ (number (file, 46, 4), paletteBytes / 4);
        EXPECT_EQ (file.size (), 54 + paletteBytes + imageBytes);
        // Some readers take the fourth byte of wide pixels for opacity.
        for (std::size_t at = 54 + 3; expected.bitsPerPixel == 32 && at < file.size (); at += 4)
            ASSERT_EQ (file[at], std::byte{ 0xff }) << "at byte " << at;
    }
}

TEST (PanelBitmaps, generatorDrawsTheCommittedPictures)
{
    for (const Bitmap& bitmap : panel::bitmaps ())
    {
        const auto drawn = panel::bmpFile (bitmap);
        EXPECT_TRUE (
            std::ranges::equal (std::as_bytes (std::span (drawn)), readResource (panel::bitmapFile (bitmap))))
            << bitmap.name << " differs; run: makePanel resources/panel";
        for (const int percent : panel::largerSets)
        {
            // By their pixels, for another zlib packs them differently.
            const std::string file = panel::largerFile (bitmap, percent);
            EXPECT_TRUE (panel::drawBitmap (bitmap, percent) == picture::readPng (resourcePath (file)))
                << file << " differs; run: makePanel resources/panel";
        }
    }
}

TEST (PanelBitmaps, resourceListNamesEveryFile)
{
    std::map<std::pair<std::string, int>, std::string> listed, expected;
    const auto list = readResource ("../resources.txt");
    std::istringstream lines (std::string (reinterpret_cast<const char*> (list.data ()), list.size ()));
    for (std::string type, line; std::getline (lines, line);)
    {
        std::istringstream fields (line);
        int id = 0;
        std::string file;
        if (fields >> type >> id >> file && (type == "BITMAP" || type == "PNG"))
            listed[{ type, id }] = file;
    }
    for (const Bitmap& bitmap : panel::bitmaps ())
    {
        expected[{ "BITMAP", bitmap.id }] = "panel/" + panel::bitmapFile (bitmap);
        for (const int percent : panel::largerSets)
            expected[{ "PNG", panel::largerPictureId (bitmap.id, percent) }] =
                "panel/" + panel::largerFile (bitmap, percent);
    }
    EXPECT_EQ (listed, expected);
}

int grey (picture::Colour colour)
{
    return (299 * colour.red + 587 * colour.green + 114 * colour.blue) / 1000;
}

// A frame is an opaque square: in every set its corners have to continue the panel under it, ticks included.
TEST (PanelBitmaps, knobFramesJoinTheBackgroundWithoutASeam)
{
    for (const int percent : { 100, 150, 200, 300 })
    {
        const Picture background = panel::drawBitmap (*panel::findBitmap (panel::panelBitmapId), percent);
        const auto pixels = [percent] (int place) { return (place * percent + 50) / 100; };
        for (const panel::Control& control : panel::controls ())
        {
            if (control.kind != panel::ControlKind::knob)
                continue;
            const Picture strip = panel::drawBitmap (*panel::findBitmap (control.bitmapId), percent);
            const int size = strip.width;
            const double middle = (size - 1) / 2.0;
            for (int row = 0; row < strip.height; ++row)
            {
                for (int x = 0; x < size; ++x)
                {
                    const int y = row % size;
                    if (std::hypot (x - middle, y - middle) < size / 2.0 + percent / 100.0)
                        continue;
                    const auto under =
                        background.at (pixels (control.rect.x) + x, pixels (control.rect.y) + y);
                    ASSERT_NEAR (grey (strip.at (x, row)), grey (under), 12)
                        << control.tag << " at " << percent << " %: " << x << ", " << row;
                }
            }
        }
    }
}
}
