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
    ClosedEditor ()
    {
        synth = std::make_unique<VstSynth> (&FakeHost::callback, host.services (), editorFactory ());
        host.calls.clear ();
    }

    VstIntPtr call (VstInt32 opcode, void* ptr = nullptr, VstInt32 index = 0)
    {
        return synth->dispatcher (opcode, index, 0, ptr, 0.0f);
    }
    std::pair<int, int> size ()
    {
        ERect* rect = nullptr;
        EXPECT_EQ (call (effEditGetRect, &rect), 1);
        return { rect->right - rect->left, rect->bottom - rect->top };
    }

    FakeHost host;
    std::unique_ptr<VstSynth> synth;
};

TEST_F (ClosedEditor, IsThere)
{
    EXPECT_NE (synth->getAeffect ()->flags & effFlagsHasEditor, 0);
    EXPECT_TRUE (synth->editorWasMade ());
    EXPECT_TRUE (host.messages.empty ());
}

TEST_F (ClosedEditor, TellsItsSize)
{
    EXPECT_EQ (size (), std::pair (612, 433));
    synth->setParameter (paramShowKeys, 0.0f);
    EXPECT_EQ (size (), std::pair (612, 433 - 98 - 40));
    synth->setParameter (paramShowKeys, 0.3f);
    EXPECT_EQ (size (), std::pair (612, 433)) << "only exactly 0 hides the keys";
}

TEST_F (ClosedEditor, TellsTheZoomedSize)
{
    struct Stored
    {
        std::uint32_t percent;
        int width, height;
    };
    for (const Stored& stored : { Stored{ 150, 918, 649 }, Stored{ 200, 1224, 866 }, Stored{ 70, 612, 433 } })
    {
        (*host.stored)["Brimvale\\EditorZoom"] = stored.percent;
        VstSynth other (&FakeHost::callback, host.services (), editorFactory ());
        ERect* rect = nullptr;
        other.dispatcher (effEditGetRect, 0, 0, &rect, 0.0f);
        EXPECT_EQ (rect->right, stored.width);
        EXPECT_EQ (rect->bottom, stored.height);
    }
}

TEST_F (ClosedEditor, IgnoresWhatHappens)
{
    synth->setParameter (paramVolume, 0.5f);
    synth->setParameter (commandProgram, 5.0f); // a choice in a menu that is not there
    synth->setParameter (commandRandom, 0.0f);
    synth->setParameter (commandMainMenu, static_cast<float> (menuAbout));
    call (effEditIdle);
    EXPECT_EQ (synth->getProgram (), 0);
    EXPECT_EQ (synth->getParameter (paramVolume), 0.5f);
    EXPECT_TRUE (host.calls.empty ());
}

TEST_F (ClosedEditor, ClosingAndIdlingAreHarmless)
{
    call (effEditClose);
    call (effEditIdle);
    EXPECT_EQ (call (effEditOpen, nullptr), 0) << "there is no window to open in";
    call (effEditClose);
}
}
