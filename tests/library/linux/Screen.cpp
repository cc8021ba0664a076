#include "tests/library/linux/Screen.h"

#include <cstdlib>
#include <cstring>
#include <stdexcept>
#include <unistd.h>

xcb_window_t Screen::box ()
{
    if (xcb_connection_has_error (connection) != 0)
        return 0;
    const auto focus = ask (&xcb_get_input_focus_reply, xcb_get_input_focus (connection));
    if (focus == nullptr || focus->focus <= XCB_INPUT_FOCUS_POINTER_ROOT)
        return 0;
    const auto process = static_cast<std::uint32_t> (::getpid ());
    const std::string owner = property (focus->focus, "_NET_WM_PID");
    const bool isOurs =
        owner.size () == sizeof process && std::memcmp (owner.data (), &process, sizeof process) == 0;
    return isOurs ? focus->focus : 0;
}

std::vector<std::uint32_t> Screen::picture (xcb_window_t window, int x, int y, int width, int height)
{
    const auto reply =
        ask (&xcb_get_image_reply,
             xcb_get_image (connection, XCB_IMAGE_FORMAT_Z_PIXMAP, window, static_cast<std::int16_t> (x),
                            static_cast<std::int16_t> (y), static_cast<std::uint16_t> (width),
                            static_cast<std::uint16_t> (height), ~0u));
    std::vector<std::uint32_t> pixels (static_cast<std::size_t> (width * height));
    const std::size_t bytes = pixels.size () * sizeof pixels[0]; // a screen of 24 bits depth
    if (reply == nullptr || static_cast<std::size_t> (xcb_get_image_data_length (reply.get ())) < bytes)
        throw std::runtime_error ("no picture of the window");
    std::memcpy (pixels.data (), xcb_get_image_data (reply.get ()), bytes);
    return pixels;
}

std::string environment (const char* name)
{
    const char* value = std::getenv (name);
    return value != nullptr ? value : "";
}

void userDoes (const std::string& actions)
{
    if (std::system (("xdotool " + actions).c_str ()) != 0)
        throw std::runtime_error ("xdotool failed: " + actions);
}
