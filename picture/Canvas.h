#pragma once

#include <cairo.h>

#include <filesystem>
#include <memory>

#include "picture/Surface.h"

namespace picture
{
// Mix of two colours: 0 gives the first, 1 the second.
Colour mix (Colour first, Colour second, double amount);

// Drawing with cairo, reduced to what the pictures of this tree need. Everything is told in the picture's own
// units, of which `scale` pixels make one.
class Canvas
{
public:
    // Width and height in units; a fraction of a pixel becomes a whole one. Throws std::runtime_error when
    // there is no memory for it.
    Canvas (int width, int height, Colour ground, double scale = 1.0);

    cairo_t* context () const { return cr.get (); }

    // The nearest place, in units, that lies between two pixels.
    double nearestEdge (double place) const;
    double edgeAfter (double place) const; // the first one that is not before the place

    void setColour (Colour colour, double opacity = 1.0);

    // Edges on whole units fall on whole pixels at every scale, so that they stay sharp; the others stay
    // where they are.
    void fillRect (double x, double y, double width, double height, Colour colour, double opacity = 1.0);
    void fillRoundedRect (double x, double y, double width, double height, double radius);
    void roundedRect (double x, double y, double width, double height, double radius); // the path alone
    void fillCircle (double x, double y, double radius, Colour colour, double opacity = 1.0);
    void line (double x1, double y1, double x2, double y2, double width, Colour colour);

    Picture image () const;
    void savePng (const std::filesystem::path& file) const; // throws std::runtime_error

private:
    double edge (double place) const;

    struct ContextRelease
    {
        void operator() (cairo_t* context) const { cairo_destroy (context); }
    };
    double scale;
    Surface surface;
    std::unique_ptr<cairo_t, ContextRelease> cr;
};
}
