#pragma once

#include <memory>
#include <string>

namespace platform
{
// A window with frame and title that a plug-in opens beside those of its host, for its panel to open in.
// User-interface thread.
class FloatingWindow
{
public:
    // What is inside is so large, in pixels; the user cannot change that. Hidden at first. Null when there is
    // no display.
    static std::unique_ptr<FloatingWindow> make (int width, int height);
    virtual ~FloatingWindow () = default;

    virtual void* handle () const = 0; // HWND or X11 window id
    virtual void resize (int width, int height) = 0;
    virtual void setTitle (const std::string& title) = 0; // UTF-8
    virtual void stayAbove (void* window) = 0;            // one of the host's
    virtual void show () = 0;
    virtual void hide () = 0;

    // To be called regularly; does not wait. True once the user has asked to close it.
    virtual bool closeAsked () = 0;
};
}
