// Binding controllers to parameters, as the panel's menus and a keyboard's knobs do it.
#include <cmath>

#include <gtest/gtest.h>

#include "tests/instrument/TestInstrument.h"

using namespace instrument;

namespace
{
using Indices = std::vector<std::int32_t>;

class MidiLearnTest : public testing::Test
{
protected:
    void arm (float value) { synth.set (commandLearn, value); }
    Indices boundTo (std::uint32_t number) const
    {
        Indices indices;
        for (std::int32_t index = 0; index < parameterCount; ++index)
        {
            if (synth.core.midiController (index) == number)
                indices.push_back (index);
        }
        return indices;
    }

    FakeSystem system;
    TestInstrument synth{ system };
};
}

TEST_F (MidiLearnTest, TheNextControllerBindsAndSetsAtOnce)
{
    arm (18.0f);
    synth.block (16, { noteOn (0), midi (1, 0xE0, 3, 4) }); // no controllers
    for (int mode = 120; mode < 128; ++mode) // nor are channel modes, as hosts send them at a stop
        synth.controller (mode, 0);
    EXPECT_EQ (boundTo (0).size (), 38u);
    synth.controller (21, 32);
    EXPECT_EQ (boundTo (21), Indices{ 18 });
    EXPECT_EQ (synth.get (18), 32.0f / 127.0f);
    EXPECT_EQ (synth.menuRefreshes, 1);
    synth.controller (22, 100); // the learn is over
    EXPECT_EQ (boundTo (22), Indices ());
    EXPECT_EQ (synth.get (18), 32.0f / 127.0f);
    synth.controller (21, 127, 9); // on any channel
    EXPECT_EQ (synth.get (18), 1.0f);

    arm (5.0f);
    arm (6.9f); // truncated; the last one waits
    synth.controller (30, 64, 3);
    EXPECT_EQ (boundTo (30), Indices{ 6 });
}

// 0 says "none" in the stored form, so this controller cannot be bound.
TEST_F (MidiLearnTest, ControllerZeroUnbinds)
{
    synth.learn (5, 40, 10);
    synth.learn (5, 0, 127);
    EXPECT_EQ (boundTo (0).size (), 38u);
    EXPECT_EQ (synth.get (5), 10.0f / 127.0f);
}

TEST_F (MidiLearnTest, NumbersThatAreNoParameterAreIgnored)
{
    arm (5.0f);
    for (const float value : { 38.0f, 500.0f, 998.9f, -1.0f, -1e30f, std::nanf (""), // to be armed
                               999.0f, 1038.0f, 1e30f, HUGE_VALF })                  // to be forgotten
        arm (value);
    synth.controller (30, 64);
    EXPECT_EQ (boundTo (30), Indices{ 5 });
    EXPECT_TRUE (system.messages.empty ());
}

TEST_F (MidiLearnTest, SeveralParametersFollowOneControllerAndAreForgottenOneByOneOrAll)
{
    for (const std::int32_t index : { 18, 3, 30 })
        synth.learn (index, 74);
    synth.told.clear ();
    synth.controller (74, 127);
    EXPECT_EQ (synth.told,
               (TestInstrument::News{ { 3, 1.0f }, { 18, 1.0f }, { 30, 1.0f } })); // in ascending order
    arm (1000.0f + 18.0f);
    EXPECT_EQ (boundTo (74), (Indices{ 3, 30 }));
    synth.controller (74, 0);
    EXPECT_EQ (synth.get (3), 0.0f);
    EXPECT_EQ (synth.get (18), 1.0f);
    EXPECT_EQ (synth.menuRefreshes, 4);
    synth.set (commandMainMenu, menuMidiForget);
    EXPECT_EQ (boundTo (0).size (), 38u);
    EXPECT_EQ (synth.menuRefreshes, 5);
}
