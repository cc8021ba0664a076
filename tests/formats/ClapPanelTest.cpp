// The panel in CLAP hosts, beside the one that VST 2.4 hosts open.
#include <cstdio>
#include <cstdlib>

#include <gtest/gtest.h>
#include <xcb/xcb.h>

#include "parameters/Parameters.h"
#include "tests/formats/ClapHost.h"
#include "tests/formats/PanelStage.h"
#include "tests/host/TemporaryFolder.h"

namespace
{
class ClapPanel final : public FormatPanel
{
public:
    explicit ClapPanel (ClapHost& clapHost, bool floats = false) : host (clapHost), isFloating (floats)
    {
        host.resize = [this] (int width, int height) { return resized (width, height), true; };
    }
    std::pair<int, int> size () override
    {
        std::uint32_t width = 0;
        std::uint32_t height = 0;
        host.gui ().get_size (host.plugin, &width, &height);
        return { static_cast<int> (width), static_cast<int> (height) };
    }
    bool open (void* handle) override
    {
        if (isFloating)
        {
            const bool isMade = host.gui ().create (host.plugin, nullptr, true);
            host.gui ().suggest_title (host.plugin, title);
            return isMade && host.gui ().show (host.plugin);
        }
        clap_window_t window = { CLAP_WINDOW_API_X11, {} };
        window.ptr = handle;
        return host.gui ().create (host.plugin, CLAP_WINDOW_API_X11, false) &&
               host.gui ().set_parent (host.plugin, &window) && host.gui ().show (host.plugin);
    }
    void close () override { host.gui ().destroy (host.plugin); }
    void turn () override { host.turn (); }

    static constexpr char title[] = "A title \xE2\x98\x83";

private:
    ClapHost& host;
    bool isFloating;
};

// As a window manager does where somebody presses the button of the title bar.
void closeByTitleBar (const std::string& title)
{
    FILE* found = popen (("xdotool search --name '" + title + "'").c_str (), "r");
    unsigned window = 0;
    ASSERT_EQ (std::fscanf (found, "%u", &window), 1);
    pclose (found);
    xcb_connection_t* display = xcb_connect (nullptr, nullptr);
    const auto atom = [display] (const std::string& name)
    {
        const auto asked =
            xcb_intern_atom (display, 0, static_cast<std::uint16_t> (name.size ()), name.c_str ());
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
    xcb_send_event (display, 0, window, XCB_EVENT_MASK_NO_EVENT, reinterpret_cast<const char*> (&message));
    // Answered when the message is on its way: a connection that ends at once may take it along.
    std::free (xcb_get_input_focus_reply (display, xcb_get_input_focus (display), nullptr));
    xcb_disconnect (display);
}

// One display for all, as programs know it.
class ClapPanels : public testing::Test
{
protected:
    static void SetUpTestSuite () { shared = std::make_unique<PanelStage> (); }
    static void TearDownTestSuite () { shared = nullptr; }

    static std::unique_ptr<PanelStage> shared;
    PanelStage& stage = *shared;
};
std::unique_ptr<PanelStage> ClapPanels::shared;

TEST_F (ClapPanels, IsThePanelOfVst24WithTimersAndWithout)
{
    for (const bool hasTimers : { true, false })
    {
        SCOPED_TRACE (hasTimers);
        ClapHost host (hasTimers);
        ClapPanel panel (host);
        stage.expectThePanel (panel, hasTimers ? 3 : 1);
    }
}

TEST_F (ClapPanels, AHandOnAKnobIsRecorded)
{
    ClapHost host;
    ClapPanel panel (host);
    stage.open (panel);
    ASSERT_TRUE (stage.shows (stage.expected (100), 100));
    const double before = host.value (parameters::paramFilterFreq);
    const panel::Rect& knob = controlOf (parameters::paramFilterFreq).rect;
    stage.mouse ("mousemove " + std::to_string (knob.x + 11) + " " + std::to_string (knob.y + 11) +
                 " mousedown 1 mousemove_relative -- 0 9");
    ASSERT_TRUE (stage.until ([&] { return host.value (parameters::paramFilterFreq) < before; }));
    auto told = host.flush ();
    ASSERT_EQ (told.size (), 2u);
    EXPECT_EQ (told[0], "begin 18");
    EXPECT_TRUE (told[1].starts_with ("value 18 ") && told[1].ends_with (" live")) << told[1];
    EXPECT_GT (host.flushRequests, 0);
    EXPECT_TRUE (host.flush ().empty ());
    stage.mouse ("mouseup 1");
    ASSERT_TRUE (stage.until ([&] { return (told = host.flush ()).size () == 1; }));
    EXPECT_EQ (told[0], "end 18");
    // A double click sets it back, all of it between two calls.
    const double low = host.value (parameters::paramFilterFreq);
    stage.mouse ("click --repeat 2 --delay 40 1");
    ASSERT_TRUE (stage.until ([&] { return host.value (parameters::paramFilterFreq) != low; }));
    stage.mouse ("mousemove 1900 1300");
    told = host.flush ();
    ASSERT_EQ (told.size (), 3u);
    EXPECT_EQ (told[0], "begin 18");
    EXPECT_TRUE (told[1].ends_with (" live"));
    EXPECT_EQ (told[2], "end 18");
    stage.close ();
}

TEST_F (ClapPanels, FloatsInAWindowOfItsOwn)
{
    ClapHost host;
    ClapPanel panel (host, true);
    stage.expectThePanel (panel, 1);
    stage.open (panel);
    EXPECT_TRUE (stage.shows (stage.expected (100), 100));
    closeByTitleBar (ClapPanel::title);
    EXPECT_TRUE (stage.until ([&] { return host.windowsClosed == 1; }));
    EXPECT_TRUE (stage.until ([&] { return stage.picture (100) != stage.expected (100); }));
    EXPECT_TRUE (host.gui ().show (host.plugin)) << "the host may show it again";
    EXPECT_TRUE (stage.shows (stage.expected (100), 100));
    stage.close ();
}

TEST_F (ClapPanels, OpensInTheHostsScaleUntilAZoomIsChosen)
{
    ClapHost chosen; // the zoom of 100 percent that the stage has left
    EXPECT_FALSE (chosen.gui ().set_scale (chosen.plugin, 2.0));
    const TemporaryFolder none;
    setenv ("XDG_CONFIG_HOME", (none / "").c_str (), 1);
    ClapHost host;
    ClapPanel panel (host);
    EXPECT_TRUE (host.gui ().set_scale (host.plugin, 1.4));
    EXPECT_EQ (panel.size (), std::pair (918, 649));
    EXPECT_FALSE (host.gui ().can_resize (host.plugin));
    EXPECT_FALSE (host.gui ().is_api_supported (host.plugin, CLAP_WINDOW_API_WIN32, false));
    EXPECT_TRUE (host.gui ().is_api_supported (host.plugin, CLAP_WINDOW_API_X11, false));
}
}
