// The bitmap files: their format, and that the generator still draws exactly them.
#include "resources/panel/PanelArt.h"
#include "tests/panel/PanelFiles.h"

#include <array>
#include <cstdlib>
#include <gtest/gtest.h>
#include <map>
#include <sstream>
#include <stdexcept>

namespace
{
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

std::uint32_t number (const std::vector<std::uint8_t>& file, std::size_t at, std::size_t bytes)
{
    std::uint32_t value = 0;
    for (std::size_t index = bytes; index-- > 0;)
        value = value << 8 | file.at (at + index);
    return value;
}

int difference (panel::Colour a, panel::Colour b)
{
    return std::max ({ std::abs (a.red - b.red), std::abs (a.green - b.green), std::abs (a.blue - b.blue) });
}

TEST (PanelBitmaps, tableHoldsEveryIdWithItsSize)
{
    ASSERT_EQ (panel::bitmaps ().size (), std::size (expectedBitmaps));
    for (const Expected& expected : expectedBitmaps)
    {
        const panel::Bitmap* bitmap = panel::findBitmap (expected.id);
        ASSERT_NE (bitmap, nullptr) << expected.id;
        EXPECT_EQ (bitmap->width, expected.width) << expected.id;
        EXPECT_EQ (bitmap->height, expected.height) << expected.id;
        EXPECT_EQ (bitmap->bitsPerPixel, expected.bitsPerPixel) << expected.id;
        EXPECT_EQ (bitmap->height % bitmap->frames, 0) << expected.id;
    }
    EXPECT_EQ (panel::findBitmap (183), nullptr);
}

TEST (PanelBitmaps, filesAreUncompressedBottomUpBitmaps)
{
    for (const Expected& expected : expectedBitmaps)
    {
        SCOPED_TRACE (expected.id);
        const auto file = readResource (panel::findBitmap (expected.id)->file);
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
        EXPECT_EQ (number (file, 34, 4), imageBytes);
        EXPECT_EQ (number (file, 46, 4), paletteBytes / 4);
        EXPECT_EQ (file.size (), 54 + paletteBytes + imageBytes);
    }
}

TEST (PanelBitmaps, fourthByteOfWidePixelsIsOpaque)
{
    for (const int id : { 176, 178, 187, 188, 189 })
    {
        const auto file = readResource (panel::findBitmap (id)->file);
        for (std::size_t at = 54 + 3; at < file.size (); at += 4)
            ASSERT_EQ (file[at], 0xff) << id << " at byte " << at;
    }
}

TEST (PanelBitmaps, generatorDrawsTheCommittedBytes)
{
    for (const panel::Bitmap& bitmap : panel::bitmaps ())
    {
        EXPECT_TRUE (panel::bmpFile (bitmap) == readResource (bitmap.file))
            << bitmap.file << " differs; run: makePanel resources";
    }
}

TEST (PanelBitmaps, decoderReadsBackWhatWasDrawn)
{
    for (const panel::Bitmap& bitmap : panel::bitmaps ())
    {
        SCOPED_TRACE (bitmap.file);
        const panel::Image drawn = panel::drawBitmap (bitmap);
        const panel::Image read = panel::decodeBmp (panel::bmpFile (bitmap));
        ASSERT_EQ (read.pixels.size (), drawn.pixels.size ());
        const int tolerance = bitmap.bitsPerPixel == 8 ? 16 : 0; // 256 colours for some thousands
        for (std::size_t index = 0; index < drawn.pixels.size (); ++index)
            ASSERT_LE (difference (read.pixels[index], drawn.pixels[index]), tolerance) << "pixel " << index;
    }
}

TEST (PanelBitmaps, damagedFilesAreRefused)
{
    auto file = readResource ("lamp.bmp");
    auto cut = file;
    cut.pop_back ();
    EXPECT_THROW (panel::decodeBmp (cut), std::runtime_error);
    cut.resize (20);
    EXPECT_THROW (panel::decodeBmp (cut), std::runtime_error);
    file[30] = 1;
    EXPECT_THROW (panel::decodeBmp (file), std::runtime_error);
}

TEST (PanelBitmaps, resourceListNamesEveryFile)
{
    std::map<int, std::string> listed;
    const auto list = readResource ("../resources.txt");
    std::istringstream lines (std::string (list.begin (), list.end ()));
    for (std::string type, line; std::getline (lines, line);)
    {
        std::istringstream fields (line);
        int id = 0;
        std::string file;
        if (fields >> type >> id >> file && type == "BITMAP")
            listed[id] = file;
    }
    ASSERT_EQ (listed.size (), panel::bitmaps ().size ());
    for (const panel::Bitmap& bitmap : panel::bitmaps ())
        EXPECT_EQ (listed[bitmap.id], std::string ("panel/") + bitmap.file);
}
}
