#include "platform/FloatingWindow.h"

#include <xcb/xcb.h>

#include <cstdint>
#include <cstdlib>

#include "platform/linux/XcbWindow.h"

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
          asXcb (display, window),
          protocols (asXcb.atom ("WM_PROTOCOLS")),
          deletion (asXcb.atom ("WM_DELETE_WINDOW"))
    {
        const xcb_screen_t* screen = xcb_setup_roots_iterator (xcb_get_setup (connection)).data;
        xcb_create_window (connection, XCB_COPY_FROM_PARENT, window, screen->root, 0, 0,
                           static_cast<std::uint16_t> (width), static_cast<std::uint16_t> (height), 0,
                           XCB_WINDOW_CLASS_INPUT_OUTPUT, screen->root_visual, XCB_CW_BACK_PIXEL,
                           &screen->black_pixel);
        asXcb.setNumbers ("WM_PROTOCOLS", "ATOM", { &deletion, 1 });
        asXcb.setClass ();
        asXcb.fixSize (width, height);
        asXcb.synchronize ();
    }

    ~XcbFloatingWindow () override { xcb_disconnect (connection); }

    void* handle () const override { return asXcb.handle (); }

    void resize (int width, int height) override
    {
        asXcb.fixSize (width, height);
        asXcb.resize (width, height);
    }

    void setTitle (const std::string& title) override
    {
        asXcb.setTitle (title);
        xcb_flush (connection);
    }

    void stayAbove (void* other) override
    {
        const auto owner = static_cast<std::uint32_t> (reinterpret_cast<std::uintptr_t> (other));
        asXcb.setNumbers ("WM_TRANSIENT_FOR", "WINDOW", { &owner, 1 });
        xcb_flush (connection);
    }

    void show () override
    {
        xcb_map_window (connection, window);
        asXcb.synchronize ();
    }

    void hide () override
    {
        xcb_unmap_window (connection, window);
        asXcb.synchronize ();
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

    xcb_connection_t* connection;
    xcb_window_t window;
    XcbWindow asXcb;
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
