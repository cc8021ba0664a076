#pragma once

#include <string_view>
#include <vector>

#include "picture/Canvas.h"

namespace manual
{
// A drawing in the panel's colours and lettering, for eyes that read a page: two pixels to a unit.
class Sheet
{
public:
    static constexpr double scale = 2.0;

    Sheet (int width, int height, picture::Colour ground);

    picture::Canvas& canvas () { return area; }
    picture::Picture image () const { return area.image (); }

    void paint (const picture::Picture& image, double x, double y); // pixel by pixel
    void text (double x, double baseline, double size, picture::Colour colour, std::string_view words);
    void centredText (double x, double baseline, double size, picture::Colour colour, std::string_view words);
    void polygon (std::initializer_list<std::pair<double, double>> points, picture::Colour colour);
    void arrow (double x1, double y1, double x2, double y2, picture::Colour colour); // along an axis
    void curve (const std::vector<std::pair<double, double>>& points, picture::Colour colour);

private:
    picture::Canvas area;
};
}
