// What CLAP hosts do with the panel that no others do.
#include <cstdio>
#include <cstdlib>

#include <gtest/gtest.h>

#include "tests/formats/ClapHost.h"
#include "tests/formats/PanelStage.h"
#include "tests/host/TemporaryFolder.h"

#include <X11/Xlib.h> // last, for its macros

namespace
{
// As a window manager does where somebody presses the button of the title bar.
void closeByTitleBar (const std::string& title)
{
    FILE* found = popen (("xdotool search --name '" + title + "'").c_str (), "r");
    unsigned long window = 0;
    ASSERT_EQ (std::fscanf (found, "%lu", &window), 1);
    pclose (found);
    Display* const display = XOpenDisplay (nullptr);
    XEvent event = {};
    event.xclient.type = ClientMessage;
    event.xclient.window = window;
    event.xclient.message_type = XInternAtom (display, "WM_PROTOCOLS", False);
    event.xclient.format = 32;
    event.xclient.data.l[0] = static_cast<long> (XInternAtom (display, "WM_DELETE_WINDOW", False));
    XSendEvent (display, window, False, NoEventMask, &event);
    XSync (display, False);
    XCloseDisplay (display);
}

TEST (ClapPanels, OpenWithoutTimersAndFloatingInAWindowOfTheirOwn)
{
    PanelStage& stage = PanelStage::shared ();
    ClapHost bare (false);
    stage.expectThePanel (bare);

    ClapHost host;
    host.floats = true;
    stage.open (host);
    EXPECT_TRUE (stage.shows (stage.expected (100), 100));
    closeByTitleBar (ClapHost::title);
    EXPECT_TRUE (stage.until ([&] { return host.windowsClosed == 1; }));
    EXPECT_TRUE (stage.until ([&] { return stage.picture (100) != stage.expected (100); }));
    EXPECT_TRUE (host.gui ().show (host.plugin)) << "the host may show it again";
    stage.chooseZoom (2);
    EXPECT_TRUE (stage.shows (stage.expected (150), 150));
    stage.chooseZoom (0);
    EXPECT_TRUE (stage.shows (stage.expected (100), 100));
    stage.close ();
}

TEST (ClapPanels, OpenInTheHostsScaleUntilAZoomIsChosen)
{
    PanelStage::shared (); // it has chosen a zoom of 100 percent
    ClapHost chosen;
    EXPECT_FALSE (chosen.gui ().set_scale (chosen.plugin, 2.0));
    const TemporaryFolder none;
    setenv ("XDG_CONFIG_HOME", (none / "").c_str (), 1);
    ClapHost host;
    EXPECT_TRUE (host.gui ().set_scale (host.plugin, 1.4));
    EXPECT_EQ (host.size (), std::pair (918, 649));
    EXPECT_FALSE (host.gui ().can_resize (host.plugin));
    EXPECT_FALSE (host.gui ().is_api_supported (host.plugin, CLAP_WINDOW_API_WIN32, false));
    EXPECT_TRUE (host.gui ().is_api_supported (host.plugin, CLAP_WINDOW_API_X11, false));
}
}
