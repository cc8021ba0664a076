#include <gtest/gtest.h>

#include "plugin/EditorFactory.h"
#include "tests/support/TestSynth.h"

using namespace instrument;
using namespace parameters;

namespace
{
// The editor as hosts meet it before they open it, on machines without a display too.
class ClosedEditor : public testing::Test
{
protected:
    ClosedEditor () { make (); }

    void make ()
    {
        synth = std::make_unique<VstSynth> (&FakeHost::callback, host.services (), editorFactory ());
    }
    VstIntPtr call (VstInt32 opcode, void* ptr = nullptr)
    {
        return synth->dispatcher (opcode, 0, 0, ptr, 0.0f);
    }

    FakeHost host;
    std::unique_ptr<VstSynth> synth;
};

TEST_F (ClosedEditor, TellsItsSize)
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
        (*host.stored)["Brimvale\\EditorZoom"] = row.zoom;
        make ();
        synth->setParameter (paramShowKeys, row.keys);
        ERect* rect = nullptr;
        EXPECT_EQ (call (effEditGetRect, &rect), 1);
        EXPECT_EQ (std::pair (rect->right - rect->left, rect->bottom - rect->top),
                   std::pair (row.width, row.height))
            << row.zoom << " % with the keys at " << row.keys;
    }
}

TEST_F (ClosedEditor, IgnoresWhatHappens)
{
    EXPECT_EQ (call (effEditOpen, nullptr), 0) << "there is no window to open in";
    call (effEditClose);
    host.calls.clear ();
    synth->setParameter (paramVolume, 0.5f);
    synth->setParameter (commandProgram, 5.0f); // a choice in a menu that is not there
    synth->setParameter (commandRandom, 0.0f);
    synth->setParameter (commandMainMenu, static_cast<float> (menuAbout));
    call (effEditIdle);
    EXPECT_EQ (synth->getProgram (), 0);
    EXPECT_EQ (synth->getParameter (paramVolume), 0.5f);
    EXPECT_TRUE (host.calls.empty () && host.messages.empty ());
}
}
