#pragma once

#include <xcb/xcb.h>

#include <cstdint>
#include <cstdlib>
#include <span>
#include <string_view>

namespace platform
{
// What every window of ours asks of the display and tells window managers. Owns neither the connection nor
// the window. On the thread that uses the connection.
class XcbWindow
{
public:
    XcbWindow (xcb_connection_t* display, xcb_window_t itself) : connection (display), window (itself) {}

    // As plug-ins' panels take it.
    void* handle () const
    {
        // NOLINTNEXTLINE(performance-no-int-to-ptr): they take the number in a pointer
        return reinterpret_cast<void*> (static_cast<std::uintptr_t> (window));
    }

    xcb_atom_t atom (std::string_view name) const
    {
        const auto length = static_cast<std::uint16_t> (name.size ());
        auto* reply = xcb_intern_atom_reply (connection,
                                             xcb_intern_atom (connection, 0, length, name.data ()), nullptr);
        const xcb_atom_t found = reply != nullptr ? reply->atom : xcb_atom_t{ XCB_ATOM_NONE };
        std::free (reply);
        return found;
    }

    void setNumbers (std::string_view name, std::string_view type,
                     std::span<const std::uint32_t> numbers) const
    {
        change (name, type, 32, numbers.data (), numbers.size ());
    }

    void setText (std::string_view name, std::string_view type, std::string_view text) const
    {
        change (name, type, 8, text.data (), text.size ());
    }

    void setClass () const { setText ("WM_CLASS", "STRING", std::string_view ("brimvale\0Brimvale\0", 18)); }

    void setTitle (std::string_view title) const
    {
        setText ("_NET_WM_NAME", "UTF8_STRING", title);
        setText ("WM_NAME", "UTF8_STRING", title);
    }

    // In pixels. The panel decides about its size, not the user: least and most in the hints for window
    // managers, in the places that their convention gives them.
    void fixSize (int width, int height) const
    {
        constexpr std::uint32_t hasLeastAndMost = 1 << 4 | 1 << 5;
        const auto wide = static_cast<std::uint32_t> (width);
        const auto high = static_cast<std::uint32_t> (height);
        const std::uint32_t hints[18] = { hasLeastAndMost, 0, 0, 0, 0, wide, high, wide, high };
        setNumbers ("WM_NORMAL_HINTS", "WM_SIZE_HINTS", hints);
    }

    void resize (int width, int height) const
    {
        const std::uint32_t values[] = { static_cast<std::uint32_t> (width),
                                         static_cast<std::uint32_t> (height) };
        xcb_configure_window (connection, window, XCB_CONFIG_WINDOW_WIDTH | XCB_CONFIG_WINDOW_HEIGHT, values);
        xcb_flush (connection);
    }

    // The panel opens over a connection of its own, so the display must have done what was asked for here.
    void synchronize () const
    {
        std::free (xcb_get_input_focus_reply (connection, xcb_get_input_focus (connection), nullptr));
    }

private:
    void change (std::string_view name, std::string_view type, std::uint8_t bits, const void* data,
                 std::size_t count) const
    {
        xcb_change_property (connection, XCB_PROP_MODE_REPLACE, window, atom (name), atom (type), bits,
                             static_cast<std::uint32_t> (count), data);
    }

    xcb_connection_t* connection;
    xcb_window_t window;
};
}
