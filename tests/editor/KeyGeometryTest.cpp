#include "editor/KeyGeometry.h"

#include <gtest/gtest.h>

using namespace editor;

namespace
{
constexpr KeyGeometry keys{ 48, 25, 35.0, 98.0, 21.0, 59.0 };
constexpr double octaveWidth = 7 * 35.0;

// Where the keys of an octave begin. In the upper zone half a black key is taken from a white one at each
// side where it has a black neighbour.
constexpr double upperEdges[] = {
    0.0, 24.5, 45.5, 59.5, 80.5, 105.0, 129.5, 150.5, 164.5, 185.5, 199.5, 220.5
};
constexpr int whiteSemitones[] = { 0, 2, 4, 5, 7, 9, 11 };

TEST (KeyGeometry, ZonesAreTiledWithoutGaps)
{
    for (int octave = 0; octave < 2; ++octave)
    {
        const auto beginsAt = [octave] (double edge, double y, int semitone, int previous)
        {
            const double x = octave * octaveWidth + edge;
            const int first = 48 + 12 * octave;
            EXPECT_EQ (keys.hitTest (x, y), first + semitone) << x << " " << y;
            EXPECT_EQ (keys.hitTest (x - 0.25, y), x == 0.0 ? KeyGeometry::noKey : first + previous)
                << x << " " << y;
        };
        for (int key = 0; key < 12; ++key)
        {
            for (const double y : { 0.0, 59.0 })
                beginsAt (upperEdges[key], y, key, key - 1);
        }
        for (int key = 0; key < 7; ++key)
        {
            for (const double y : { 60.0, 97.0 }) // one below the black keys only white ones count
                beginsAt (key * 35.0, y, whiteSemitones[key], key == 0 ? -1 : whiteSemitones[key - 1]);
        }
    }
    EXPECT_EQ (keys.hitTest (2 * octaveWidth, 10.0), 72);
    EXPECT_EQ (keys.hitTest (2 * octaveWidth + 34.0, 90.0), 72);
    EXPECT_EQ (keys.hitTest (2 * octaveWidth + 35.0, 90.0), KeyGeometry::noKey);
    EXPECT_EQ (keys.hitTest (10.0, -1.0), KeyGeometry::noKey);
    EXPECT_EQ (keys.hitTest (10.0, 98.0), KeyGeometry::noKey);
}
}
