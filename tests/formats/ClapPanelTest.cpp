// The panel in CLAP hosts, beside the one that VST 2.4 hosts open.
#include <gtest/gtest.h>

#include "parameters/Parameters.h"
#include "tests/formats/ClapHost.h"
#include "tests/formats/PanelStage.h"
#include "tests/host/TemporaryFolder.h"

namespace
{
class ClapPanel final : public FormatPanel
{
public:
    explicit ClapPanel (ClapHost& clapHost) : host (clapHost)
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
        clap_window_t window = { CLAP_WINDOW_API_X11, {} };
        window.ptr = handle;
        return host.gui ().create (host.plugin, CLAP_WINDOW_API_X11, false) &&
               host.gui ().set_parent (host.plugin, &window) && host.gui ().show (host.plugin);
    }
    void close () override { host.gui ().destroy (host.plugin); }
    void turn () override { host.turn (); }

private:
    ClapHost& host;
};

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
