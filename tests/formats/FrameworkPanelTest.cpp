// The panel in VST3 and LV2 hosts, beside the one that VST 2.4 hosts open.
#include <gtest/gtest.h>

#include "parameters/Parameters.h"
#include "tests/formats/FrameworkHost.h"
#include "tests/formats/PanelStage.h"

namespace
{
class FrameworkPanel final : public FormatPanel
{
public:
    FrameworkPanel ()
    {
        host->resize = [this] (int width, int height) { return resized (width, height), true; };
    }
    std::pair<int, int> size () override { return isOpen ? host->panelSize () : std::pair (612, 433); }
    bool open (void* window) override { return isOpen = host->openPanel (window); }
    void close () override
    {
        host->closePanel ();
        isOpen = false;
    }
    void turn () override { host->idlePanel (); }

    std::unique_ptr<FrameworkHost> host = makeHost ();

private:
    bool isOpen = false;
};

// What it looks like at both sizes, three times, and what its host hears of a knob.
TEST (FrameworkPanels, AreThePanelOfVst24)
{
    PanelStage stage;
    FrameworkPanel panel;
    stage.expectThePanel (panel, 3);

    stage.open (panel);
    stage.chooseZoom (2);
    ASSERT_TRUE (stage.shows (stage.expected (150), 150));
    stage.close ();
    stage.open (panel); // in a window for 100 percent, which the host could not know better
    ASSERT_TRUE (stage.shows (stage.expected (150), 150));
    EXPECT_EQ (panel.size (), std::pair (918, 649));
    stage.chooseZoom (0);
    ASSERT_TRUE (stage.shows (stage.expected (100), 100));
    panel.host->edits.clear ();
    const panel::Rect& knob = controlOf (parameters::paramFilterFreq).rect;
    stage.mouse ("mousemove " + std::to_string (knob.x + 11) + " " + std::to_string (knob.y + 11) +
                 " click 5");
    std::string& edits = panel.host->edits;
    EXPECT_TRUE (stage.until ([&] { return edits.ends_with ("end 18;"); })) << edits;
    EXPECT_TRUE (edits.starts_with ("begin 18;set 18;")) << edits;
    EXPECT_EQ (edits.find ("18", 20), edits.rfind ("18")) << edits;
    stage.close ();
}
}
