#include "platform/FloatingWindow.h"

#include <xcb/xcb.h>

#include <array>
#include <cstdint>
#include <cstdlib>
#include <span>
#include <string_view>

namespace platform
{
namespace
{
class XcbFloatingWindow final : public FloatingWindow
{
public:
    XcbFloatingWindow (xcb_connection_t* display, int width, int height)
        : connection (display),
          window (xcb_generate_id (display)),
          protocols (atom ("WM_PROTOCOLS")),
          deletion (atom ("WM_DELETE_WINDOW"))
    {
        const xcb_screen_t* screen = xcb_setup_roots_iterator (xcb_get_setup (connection)).data;
        xcb_create_window (connection, XCB_COPY_FROM_PARENT, window, screen->root, 0, 0,
                           static_cast<std::uint16_t> (width), static_cast<std::uint16_t> (height), 0,
                           XCB_WINDOW_CLASS_INPUT_OUTPUT, screen->root_visual, XCB_CW_BACK_PIXEL,
                           &screen->black_pixel);
        setNumbers (protocols, XCB_ATOM_ATOM, { &deletion, 1 });
        setText (XCB_ATOM_WM_CLASS, XCB_ATOM_STRING, std::string_view ("brimvale\0Brimvale\0", 18));
        fixSize (width, height);
        synchronize ();
    }

    ~XcbFloatingWindow () override { xcb_disconnect (connection); }

    void* handle () const override
    {
        // NOLINTNEXTLINE(performance-no-int-to-ptr): panels take the number in a pointer
        return reinterpret_cast<void*> (static_cast<std::uintptr_t> (window));
    }

    void resize (int width, int height) override
    {
        fixSize (width, height);
        const std::uint32_t values[] = { static_cast<std::uint32_t> (width),
                                         static_cast<std::uint32_t> (height) };
        xcb_configure_window (connection, window, XCB_CONFIG_WINDOW_WIDTH | XCB_CONFIG_WINDOW_HEIGHT, values);
        xcb_flush (connection);
    }

    void setTitle (const std::string& title) override
    {
        setText (atom ("_NET_WM_NAME"), atom ("UTF8_STRING"), title);
        setText (XCB_ATOM_WM_NAME, atom ("UTF8_STRING"), title);
        xcb_flush (connection);
    }

    void stayAbove (void* other) override
    {
        const auto owner = static_cast<std::uint32_t> (reinterpret_cast<std::uintptr_t> (other));
        setNumbers (XCB_ATOM_WM_TRANSIENT_FOR, XCB_ATOM_WINDOW, { &owner, 1 });
        xcb_flush (connection);
    }

    void show () override
    {
        xcb_map_window (connection, window);
        synchronize ();
    }

    void hide () override
    {
        xcb_unmap_window (connection, window);
        synchronize ();
    }

    bool closeAsked () override
    {
        bool asked = false;
        while (auto* event = xcb_poll_for_event (connection))
        {
            if ((event->response_type & ~sentBit) == XCB_CLIENT_MESSAGE)
            {
                const auto& message = reinterpret_cast<const xcb_client_message_event_t&> (*event);
                asked = asked || (message.type == protocols && message.data.data32[0] == deletion);
            }
            std::free (event);
        }
        return asked;
    }

private:
    static constexpr std::uint8_t sentBit = 0x80; // of an event that another program has sent

    xcb_atom_t atom (std::string_view name)
    {
        const auto length = static_cast<std::uint16_t> (name.size ());
        auto* reply = xcb_intern_atom_reply (connection,
                                             xcb_intern_atom (connection, 0, length, name.data ()), nullptr);
        const xcb_atom_t found = reply != nullptr ? reply->atom : xcb_atom_t{ XCB_ATOM_NONE };
        std::free (reply);
        return found;
    }

    void setNumbers (xcb_atom_t name, xcb_atom_t type, std::span<const std::uint32_t> numbers)
    {
        xcb_change_property (connection, XCB_PROP_MODE_REPLACE, window, name, type, 32,
                             static_cast<std::uint32_t> (numbers.size ()), numbers.data ());
    }

    void setText (xcb_atom_t name, xcb_atom_t type, std::string_view text)
    {
        xcb_change_property (connection, XCB_PROP_MODE_REPLACE, window, name, type, 8,
                             static_cast<std::uint32_t> (text.size ()), text.data ());
    }

    // Least and most in the hints for window managers, in the places that their convention gives them.
    void fixSize (int width, int height)
    {
        constexpr std::uint32_t hasLeastAndMost = 1 << 4 | 1 << 5;
        const auto wide = static_cast<std::uint32_t> (width);
        const auto high = static_cast<std::uint32_t> (height);
        const std::array<std::uint32_t, 18> hints = { hasLeastAndMost, 0, 0, 0, 0, wide, high, wide, high };
        setNumbers (XCB_ATOM_WM_NORMAL_HINTS, XCB_ATOM_WM_SIZE_HINTS, hints);
    }

    // The panel opens over a connection of its own, so the server must have done what was asked for here.
    void synchronize ()
    {
        std::free (xcb_get_input_focus_reply (connection, xcb_get_input_focus (connection), nullptr));
    }

    xcb_connection_t* connection;
    xcb_window_t window;
    xcb_atom_t protocols;
    xcb_atom_t deletion;
};
}

std::unique_ptr<FloatingWindow> FloatingWindow::make (int width, int height)
{
    xcb_connection_t* connection = xcb_connect (nullptr, nullptr);
    if (xcb_connection_has_error (connection) == 0)
        return std::make_unique<XcbFloatingWindow> (connection, width, height);
    xcb_disconnect (connection);
    return nullptr;
}
}
