#include "editor/KeyGeometry.h"

#include <gtest/gtest.h>

using namespace editor;

namespace
{
constexpr KeyGeometry keys{ 48, 25, 35.0, 98.0, 21.0, 59.0 };

struct Hit
{
    const char* what;
    double x, y;
    int note;
};

TEST (KeyGeometry, FindsTheKeyUnderAPoint)
{
    const Hit hits[] = {
        { "top left corner", 0.0, 0.0, 48 },
        { "last upper point of the low C", 24.0, 10.0, 48 },
        { "left edge of C sharp", 24.5, 10.0, 49 },
        { "last point of C sharp", 45.0, 59.0, 49 },
        { "D between its black keys", 46.0, 10.0, 50 },
        { "D sharp", 59.5, 10.0, 51 },
        { "E", 81.0, 10.0, 52 },
        { "F starts where E ends", 105.0, 10.0, 53 },
        { "at the black keys' height the upper zone still counts", 30.0, 59.0, 49 },
        { "one below it only white keys count", 30.0, 60.0, 48 },
        { "D in the lower zone", 36.0, 90.0, 50 },
        { "B in the lower zone", 244.0, 90.0, 59 },
        { "the C after it", 245.0, 90.0, 60 },
        { "A sharp of the upper octave", 7 * 35.0 + 5 * 35.0 + 30.0, 5.0, 70 },
        { "top C", 14 * 35.0 + 10.0, 90.0, 72 },
        { "last row", 10.0, 97.0, 48 },
        { "below the keys", 10.0, 98.0, KeyGeometry::noKey },
        { "above the keys", 10.0, -1.0, KeyGeometry::noKey },
        { "left of the keys", -1.0, 50.0, KeyGeometry::noKey },
        { "right of the keys, below", 15 * 35.0, 90.0, KeyGeometry::noKey },
    };
    for (const Hit& hit : hits)
        EXPECT_EQ (keys.hitTest (hit.x, hit.y), hit.note) << hit.what;
}

// Going from left to right meets every key once and in order, without a gap.
TEST (KeyGeometry, ZonesAreTiledWithoutGaps)
{
    for (const double y : { 20.0, 80.0 })
    {
        int last = 48;
        int met = 1;
        for (double x = 0.0; x < 15 * 35.0 - 10.5; x += 0.5)
        {
            const int note = keys.hitTest (x, y);
            ASSERT_NE (note, KeyGeometry::noKey) << "x " << x << " y " << y;
            ASSERT_GE (note, last) << "x " << x;
            met += note != last ? 1 : 0;
            last = note;
        }
        EXPECT_EQ (met, y < 59.0 ? 25 : 15);
    }
}

}
