#include "editor/KeyGeometry.h"

namespace editor
{
namespace
{
constexpr int semitonesPerOctave = 12;
constexpr bool whites[semitonesPerOctave] = { true,  false, true,  false, true,  true,
                                              false, true,  false, true,  false, true };

// How much of a white key's upper part its black neighbours cover, in black key widths: half a key each.
constexpr double coveredShare (int semitone)
{
    const bool blackBelow = semitone != 0 && semitone != 5;
    const bool blackAbove = semitone != 4 && semitone != 11;
    return (blackBelow ? 0.5 : 0.0) + (blackAbove ? 0.5 : 0.0);
}
}

bool KeyGeometry::isWhite (int note)
{
    return whites[note % semitonesPerOctave];
}

int KeyGeometry::hitTest (double x, double y) const
{
    if (y < 0.0 || y >= whiteHeight)
        return noKey;
    const bool upper = y <= blackHeight;
    double keyLeft = 0.0;
    for (int key = 0; key < keyCount; ++key)
    {
        const int semitone = key % semitonesPerOctave;
        if (!upper && !whites[semitone])
            continue;
        double width = whiteWidth;
        if (upper)
            width = whites[semitone] ? whiteWidth - coveredShare (semitone) * blackWidth : blackWidth;
        if (x >= keyLeft && x < keyLeft + width)
            return firstKey + key;
        keyLeft += width;
    }
    return noKey;
}

double KeyGeometry::left (int note) const
{
    double whiteLeft = 0.0;
    for (int key = 0; key < note - firstKey; ++key)
        whiteLeft += whites[key % semitonesPerOctave] ? whiteWidth : 0.0;
    return isWhite (note) ? whiteLeft : whiteLeft - blackWidth / 2.0;
}
}
