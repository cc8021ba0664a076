// What CLAP hosts do with the panel that no others do.
#include <cstdio>
#include <cstdlib>

#include <gtest/gtest.h>
#include <xcb/xcb.h>

#include "tests/formats/ClapHost.h"
#include "tests/formats/PanelStage.h"
#include "tests/host/TemporaryFolder.h"

namespace
{
// As a window manager does where somebody presses the button of the title bar.
void closeByTitleBar (const std::string& title)
{
    FILE* found = popen (("xdotool search --name '" + title + "'").c_str (), "r");
    unsigned window = 0;
    ASSERT_EQ (std::fscanf (found, "%u", &window), 1);
    pclose (found);
    xcb_connection_t* const display = xcb_connect (nullptr, nullptr);
    const auto atom = [display] (std::string_view name)
    {
        const auto asked =
            xcb_intern_atom (display, 0, static_cast<std::uint16_t> (name.size ()), name.data ());
        const std::unique_ptr<xcb_intern_atom_reply_t, decltype (&std::free)> reply (
            xcb_intern_atom_reply (display, asked, nullptr), std::free);
        return reply->atom;
    };
    xcb_client_message_event_t message = {};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = window;
    message.type = atom ("WM_PROTOCOLS");
    message.data.data32[0] = atom ("WM_DELETE_WINDOW");
    // Answered when it is on its way: a connection that ends at once may take it along.
    const auto sent =
        xcb_send_event_checked (display, 0, window, 0, reinterpret_cast<const char*> (&message));
    EXPECT_EQ (xcb_request_check (display, sent), nullptr);
    xcb_disconnect (display);
}

TEST (ClapPanels, OpenWithoutTimersAndFloatingInAWindowOfTheirOwn)
{
    PanelStage& stage = PanelStage::shared ();
    ClapHost bare (false);
    stage.expectThePanel (bare, 1);

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
