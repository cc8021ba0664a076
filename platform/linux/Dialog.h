#pragma once

#include <memory>
#include <string>
#include <vector>

#include <xcb/xcb.h>
#include <xcb/xcb_keysyms.h>

#include <cairo/cairo.h>

namespace platform
{
// A small window with one line of text and a row of buttons. It has a connection to the display of its own,
// so it takes no events from the toolkit or the host. One thread uses it from birth to death.
class Dialog
{
public:
    // Makes the window, centred and not yet visible. Texts are ASCII; `labels` holds at least one.
    Dialog (std::string text, const std::string& title, const std::vector<std::string>& labels);
    ~Dialog ();
    Dialog (const Dialog&) = delete;
    Dialog& operator= (const Dialog&) = delete;

    // False when there is no display to show it on.
    bool isConnected () const { return xcb_connection_has_error (connection) == 0; }

    // Shows the window and waits: the index of the pressed button. The last button answers for Escape, for
    // closing the window and for a display that went away.
    int run ();

private:
    struct Button
    {
        std::string label;
        double x = 0.0; // left edge
    };

    void layOut (const std::vector<std::string>& labels);
    void createWindow (const std::string& title);
    void describeWindow (const std::string& title);
    void createSurface ();

    void draw ();
    void drawMark (cairo_t* drawing) const;
    void drawButton (cairo_t* drawing, int index) const;

    bool handle (const xcb_generic_event_t& event); // true when the user has answered
    bool keyPressed (const xcb_key_press_event_t& event);
    int buttonAt (int x, int y) const; // -1: none
    int lastButton () const { return static_cast<int> (buttons.size ()) - 1; }

    std::string text;
    std::vector<Button> buttons;
    int width = 0; // pixels
    int focused = 0;
    int pressed = -1; // held down by the mouse, -1: none
    int answer = -1;

    xcb_connection_t* connection = nullptr;
    xcb_screen_t* screen = nullptr;
    xcb_window_t window = 0;
    xcb_atom_t deleteWindow = 0;
    xcb_key_symbols_t* keySymbols = nullptr;
    cairo_surface_t* surface = nullptr;
};
}
