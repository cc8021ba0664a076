#pragma once

namespace editor
{
// Where the keys of a keyboard lie, in pixels from its top left. Starts on a C.
struct KeyGeometry
{
    int firstKey;       // note number of the leftmost key, a C
    int keyCount;       // white and black
    double whiteWidth;  // of a white key; all that the lower zone is divided into
    double whiteHeight; // of the keyboard
    double blackWidth;
    double blackHeight; // down to and including this y lies the upper zone

    static constexpr int noKey = -1;

    // The note under a point, or noKey. Above the black keys' lower edge every key has its share of the row,
    // below it only the white ones.
    int hitTest (double x, double y) const;

    // Left edge of a key's picture. `note` must be one of the keys.
    double left (int note) const;

    bool has (int note) const { return note >= firstKey && note < firstKey + keyCount; }
    static bool isWhite (int note);
};
}
