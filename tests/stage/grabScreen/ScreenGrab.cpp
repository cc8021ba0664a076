#include "tests/stage/grabScreen/ScreenGrab.h"

#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <X11/extensions/Xcomposite.h>

#include <algorithm>
#include <stdexcept>

using picture::Picture;

namespace
{
// Windows come and go while they are looked at; the requests that fail are those that find nothing.
int ignoreError (Display* /*display*/, XErrorEvent* /*error*/)
{
    return 0;
}

struct WindowInfo
{
    Window window;
    int depth; // of nesting: 1 for children of the root
    XWindowAttributes attributes;
    int parentWidth, parentHeight;
};

// All windows from the bottom of the stack to its top, parents before their children.
void collect (Display* display, Window parent, int depth, std::vector<WindowInfo>& found)
{
    XWindowAttributes parentAttributes = {};
    if (XGetWindowAttributes (display, parent, &parentAttributes) == 0)
        return;
    Window root = 0;
    Window above = 0;
    Window* children = nullptr;
    unsigned count = 0;
    if (XQueryTree (display, parent, &root, &above, &children, &count) == 0)
        return;
    for (unsigned i = 0; i < count; ++i)
    {
        WindowInfo info = { children[i], depth, {}, parentAttributes.width, parentAttributes.height };
        if (XGetWindowAttributes (display, children[i], &info.attributes) == 0)
            continue;
        found.push_back (info);
        collect (display, children[i], depth + 1, found);
    }
    if (children != nullptr)
        XFree (children);
}

// Copies a drawable into the picture with its top left at x, y.
void draw (Display* display, Drawable source, int width, int height, int x, int y, Picture& onto)
{
    XImage* image = XGetImage (display, source, 0, 0, static_cast<unsigned> (width),
                               static_cast<unsigned> (height), AllPlanes, ZPixmap);
    if (image == nullptr)
        return;
    for (int row = std::max (0, -y); row < std::min (height, onto.height - y); ++row)
    {
        for (int column = std::max (0, -x); column < std::min (width, onto.width - x); ++column)
        {
            const unsigned long pixel = XGetPixel (image, column, row); // 0xRRGGBB
            onto.at (x + column, y + row) = { static_cast<std::uint8_t> (pixel >> 16),
                                              static_cast<std::uint8_t> (pixel >> 8),
                                              static_cast<std::uint8_t> (pixel) };
        }
    }
    XDestroyImage (image);
}
}

struct ScreenGrab::Display
{
    ::Display* connection;
};

ScreenGrab::ScreenGrab () : display (std::make_unique<Display> (Display{ XOpenDisplay (nullptr) }))
{
    if (display->connection == nullptr)
        throw std::runtime_error ("no display answers");
    XSetErrorHandler (ignoreError);
}

ScreenGrab::~ScreenGrab ()
{
    XCloseDisplay (display->connection);
}

Picture ScreenGrab::grab (int width, int height) const
{
    ::Display* x = display->connection;
    const Window root = DefaultRootWindow (x);
    Picture picture{ width, height,
                     std::vector<picture::Colour> (static_cast<std::size_t> (width) *
                                                   static_cast<std::size_t> (height)) };
    XGrabServer (x); // nothing moves while its picture is taken
    draw (x, root, std::min (width, DisplayWidth (x, DefaultScreen (x))),
          std::min (height, DisplayHeight (x, DefaultScreen (x))), 0, 0, picture);

    std::vector<WindowInfo> windows;
    collect (x, root, 1, windows);
    for (const WindowInfo& info : windows)
    {
        // Out of sight: inside a parent of one pixel.
        const bool outOfSight = info.depth > 1 && info.parentWidth == 1 && info.parentHeight == 1;
        if (!outOfSight || info.attributes.width != width || info.attributes.height != height)
            continue;
        const Pixmap pixmap = XCompositeNameWindowPixmap (x, info.window);
        draw (x, pixmap, width, height, 0, 0, picture);
        XFreePixmap (x, pixmap);
        // It covers what lay above it: the pop-ups, which the window managerless host opens later than
        // itself.
        for (const WindowInfo& other : windows)
        {
            const bool isPopUp = other.depth == 1 && other.attributes.map_state == IsViewable &&
                                 other.attributes.override_redirect != 0 && other.attributes.width > 1 &&
                                 (other.attributes.x != 0 || other.attributes.y != 0);
            if (isPopUp)
                draw (x, other.window, other.attributes.width, other.attributes.height, other.attributes.x,
                      other.attributes.y, picture);
        }
    }
    XUngrabServer (x);
    XSync (x, False);
    return picture;
}
