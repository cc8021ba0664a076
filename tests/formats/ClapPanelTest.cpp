// What CLAP hosts do with the panel that no others do.
#include <cstdlib>

#include <gtest/gtest.h>

#include "tests/formats/ClapHost.h"
#include "tests/formats/PanelStage.h"
#include "tests/host/TemporaryFolder.h"
#include "tests/stage/Neighbour.h"

namespace
{
TEST (ClapPanels, OpenWithoutTimersAndFloatingInAWindowOfTheirOwn)
{
    PanelStage& stage = PanelStage::shared ();
    ClapHost bare (false);
    stage.expectThePanel (bare);

    ClapHost host;
    host.floats = true;
    stage.open (host);
    EXPECT_TRUE (stage.shows (stage.expected (100), 100));
    Neighbour neighbour;
    neighbour.close (neighbour.find (ClapHost::title));
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
