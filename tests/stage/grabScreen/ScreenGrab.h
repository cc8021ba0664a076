#pragma once

#include <memory>

#include "picture/Picture.h"

// An X display, as somebody before it would see it.
class ScreenGrab
{
public:
    // The display that DISPLAY names. Throws std::runtime_error when it does not answer.
    ScreenGrab ();
    ~ScreenGrab ();
    ScreenGrab (const ScreenGrab&) = delete;
    ScreenGrab& operator= (const ScreenGrab&) = delete;

    // What the display shows from its top left. Windows that draw through a redirected window out of sight,
    // as Direct2D's do under Wine, are put at `width` x `height` into the corner, below the pop-ups.
    picture::Picture grab (int width, int height) const;

private:
    struct Display;
    std::unique_ptr<Display> display;
};
