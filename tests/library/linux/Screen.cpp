#include "tests/library/linux/Screen.h"

#include <cstdlib>
#include <cstring>
#include <memory>
#include <stdexcept>
#include <unistd.h>

namespace
{
// Asks the display and takes the answer; a null one when the window is gone.
template <typename Cookie, typename Reply>
auto ask (xcb_connection_t* connection, Reply* (*reply) (xcb_connection_t*, Cookie, xcb_generic_error_t**),
          Cookie cookie)
{
    return std::unique_ptr<Reply, decltype (&std::free)> (reply (connection, cookie, nullptr), &std::free);
}
}

xcb_window_t Screen::box ()
{
    if (xcb_connection_has_error (connection) != 0)
        return 0;
    const auto focus = ask (connection, &xcb_get_input_focus_reply, xcb_get_input_focus (connection));
    if (focus == nullptr || focus->focus <= XCB_INPUT_FOCUS_POINTER_ROOT)
        return 0;
    const auto process = static_cast<std::uint32_t> (::getpid ());
    const std::string owner = property (focus->focus, atom ("_NET_WM_PID"));
    const bool isOurs =
        owner.size () == sizeof process && std::memcmp (owner.data (), &process, sizeof process) == 0;
    return isOurs ? focus->focus : 0;
}

xcb_get_geometry_reply_t Screen::geometry (xcb_window_t window)
{
    const auto reply = ask (connection, &xcb_get_geometry_reply, xcb_get_geometry (connection, window));
    return reply != nullptr ? *reply : xcb_get_geometry_reply_t ();
}

std::vector<std::uint32_t> Screen::picture (xcb_window_t window, int x, int y, int width, int height)
{
    const auto reply =
        ask (connection, &xcb_get_image_reply,
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

void Screen::close (xcb_window_t window)
{
    xcb_client_message_event_t event = {};
    event.response_type = XCB_CLIENT_MESSAGE;
    event.format = 32;
    event.window = window;
    event.type = atom ("WM_PROTOCOLS");
    event.data.data32[0] = atom ("WM_DELETE_WINDOW");
    xcb_send_event (connection, 0, window, XCB_EVENT_MASK_NO_EVENT, reinterpret_cast<const char*> (&event));
    geometry (window); // answered after the message was passed on, which a disconnection might overtake
}

std::string Screen::property (xcb_window_t window, xcb_atom_t name)
{
    constexpr std::uint32_t longest = 256; // in units of four bytes
    const auto reply =
        ask (connection, &xcb_get_property_reply,
             xcb_get_property (connection, 0, window, name, XCB_GET_PROPERTY_TYPE_ANY, 0, longest));
    if (reply == nullptr)
        return {};
    return { static_cast<const char*> (xcb_get_property_value (reply.get ())),
             static_cast<std::size_t> (xcb_get_property_value_length (reply.get ())) };
}

xcb_atom_t Screen::atom (const std::string& name)
{
    const auto cookie =
        xcb_intern_atom (connection, 0, static_cast<std::uint16_t> (name.size ()), name.data ());
    const auto reply = ask (connection, &xcb_intern_atom_reply, cookie);
    return reply != nullptr ? reply->atom : static_cast<xcb_atom_t> (XCB_ATOM_NONE);
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
