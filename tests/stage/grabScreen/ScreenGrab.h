#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

// A picture in memory, 24 bits of colour.
struct Picture
{
    int width = 0;
    int height = 0;
    std::vector<std::uint32_t> pixels; // 0xRRGGBB, from the top left, row by row

    std::uint32_t at (int x, int y) const
    {
        return pixels[static_cast<std::size_t> (y) * static_cast<std::size_t> (width) +
                      static_cast<std::size_t> (x)];
    }
    Picture part (int x, int y, int partWidth, int partHeight) const; // must lie inside
    bool writePng (const std::string& path) const;
    bool operator== (const Picture&) const = default;
};

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
    Picture grab (int width, int height) const;

    // True when a window of this size exists and is not the root.
    bool hasWindow (int width, int height) const;

private:
    struct Display;
    std::unique_ptr<Display> display;
};
