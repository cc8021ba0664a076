#include "platform/EditorWindow.h"

#include <xcb/xcb.h>

#include <algorithm>
#include <chrono>
#include <vector>

#include "vstgui/lib/cframe.h"
#include "vstgui/lib/platform/linux/x11platform.h"
#include "vstgui/lib/platform/platform_x11.h"

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

// The toolkit takes a display for granted.
bool displayAnswers ()
{
    xcb_connection_t* connection = xcb_connect (nullptr, nullptr);
    const bool works = xcb_connection_has_error (connection) == 0;
    xcb_disconnect (connection);
    return works;
}
}

// It would look for files beside a bundle; everything is compiled in.
void* toolkitInstance ()
{
    return nullptr;
}

bool openFrame (CFrame& frame, void* parentWindow)
{
    if (!displayAnswers ())
        return false;
    X11::FrameConfig config;
    config.runLoop = shared (static_cast<X11::IRunLoop*> (&runLoop ()));
    if (!frame.open (parentWindow, PlatformType::kX11EmbedWindowID, &config))
        return false;
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

bool hasMenusOfItsOwn ()
{
    return false;
}

void handleWindowEvents ()
{
    runLoop ().run ();
}
}
