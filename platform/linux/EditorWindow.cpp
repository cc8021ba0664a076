#include "platform/EditorWindow.h"

#include <cairo/cairo-xcb.h>
#include <xcb/xcb.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

#include <vstgui/lib/cframe.h>
#include <vstgui/lib/platform/linux/x11platform.h>
#include <vstgui/lib/platform/platform_x11.h>
#include <vstgui/lib/vstguiinit.h>

namespace platform
{
namespace
{
using namespace VSTGUI;

// The toolkit keeps one connection to the display for all open editors of this library, and so this loop is
// one for all of them too. Whichever editor idles drives it.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor" // the toolkit's interface deletes by reference counting
class EditorRunLoop final : public X11::IRunLoop, public AtomicReferenceCounted
{
public:
    bool registerEventHandler (int /*descriptor*/, X11::IEventHandler* handler) override
    {
        eventHandlers.push_back (handler);
        return true;
    }

    bool unregisterEventHandler (X11::IEventHandler* handler) override
    {
        return std::erase (eventHandlers, handler) > 0;
    }

    bool registerTimer (std::uint64_t interval, X11::ITimerHandler* handler) override
    {
        const auto period = std::chrono::milliseconds (interval);
        timers.push_back ({ handler, period, Clock::now () + period });
        return true;
    }

    bool unregisterTimer (X11::ITimerHandler* handler) override
    {
        return std::erase_if (timers, [=] (const Timer& timer) { return timer.handler == handler; }) > 0;
    }

    // Handlers come and go while others run, so each is looked up again before its turn. The connection is
    // read without asking whether data waits: its library may hold events that it has read already.
    void run ()
    {
        for (auto* handler : std::vector (eventHandlers))
        {
            if (std::ranges::find (eventHandlers, handler) != eventHandlers.end ())
                handler->onEvent ();
        }
        const auto now = Clock::now ();
        for (const auto& due : std::vector (timers))
        {
            const auto timer = std::ranges::find (timers, due.handler, &Timer::handler);
            if (timer == timers.end () || timer->next > now)
                continue;
            timer->next = now + timer->period;
            due.handler->onTimer ();
        }
    }

private:
    using Clock = std::chrono::steady_clock;

    struct Timer
    {
        X11::ITimerHandler* handler;
        Clock::duration period;
        Clock::time_point next;
    };

    std::vector<X11::IEventHandler*> eventHandlers;
    std::vector<Timer> timers;
};
#pragma GCC diagnostic pop

EditorRunLoop& runLoop ()
{
    static const auto loop = makeOwned<EditorRunLoop> ();
    return *loop;
}

bool displayIsKept = false;

// One use of the toolkit's connection stays ours while the toolkit is in use: it would connect anew each
// time. It takes a display for granted, so that is tried out first.
bool keepDisplay ()
{
    if (displayIsKept)
        return true;
    xcb_connection_t* connection = xcb_connect (nullptr, nullptr);
    displayIsKept = xcb_connection_has_error (connection) == 0;
    xcb_disconnect (connection);
    if (displayIsKept)
        X11::RunLoop::init (shared (static_cast<X11::IRunLoop*> (&runLoop ())));
    return displayIsKept;
}

// Tells the toolkit which drawing device lives on its connection, so that it ends the one with the other. A
// later connection at the same address would otherwise be served by the remains of this one.
void registerDevice (xcb_window_t window)
{
    xcb_connection_t* connection = X11::RunLoop::instance ().getXcbConnection ();
    const xcb_screen_t* screen = xcb_setup_roots_iterator (xcb_get_setup (connection)).data;
    for (auto depth = xcb_screen_allowed_depths_iterator (screen); depth.rem > 0; xcb_depth_next (&depth))
    {
        for (auto visual = xcb_depth_visuals_iterator (depth.data); visual.rem > 0;
             xcb_visualtype_next (&visual))
        {
            if (visual.data->visual_id != screen->root_visual)
                continue;
            cairo_surface_t* probe = cairo_xcb_surface_create (connection, window, visual.data, 1, 1);
            X11::RunLoop::instance ().setDevice (cairo_surface_get_device (probe));
            cairo_surface_destroy (probe);
        }
    }
}
// The toolkit asks for hints of motion, of which the last of a quick move may never come. Without that
// bit every motion arrives.
void askForEveryMotion (xcb_window_t window)
{
    xcb_connection_t* connection = X11::RunLoop::instance ().getXcbConnection ();
    auto* attributes =
        xcb_get_window_attributes_reply (connection, xcb_get_window_attributes (connection, window), nullptr);
    if (attributes == nullptr)
        return;
    const std::uint32_t mask =
        attributes->your_event_mask & ~static_cast<std::uint32_t> (XCB_EVENT_MASK_POINTER_MOTION_HINT);
    xcb_change_window_attributes (connection, window, XCB_CW_EVENT_MASK, &mask);
    std::free (attributes);
}
}

const char* windowSystem ()
{
    return "x11";
}

// Told where this library lies it would look for files beside it; everything is compiled in.
void startToolkit ()
{
    VSTGUI::init (nullptr);
}

void endToolkit ()
{
    if (displayIsKept)
        X11::RunLoop::exit ();
    displayIsKept = false;
    VSTGUI::exit ();
}

bool openFrame (CFrame& frame, void* parentWindow)
{
    if (!keepDisplay ())
        return false;
    X11::FrameConfig config;
    config.runLoop = shared (static_cast<X11::IRunLoop*> (&runLoop ()));
    if (!frame.open (parentWindow, PlatformType::kX11EmbedWindowID, &config))
        return false;
    const xcb_window_t window = dynamic_cast<X11::IX11Frame&> (*frame.getPlatformFrame ()).getX11WindowID ();
    registerDevice (window);
    askForEveryMotion (window);
    handleWindowEvents (); // the window maps itself on its first event
    return true;
}

// The toolkit leaves its window to the end of the connection, which other open editors may hold.
void closeFrame (CFrame& frame)
{
    if (const auto* x11Frame = dynamic_cast<X11::IX11Frame*> (frame.getPlatformFrame ()))
    {
        xcb_connection_t* connection = X11::RunLoop::instance ().getXcbConnection ();
        xcb_destroy_window (connection, x11Frame->getX11WindowID ());
        xcb_flush (connection);
    }
    frame.close ();
}

// Desktops put the dots per inch for all programs into the display's resources: "Xft.dpi:	144".
double screenScale (CFrame& /*frame*/)
{
    constexpr double plainDotsPerInch = 96.0;
    constexpr std::string_view name = "Xft.dpi:";
    constexpr std::uint32_t mostWords = 1 << 14;
    xcb_connection_t* connection = X11::RunLoop::instance ().getXcbConnection ();
    const xcb_window_t root = xcb_setup_roots_iterator (xcb_get_setup (connection)).data->root;
    const auto request =
        xcb_get_property (connection, 0, root, XCB_ATOM_RESOURCE_MANAGER, XCB_ATOM_STRING, 0, mostWords);
    xcb_get_property_reply_t* reply = xcb_get_property_reply (connection, request, nullptr);
    if (reply == nullptr)
        return 1.0;
    const std::string resources (static_cast<const char*> (xcb_get_property_value (reply)),
                                 static_cast<std::size_t> (xcb_get_property_value_length (reply)));
    std::free (reply);
    const auto line = resources.find (name);
    const double dotsPerInch =
        line == std::string::npos ? 0.0 : std::strtod (resources.c_str () + line + name.size (), nullptr);
    return dotsPerInch > 0.0 ? dotsPerInch / plainDotsPerInch : 1.0;
}

bool windowsKeepTheirPicture ()
{
    return true;
}

bool hasMenusOfItsOwn ()
{
    return false;
}

void handleWindowEvents ()
{
    runLoop ().run ();
}
}
