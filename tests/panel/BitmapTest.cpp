// The committed files: their format, and that the generator still makes exactly them.
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <span>

#include "picture/Dib.h"
#include "picture/Png.h"
#include "resources/panel/PanelArt.h"
#include "tests/panel/PanelFiles.h"

namespace
{
using panel::Bitmap;
using picture::Picture;

// Uncompressed from the bottom up and nothing more in them, as old hosts' resource viewers want them.
TEST (PanelPictures, bitmapFilesHoldTheirSizesAndAreOpaque)
{
    for (const Bitmap& bitmap : panel::bitmaps ())
    {
        SCOPED_TRACE (bitmap.id);
        EXPECT_EQ (bitmap.height % bitmap.frames, 0);
        const auto file = readResource (panel::bitmapFile (bitmap));
        const auto image = picture::readBmpFile (std::as_bytes (std::span (file)));
        ASSERT_TRUE (image);
        EXPECT_EQ (std::pair (image->width, image->height), std::pair (bitmap.width, bitmap.height));
        EXPECT_TRUE (bitmap.bitsPerPixel == 8 || *image == panel::drawBitmap (bitmap));
        const auto number = [&file] (std::size_t at)
        {
            std::uint32_t value = 0;
            std::memcpy (&value, &file[at], sizeof value);
            return value;
        };
        const std::size_t start = bitmap.bitsPerPixel == 8 ? 54 + 256 * 4 : 54;
        const int rowBytes = (bitmap.width * bitmap.bitsPerPixel / 8 + 3) / 4 * 4;
        EXPECT_EQ (std::memcmp (file.data (), "BM", 2), 0);
        EXPECT_EQ (number (2), file.size ());
        EXPECT_EQ (number (10), start);
        EXPECT_EQ (number (22), static_cast<std::uint32_t> (bitmap.height));
        EXPECT_EQ (number (26), 1u | static_cast<std::uint32_t> (bitmap.bitsPerPixel) << 16);
        EXPECT_EQ (file.size (), start + static_cast<std::size_t> (rowBytes * bitmap.height));
        // Some readers take the fourth byte of wide pixels for opacity.
        for (std::size_t at = start + 3; bitmap.bitsPerPixel == 32 && at < file.size (); at += 4)
            ASSERT_EQ (file[at], '\xff') << "at byte " << at;
    }
}

TEST (PanelPictures, committedFilesAreWhatTheTablesMake)
{
    const std::string list = readResource ("../resources.txt");
    const auto expectListed = [&list] (const char* type, int id, const std::string& file)
    {
        const std::string line =
            std::string ("\n") + type + " " + std::to_string (id) + " panel/" + file + "\n";
        EXPECT_NE (list.find (line), std::string::npos) << line;
    };
    for (const Bitmap& bitmap : panel::bitmaps ())
    {
        expectListed ("BITMAP", bitmap.id, panel::bitmapFile (bitmap));
        const auto drawn = panel::bmpFile (bitmap);
        EXPECT_TRUE (std::string (drawn.begin (), drawn.end ()) == readResource (panel::bitmapFile (bitmap)))
            << bitmap.name << " differs; run: makePanel resources/panel";
        for (const int percent : panel::largerSets)
        {
            // By their pixels, for another zlib packs them differently.
            const std::string file = panel::largerFile (bitmap, percent);
            expectListed ("PNG", panel::largerPictureId (bitmap.id, percent), file);
            EXPECT_TRUE (panel::drawBitmap (bitmap, percent) == picture::readPng (resourcePath (file)))
                << file << " differs; run: makePanel resources/panel";
        }
    }
}

int grey (picture::Colour colour)
{
    return (299 * colour.red + 587 * colour.green + 114 * colour.blue) / 1000;
}

// A frame is an opaque square: in every set its corners have to continue the panel under it, ticks included.
TEST (PanelPictures, knobFramesJoinTheBackgroundWithoutASeam)
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
