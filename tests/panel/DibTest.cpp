#include "picture/Dib.h"

#include <gtest/gtest.h>

#include <cstring>

using namespace picture;

namespace
{
// The bytes of a bitmap as a resource holds it.
struct Dib
{
    std::vector<std::byte> bytes;

    Dib (std::int32_t width, std::int32_t height, std::uint16_t bitsPerPixel, std::uint32_t coloursUsed = 0)
    {
        put (std::uint32_t{ 40 });
        put (width);
        put (height);
        put (std::uint16_t{ 1 });
        put (bitsPerPixel);
        put (std::uint32_t{ 0 });
        put (std::uint32_t{ 0 });
        put (std::int32_t{ 0 });
        put (std::int32_t{ 0 });
        put (coloursUsed);
        put (std::uint32_t{ 0 });
    }

    template <typename T>
    void put (T value)
    {
        for (std::size_t byte = 0; byte < sizeof value; ++byte)
            bytes.push_back (static_cast<std::byte> (value >> (8 * byte)));
    }
    void put (std::initializer_list<int> values)
    {
        for (const int value : values)
            bytes.push_back (static_cast<std::byte> (value));
    }
};

TEST (Dib, ReadsRowsFromTheBottomAndSkipsTheirPadding)
{
    Dib dib (1, 2, 24);
    dib.put ({ 1, 2, 3, 0 });    // lower row, blue first, padded to four bytes
    dib.put ({ 11, 12, 13, 0 }); // upper row
    const auto image = readDib (dib.bytes);
    ASSERT_TRUE (image);
    EXPECT_EQ (image->at (0, 0), (Colour{ 0x0D, 0x0C, 0x0B }));
    EXPECT_EQ (image->at (0, 1), (Colour{ 0x03, 0x02, 0x01 }));
}

TEST (Dib, ReadsRowsFromTheTop)
{
    Dib dib (2, -1, 32);
    dib.put ({ 1, 2, 3, 0, 4, 5, 6, 255 });
    const auto image = readDib (dib.bytes);
    ASSERT_TRUE (image);
    EXPECT_EQ (image->height, 1);
    EXPECT_EQ (image->at (0, 0), (Colour{ 0x03, 0x02, 0x01 }));
    EXPECT_EQ (image->at (1, 0), (Colour{ 0x06, 0x05, 0x04 }));
}

TEST (Dib, ReadsPalettes)
{
    Dib dib (2, 1, 8, 2);
    dib.put ({ 10, 20, 30, 0, 40, 50, 60, 0 });
    dib.put ({ 1, 0, 0, 0 });
    const auto image = readDib (dib.bytes);
    ASSERT_TRUE (image);
    EXPECT_EQ (image->at (0, 0), (Colour{ 0x3C, 0x32, 0x28 }));
    EXPECT_EQ (image->at (1, 0), (Colour{ 0x1E, 0x14, 0x0A }));
}

TEST (Dib, DamagedOnesAreRefused)
{
    Dib good (2, 2, 32);
    good.put ({ 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0 });
    ASSERT_TRUE (readDib (good.bytes));
    for (std::size_t length = 0; length < good.bytes.size (); ++length)
        EXPECT_FALSE (readDib (std::span (good.bytes).first (length))) << length;

    struct Damage
    {
        const char* what;
        std::size_t offset;
        std::int32_t value;
    };
    const Damage damages[] = {
        { "header too small", 0, 12 },
        { "header beyond the end", 0, 1000 },
        { "no width", 4, 0 },
        { "negative width", 4, -2 },
        { "huge width", 4, 0x7FFFFFFF },
        { "no height", 8, 0 },
        { "lowest height", 8, std::numeric_limits<std::int32_t>::min () },
        { "16 bits", 12, 1 | 16 << 16 },
        { "compressed", 16, 1 },
    };
    for (const Damage& damage : damages)
    {
        auto bytes = good.bytes;
        std::memcpy (bytes.data () + damage.offset, &damage.value, sizeof damage.value);
        EXPECT_FALSE (readDib (bytes)) << damage.what;
    }

    Dib palette (1, 1, 8, 257);
    palette.bytes.resize (4096);
    EXPECT_FALSE (readDib (palette.bytes)) << "more colours than indices";
}
}
