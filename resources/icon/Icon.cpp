#include "resources/icon/Icon.h"

#include <algorithm>
#include <cmath>

#include "resources/panel/PanelLayout.h"

namespace icon
{
namespace
{
// Lengths in parts of the icon's side, places from its middle, y downwards.
constexpr double plateHalf = 0.47;
constexpr double plateCorner = 0.12;
constexpr double ringRadius = 0.35;
constexpr double ringHalf = 0.035;
constexpr double capRadius = 0.26;
constexpr double handHalf = 0.04;
constexpr double handStart = 0.08; // from the middle
constexpr double handEnd = 0.22;
constexpr double handX = 0.7071; // where the hand points: to the upper right
constexpr double handY = -0.7071;
constexpr double ringEnd = 0.785; // the ring is open at the bottom: radians from there on either side

struct Paint
{
    double red = 0.0, green = 0.0, blue = 0.0, alpha = 0.0; // 0..255, alpha 0..1
};

// Lays a colour over another, where the distance to a shape's edge (in pixels, negative inside) says so.
void cover (Paint& paint, picture::Colour colour, double distance)
{
    const double share = std::clamp (0.5 - distance, 0.0, 1.0);
    paint.alpha += (1.0 - paint.alpha) * share;
    paint.red += (colour.red - paint.red) * share;
    paint.green += (colour.green - paint.green) * share;
    paint.blue += (colour.blue - paint.blue) * share;
}

double toPlate (double x, double y)
{
    const double beyondX = std::max (std::abs (x) - plateHalf + plateCorner, 0.0);
    const double beyondY = std::max (std::abs (y) - plateHalf + plateCorner, 0.0);
    return std::hypot (beyondX, beyondY) - plateCorner;
}

double toRing (double x, double y)
{
    const bool isOpen = std::atan2 (std::abs (x), y) < ringEnd;
    return isOpen ? 1.0 : std::abs (std::hypot (x, y) - ringRadius) - ringHalf;
}

double toHand (double x, double y)
{
    const double along = std::clamp (x * handX + y * handY, handStart, handEnd);
    return std::hypot (x - along * handX, y - along * handY) - handHalf;
}

std::uint32_t pixelOf (const Paint& paint)
{
    const auto part = [] (double value, int bits)
    { return static_cast<std::uint32_t> (std::lround (value)) << bits; };
    return part (paint.alpha * 255.0, 24) | part (paint.red, 16) | part (paint.green, 8) |
           part (paint.blue, 0);
}
}

std::vector<std::uint32_t> draw (int side)
{
    std::vector<std::uint32_t> pixels;
    for (int row = 0; row < side; ++row)
    {
        for (int column = 0; column < side; ++column)
        {
            const double x = (column + 0.5) / side - 0.5;
            const double y = (row + 0.5) / side - 0.5;
            Paint paint = { panel::caseColour.red, panel::caseColour.green, panel::caseColour.blue };
            cover (paint, panel::caseColour, toPlate (x, y) * side);
            cover (paint, panel::accentColour, toRing (x, y) * side);
            cover (paint, panel::plateColour, (std::hypot (x, y) - capRadius) * side);
            cover (paint, panel::accentColour, toHand (x, y) * side);
            pixels.push_back (pixelOf (paint));
        }
    }
    return pixels;
}
}
