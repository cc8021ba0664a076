// Binding controllers to parameters, as the panel's menus and a keyboard's knobs do it.
#include "tests/support/TestSynth.h"

#include <cmath>
#include <gtest/gtest.h>

using namespace engine;
using namespace instrument;
using namespace parameters;

namespace
{
constexpr VstInt32 learn = 53;
constexpr float forget = 1000.0f;

// An editor that only counts what it is told.
class CountingEditor final : public SynthEditor
{
public:
    static inline int menuRefreshes = 0;
    void setParameter (std::int32_t /*index*/, float /*value*/) override {}
    void refreshLearnMenus () override { ++menuRefreshes; }
    void setProgramEntry (std::int32_t /*program*/, const char* /*text*/) override {}
    void markCurrentProgram () override {}
};

std::unique_ptr<SynthEditor> makeCountingEditor (VstSynth& /*synth*/)
{
    return std::make_unique<CountingEditor> ();
}

class MidiLearn : public testing::Test
{
protected:
    MidiLearn ()
    {
        host.createEditor = &makeCountingEditor;
        synth = std::make_unique<VstSynth> (&FakeHost::callback, host.services ());
        CountingEditor::menuRefreshes = 0;
    }
    void controller (int number, int value, int channel = 0)
    {
        render (*synth, 64, 64,
                { { 0, static_cast<unsigned char> (0xB0 | channel), static_cast<unsigned char> (number),
                    static_cast<unsigned char> (value) } });
    }
    std::vector<VstInt32> boundTo (std::uint32_t number) const
    {
        std::vector<VstInt32> indices;
        for (VstInt32 index = 0; index < parameterCount; ++index)
        {
            if (synth->midiController (index) == number)
                indices.push_back (index);
        }
        return indices;
    }

    FakeHost host;
    std::unique_ptr<VstSynth> synth;
};

using Indices = std::vector<VstInt32>;

TEST_F (MidiLearn, TheNextControllerBindsAndSetsAtOnce)
{
    synth->setParameter (learn, 18.0f);
    EXPECT_EQ (synth->midiController (18), 0u);
    controller (21, 32);
    EXPECT_EQ (boundTo (21), Indices{ 18 });
    EXPECT_EQ (synth->getParameter (18), 32.0f / 127.0f);
    EXPECT_EQ (CountingEditor::menuRefreshes, 1);

    controller (22, 100); // the learn is over
    EXPECT_EQ (boundTo (22), Indices ());
    EXPECT_EQ (synth->getParameter (18), 32.0f / 127.0f);
    controller (21, 127);
    EXPECT_EQ (synth->getParameter (18), 1.0f);
    EXPECT_EQ (host.countCalls (audioMasterAutomate), 0) << "the host moved the knob itself";
}

TEST_F (MidiLearn, AnyControllerOnAnyChannel)
{
    for (int number = 1; number < 128; ++number)
    {
        const int channel = number % 16;
        synth->setParameter (learn, 37.0f);
        controller (number, number, channel);
        EXPECT_EQ (synth->midiController (37), static_cast<std::uint32_t> (number));
        EXPECT_EQ (synth->getParameter (37), static_cast<float> (number) / 127.0f);
        controller (number, 64, 15 - channel);
        EXPECT_EQ (synth->getParameter (37), 64.0f / 127.0f) << "another channel";
    }
}

// 0 says "none" in the stored form, so this controller cannot be bound. That is meant.
TEST_F (MidiLearn, ControllerZeroUnbinds)
{
    synth->setParameter (learn, 5.0f);
    controller (40, 10);
    const float value = synth->getParameter (5);
    synth->setParameter (learn, 5.0f);
    controller (0, 127);
    EXPECT_EQ (synth->midiController (5), 0u);
    EXPECT_EQ (synth->getParameter (5), value);
    controller (0, 1);
    EXPECT_EQ (synth->getParameter (5), value);
}

TEST_F (MidiLearn, OnlyTheLastArmedParameterWaits)
{
    synth->setParameter (learn, 5.0f);
    synth->setParameter (learn, 6.9f); // truncated
    controller (30, 64);
    EXPECT_EQ (boundTo (30), Indices{ 6 });
}

TEST_F (MidiLearn, NumbersThatAreNoParameterAreIgnored)
{
    synth->setParameter (learn, 5.0f);
    for (const float value : { 38.0f, 500.0f, 998.9f, -1.0f, -1e30f, std::nanf (""), // to be armed
                               999.0f, 1038.0f, 1e30f, HUGE_VALF })                  // to be forgotten
        synth->setParameter (learn, value);
    controller (30, 64);
    EXPECT_EQ (boundTo (30), Indices{ 5 });
    EXPECT_EQ (host.messages.size (), 0u);
}

TEST_F (MidiLearn, SeveralParametersFollowOneController)
{
    for (const VstInt32 index : { 18, 3, 30 })
    {
        synth->setParameter (learn, static_cast<float> (index));
        controller (74, 1);
    }
    controller (74, 127);
    for (const VstInt32 index : { 3, 18, 30 })
        EXPECT_EQ (synth->getParameter (index), 1.0f) << index;

    synth->setParameter (learn, forget + 18.0f);
    EXPECT_EQ (boundTo (74), (Indices{ 3, 30 })) << "the others stay bound";
    controller (74, 0);
    EXPECT_EQ (synth->getParameter (3), 0.0f);
    EXPECT_EQ (synth->getParameter (18), 1.0f);
    EXPECT_EQ (CountingEditor::menuRefreshes, 4);
}

TEST_F (MidiLearn, ForgettingAllLeavesNone)
{
    for (const VstInt32 index : { 0, 18, 37 })
    {
        synth->setParameter (learn, static_cast<float> (index));
        controller (index + 1, 1);
    }
    CountingEditor::menuRefreshes = 0;
    synth->setParameter (45, 4.0f);
    EXPECT_EQ (boundTo (0).size (), 38u);
    EXPECT_EQ (CountingEditor::menuRefreshes, 1);
}

TEST_F (MidiLearn, BindingsTravelInBanksAndNotInPrograms)
{
    synth->setParameter (learn, 18.0f);
    controller (74, 1);
    void* data = nullptr;
    synth->getChunk (&data, false);
    BankImage image;
    std::memcpy (&image, data, sizeof image);
    EXPECT_EQ (image.slots[18].midiController, 74u);
    ProgramRecord program = image.programs[0];

    synth->setParameter (45, 4.0f);
    synth->setChunk (&program, sizeof program, true);
    EXPECT_EQ (synth->midiController (18), 0u);
    CountingEditor::menuRefreshes = 0;
    synth->setChunk (&image, sizeof image, false);
    EXPECT_EQ (synth->midiController (18), 74u);
    EXPECT_EQ (CountingEditor::menuRefreshes, 1);
}

// A damaged bank can bind a number that no controller has; it stays without effect.
TEST_F (MidiLearn, ABindingOutsideTheControllersNeverActs)
{
    void* data = nullptr;
    synth->getChunk (&data, false);
    BankImage image;
    std::memcpy (&image, data, sizeof image);
    image.slots[18].midiController = 0xFFFFFFFFu;
    image.slots[19].midiController = 128 + 74;
    synth->setChunk (&image, sizeof image, false);
    const float before18 = synth->getParameter (18);
    const float before19 = synth->getParameter (19);
    for (int number = 0; number < 128; ++number)
        controller (number, 3);
    EXPECT_EQ (synth->getParameter (18), before18);
    EXPECT_EQ (synth->getParameter (19), before19);
}
}
