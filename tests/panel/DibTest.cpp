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

TEST (Dib, ReadsEveryKindOfRow)
{
    Dib bottomUp (1, 2, 24);
    bottomUp.put ({ 1, 2, 3, 0, 11, 12, 13, 0 }); // the lower row first, blue first, padded to four bytes
    Dib topDown (1, -2, 32);
    topDown.put ({ 11, 12, 13, 255, 1, 2, 3, 0 });
    Dib palette (1, 2, 8, 2);
    palette.put ({ 11, 12, 13, 0, 1, 2, 3, 0 });
    palette.put ({ 1, 0, 0, 0, 0, 0, 0, 0 });
    for (const Dib& dib : { bottomUp, topDown, palette })
    {
        const auto image = readDib (dib.bytes);
        ASSERT_TRUE (image);
        EXPECT_EQ (*image, (Picture{ 1, 2, { { 13, 12, 11 }, { 3, 2, 1 } } }));
    }
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
