// The panel in hosts of one format, beside the one that VST 2.4 hosts open.
#include <gtest/gtest.h>

#include "parameters/Parameters.h"
#include "tests/formats/FormatHost.h"
#include "tests/formats/PanelStage.h"

namespace
{
// What it looks like, again and again, and what its host hears of a knob.
TEST (Panels, AreThoseOfVst24)
{
    PanelStage& stage = PanelStage::shared ();
    const auto host = makeHost ();
    stage.expectThePanel (*host);
    stage.expectThePanel (*host);
    stage.open (*host);
    ASSERT_TRUE (stage.shows (stage.expected (100), 100));
    std::string& edits = host->edits;
    edits.clear ();
    const panel::Rect& knob = controlOf (parameters::paramFilterFreq).rect;
    stage.mouse ("mousemove " + std::to_string (knob.x + 11) + " " + std::to_string (knob.y + 11) +
                 " click 5");
    EXPECT_TRUE (stage.until ([&] { return edits == "begin 18;set 18;end 18;"; })) << edits;
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
