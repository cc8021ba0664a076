#include <gtest/gtest.h>

#include "plugin/EditorFactory.h"
#include "tests/support/TestSynth.h"

using namespace instrument;
using namespace parameters;

namespace
{
// The editor as hosts meet it before they open it, on machines without a display too.
TEST (ClosedEditor, TellsItsSize)
{
    struct Row
    {
        std::uint32_t zoom; // percent, as stored; unknown ones count as none
        float keys;
        int width, height;
    };
    for (const Row& row :
         { Row{ 0, 1.0f, 612, 433 }, Row{ 0, 0.0f, 612, 295 }, Row{ 0, 0.3f, 612, 433 },
           Row{ 150, 1.0f, 918, 649 }, Row{ 200, 1.0f, 1224, 866 }, Row{ 300, 1.0f, 1836, 1299 },
           Row{ 70, 1.0f, 612, 433 }, Row{ 4000000000u, 1.0f, 612, 433 } })
    {
        HostedSynth synth (editorFactory ());
        (*synth.host.stored)["Brimvale\\EditorZoom"] = row.zoom;
        synth.set (paramShowKeys, row.keys);
        ERect* rect = nullptr;
        EXPECT_EQ (synth.call (effEditGetRect, 0, 0, &rect), 1);
        EXPECT_EQ (std::pair (rect->right - rect->left, rect->bottom - rect->top),
                   std::pair (row.width, row.height))
            << row.zoom << " % with the keys at " << row.keys;
    }
}

TEST (ClosedEditor, IgnoresWhatHappens)
{
    HostedSynth synth (editorFactory ());
    EXPECT_EQ (synth.call (effEditOpen), 0) << "there is no window to open in";
    synth.call (effEditClose);
    synth.host.calls.clear ();
    synth.set (paramVolume, 0.5f);
    synth.set (commandProgram, 5.0f); // a choice in a menu that is not there
    synth.set (commandRandom, 0.0f);
    synth.set (commandMainMenu, static_cast<float> (menuAbout));
    synth.call (effEditIdle);
    EXPECT_EQ (synth.call (effGetProgram), 0);
    EXPECT_EQ (synth.get (paramVolume), 0.5f);
    EXPECT_TRUE (synth.host.calls.empty () && synth.host.messages.empty ());
}
}
