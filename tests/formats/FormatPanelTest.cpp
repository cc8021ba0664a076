// The panel in hosts of one format, beside the one that VST 2.4 hosts open.
#include <gtest/gtest.h>

#include "parameters/Parameters.h"
#include "tests/formats/FormatHost.h"
#include "tests/formats/PanelStage.h"

namespace
{
// What it looks like at both sizes, three times, and what its host hears of a knob.
TEST (Panels, AreThoseOfVst24)
{
    PanelStage& stage = PanelStage::shared ();
    const auto host = makeHost ();
    stage.expectThePanel (*host, 3);

    stage.open (*host);
    stage.chooseZoom (2);
    ASSERT_TRUE (stage.shows (stage.expected (150), 150));
    stage.close ();
    stage.open (*host); // mostly in a window for 100 percent, which the host could not know better
    ASSERT_TRUE (stage.shows (stage.expected (150), 150));
    EXPECT_EQ (host->size (), std::pair (918, 649));
    stage.chooseZoom (0);
    ASSERT_TRUE (stage.shows (stage.expected (100), 100));

    std::string& edits = host->edits;
    edits.clear ();
    const panel::Rect& knob = controlOf (parameters::paramFilterFreq).rect;
    stage.mouse ("mousemove " + std::to_string (knob.x + 11) + " " + std::to_string (knob.y + 11) +
                 " click 5");
    EXPECT_TRUE (stage.until ([&] { return edits.ends_with ("end 18;"); })) << edits;
    EXPECT_EQ (edits, "begin 18;set 18;end 18;");
    edits.clear ();
    const double before = host->value (parameters::paramFilterFreq);
    stage.mouse ("mousedown 1 mousemove_relative -- 0 9");
    EXPECT_TRUE (stage.until ([&] { return edits.ends_with ("set 18;"); })) << edits;
    EXPECT_LT (host->value (parameters::paramFilterFreq), before);
    EXPECT_TRUE (edits.starts_with ("begin 18;set 18;") && edits.find ("end") == edits.npos) << edits;
    stage.mouse ("mouseup 1");
    EXPECT_TRUE (stage.until ([&] { return edits.ends_with ("set 18;end 18;"); })) << edits;
    stage.close ();
}
}
