#include "platform/HostWindow.h"

#include <xcb/xcb.h>

#include <unistd.h>

#include <cstdint>
#include <cstdlib>
#include <fstream>

#include "platform/linux/XcbWindow.h"

namespace platform
{
namespace
{
class XcbHostWindow final : public HostWindow
{
public:
    XcbHostWindow (xcb_connection_t* display, int width, int height)
        : connection (display),
          window (xcb_generate_id (display)),
          asXcb (display, window)
    {
        const xcb_screen_t* screen = xcb_setup_roots_iterator (xcb_get_setup (connection)).data;
        const std::uint32_t values[] = { screen->black_pixel, 1 }; // in the order of their bits
        xcb_create_window (connection, XCB_COPY_FROM_PARENT, window, screen->root, 0, 0,
                           static_cast<std::uint16_t> (width), static_cast<std::uint16_t> (height), 0,
                           XCB_WINDOW_CLASS_INPUT_OUTPUT, screen->root_visual,
                           XCB_CW_BACK_PIXEL | XCB_CW_OVERRIDE_REDIRECT, values);
        xcb_map_window (connection, window);
        asXcb.synchronize ();
    }

    ~XcbHostWindow () override { xcb_disconnect (connection); }

    void* handle () const override { return asXcb.handle (); }
    void resize (int width, int height) override { asXcb.resize (width, height); }

    // Hidden and shown again, which exposes all that is inside.
    void redraw () override
    {
        xcb_unmap_window (connection, window);
        xcb_map_window (connection, window);
        xcb_flush (connection);
    }

    void handleEvents () override
    {
        while (auto* event = xcb_poll_for_event (connection))
            std::free (event);
    }

private:
    xcb_connection_t* connection;
    xcb_window_t window;
    XcbWindow asXcb;
};
}

std::unique_ptr<HostWindow> HostWindow::make (int width, int height)
{
    xcb_connection_t* connection = xcb_connect (nullptr, nullptr);
    if (xcb_connection_has_error (connection) == 0)
        return std::make_unique<XcbHostWindow> (connection, width, height);
    xcb_disconnect (connection);
    return nullptr;
}

long residentKilobytes ()
{
    long size = 0;
    long resident = 0; // pages
    std::ifstream ("/proc/self/statm") >> size >> resident;
    return resident * (sysconf (_SC_PAGESIZE) / 1024);
}
}
