#include "picture/Dib.h"

#include <gtest/gtest.h>

#include <cstring>

using namespace picture;

namespace
{
using Bytes = std::vector<std::byte>;

// The bytes of a bitmap as a resource holds it.
Bytes dib (std::int32_t width, std::int32_t height, std::int32_t bitsPerPixel, std::int32_t coloursUsed,
           std::initializer_list<int> coloursAndPixels)
{
    const std::int32_t header[] = { 40, width, height, 1 | bitsPerPixel << 16, 0, 0, 0, 0, coloursUsed, 0 };
    Bytes bytes (sizeof header);
    std::memcpy (bytes.data (), header, sizeof header);
    for (const int value : coloursAndPixels)
        bytes.push_back (static_cast<std::byte> (value));
    return bytes;
}

TEST (Dib, ReadsEveryKindOfRow)
{
    const Bytes kinds[] = {
        // the lower row first, blue first, padded to four bytes
        dib (1, 2, 24, 0, { 1, 2, 3, 0, 11, 12, 13, 0 }),
        dib (1, -2, 32, 0, { 11, 12, 13, 255, 1, 2, 3, 0 }), // the upper row first
        dib (1, 2, 8, 2, { 11, 12, 13, 0, 1, 2, 3, 0, 1, 0, 0, 0, 0, 0, 0, 0 }),
    };
    for (const Bytes& bytes : kinds)
        EXPECT_EQ (readDib (bytes), (Picture{ 1, 2, { { 13, 12, 11 }, { 3, 2, 1 } } }));
}

TEST (Dib, DamagedOnesAreRefused)
{
    const Bytes good = dib (2, 2, 32, 0, { 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0 });
    ASSERT_TRUE (readDib (good));
    for (std::size_t length = 0; length < good.size (); ++length)
        EXPECT_FALSE (readDib (std::span (good).first (length))) << length;
    using Row = std::pair<std::size_t, std::int32_t>;
    for (const auto& [offset, value] :
         { Row{ 0, 12 }, Row{ 0, 1000 },                                     // size of the header
           Row{ 4, 0 }, Row{ 4, -2 }, Row{ 4, 0x7FFFFFFF },                  // width
           Row{ 8, 0 }, Row{ 8, std::numeric_limits<std::int32_t>::min () }, // height
           Row{ 12, 1 | 16 << 16 }, Row{ 16, 1 } })                          // 16 bits, compressed
    {
        Bytes bytes = good;
        std::memcpy (bytes.data () + offset, &value, sizeof value);
        EXPECT_FALSE (readDib (bytes)) << offset << " " << value;
    }
    Bytes palette = dib (1, 1, 8, 257, {});
    palette.resize (4096);
    EXPECT_FALSE (readDib (palette)) << "more colours than indices";
}
}
