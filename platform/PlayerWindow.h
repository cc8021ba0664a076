#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <span>
#include <string>
#include <vector>

namespace platform
{
// Keys by their place, whatever is printed on them: the number that a PC keyboard sends (scan code, set 1),
// so that the row below the numbers is 0x10 to 0x1B on every keyboard. Those beside the main block:
enum Key : int
{
    keySpace = 0x39,
    keyHome = 0xE047,
    keyUp = 0xE048,
    keyPageUp = 0xE049,
    keyLeft = 0xE04B,
    keyRight = 0xE04D,
    keyDown = 0xE050,
    keyPageDown = 0xE051
};

// What a window tells its owner. Called from within `handleEvents` only.
class PlayerWindowListener
{
public:
    // A key went down without Ctrl, Alt or the system's own key; not told again while it repeats. True:
    // taken, and then its release is told, too. Any other goes to the panel.
    virtual bool keyPressed (int key) = 0;
    virtual void keyReleased (int key) = 0;

    // Another window has the keys now; the releases of those that are down will not come.
    virtual void focusLost () = 0;

    virtual void filesDropped (const std::vector<std::filesystem::path>& files) = 0; // never empty
    virtual void closeRequested () = 0;

protected:
    ~PlayerWindowListener () = default;
};

// A window with frame, title and icon around a panel that opens inside it as in a host's window.
// User-interface thread.
class PlayerWindow
{
public:
    // Width and height of what is inside, in pixels. The icon is a square, each pixel 0xAARRGGBB, row by row.
    // Null when there is no display. The listener must outlive the window.
    static std::unique_ptr<PlayerWindow> make (int width, int height, std::span<const std::uint32_t> icon,
                                               PlayerWindowListener& listener);
    virtual ~PlayerWindow () = default;

    virtual void* handle () const = 0; // HWND or X11 window id
    virtual void resize (int width, int height) = 0;
    virtual void setTitle (const std::string& title) = 0; // UTF-8

    // Files that are dropped onto the panel are for the window. To be called once the panel is open.
    virtual void acceptFiles () = 0;

    // Waits for events for so many milliseconds and handles them.
    virtual void handleEvents (int milliseconds) = 0;
};
}
