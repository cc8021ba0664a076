#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include <xcb/xcb.h>

// A second look at the display: the message boxes of this process, as another client sees them.
class Screen
{
public:
    Screen () : connection (xcb_connect (nullptr, nullptr)) {}
    ~Screen () { xcb_disconnect (connection); }
    Screen (const Screen&) = delete;
    Screen& operator= (const Screen&) = delete;

    // The message box that is shown and has the keyboard; 0 when there is none, or no display.
    xcb_window_t box ();

    std::string title (xcb_window_t window) { return property (window, XCB_ATOM_WM_NAME); }
    std::string text (xcb_window_t window) { return property (window, XCB_ATOM_WM_ICON_NAME); }
    xcb_get_geometry_reply_t geometry (xcb_window_t window);

    // The pixels of a window's part, row by row; only their lowest byte is for sure.
    std::vector<std::uint32_t> picture (xcb_window_t window, int x, int y, int width, int height);

    void close (xcb_window_t window); // as a window manager asks for it

private:
    std::string property (xcb_window_t window, xcb_atom_t name);
    xcb_atom_t atom (const std::string& name);

    xcb_connection_t* connection;
};

// A variable of the environment; empty when it is not set.
std::string environment (const char* name);

// Keys and mouse, by xdotool: "key Return", "mousemove 3 4 click 1". Throws when it fails.
void userDoes (const std::string& actions);
