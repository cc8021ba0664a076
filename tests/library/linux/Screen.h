#pragma once

#include <vector>

#include "tests/stage/Neighbour.h"

// A second look at the display: the message boxes of this process, as another client sees them.
class Screen : public Neighbour
{
public:
    // The message box that is shown and has the keyboard; 0 when there is none, or no display.
    xcb_window_t box ();

    // The pixels of a window's part, row by row; only their lowest byte is for sure.
    std::vector<std::uint32_t> picture (xcb_window_t window, int x, int y, int width, int height);
};

// A variable of the environment; empty when it is not set.
std::string environment (const char* name);

// Keys and mouse, by xdotool: "key Return", "mousemove 3 4 click 1". Throws when it fails.
void userDoes (const std::string& actions);
