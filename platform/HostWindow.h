#pragma once

#include <memory>

namespace platform
{
// A bare window at the screen's top left for a plug-in's editor, without frame or title, above the others.
// One thread.
class HostWindow
{
public:
    // Null when there is no display.
    static std::unique_ptr<HostWindow> make (int width, int height); // pixels
    virtual ~HostWindow () = default;

    virtual void* handle () const = 0; // HWND or X11 window id
    virtual void resize (int width, int height) = 0;
    virtual void redraw () = 0;       // everything inside, as if it had been covered
    virtual void handleEvents () = 0; // those that wait; does not block
};

// Memory of this process that is really in use, 0 when the system does not tell.
long residentKilobytes ();
}
