// What hosts of every format but VST 2.4 are shown, and what their songs keep.
#include "formats/shared/HostedInstrument.h"

#include <cmath>
#include <cstring>
#include <set>
#include <tuple>

#include <gtest/gtest.h>

#include "tests/support/FakeSystem.h"

using namespace formats;

namespace
{
struct NoTransport final : instrument::FormatHost
{
    std::optional<engine::Transport> transport () override { return std::nullopt; }
};

class Hosted : public testing::Test
{
protected:
    float stored (std::int32_t index) const { return synth.instrument ().getParameter (index); }
    std::string told (std::int32_t index) const { return synth.text (index, synth.value (index)); }

    FakeSystem system;
    NoTransport transport;
    HostedInstrument synth{ system.services (), transport };
};

TEST_F (Hosted, ANewOneStandsAtTheDefaultsUnderNamesOfTheirOwn)
{
    std::set<std::string> names, hidden;
    for (std::int32_t index = 0; index < shownCount; ++index)
    {
        EXPECT_EQ (synth.value (index), shownDefault (index)) << shownName (index);
        EXPECT_FALSE (shownName (index).empty () || shownName (index).ends_with (' ')) << index;
        names.insert (shownName (index));
        if (!shownParameter (index).automated)
            hidden.insert (shownName (index));
    }
    EXPECT_EQ (names.size (), 39u);
    EXPECT_EQ (shownDefault (paramFilterFreq), static_cast<double> (stored (paramFilterFreq)));
    EXPECT_EQ (hidden, (std::set<std::string>{ "PitchBend", "ShowKeys", "NonUsed" }));
}

// Every step is told back as it was set, stores what the engine takes for it, and has words of its own.
TEST_F (Hosted, StepsAndSwitchesGoBothWays)
{
    const std::tuple<std::int32_t, double, float, const char*> steps[] = {
        { paramOsc1Wave, 1, 0.5f, "saw" },
        { paramOsc1Wave, 2, 1.0f, "pulse" },
        { paramOsc2Range, 3, 0.75f, "+12 semitones" },
        { paramFilterType, 2, 1.0f, "high-pass" },
        { paramLfoWave, 3, 0.6f, "square" },
        { paramLfoWave, 5, 1.0f, "sample and hold" },
        { paramVoices, 0, 0.0f, "2" },
        { paramVoices, 7, 1.0f, "16" },
        { paramVolType, 0, 0.0f, "+4.1 dB" },
        { paramVolType, 2, 2.0f, "-5.7 dB" },
        { paramHighQuality, 0, 1.0f, "off" },
        { paramHighQuality, 1, 0.0f, "on" },
        { paramGlideAuto, 0, 0.0f, "off" },
        { paramLfoBmpSync, 1, 1.0f, "on" },
    };
    for (const auto& [index, shown, value, text] : steps)
    {
        synth.setValue (index, shown > 0 ? 0 : shownHighest (index));
        synth.setValue (index, shown);
        EXPECT_EQ (stored (index), value) << text;
        EXPECT_EQ (told (index), text);
    }
    for (std::int32_t index = 0; index < parameterCount; ++index)
    {
        for (std::int32_t position = 0; position < shownParameter (index).positions; ++position)
        {
            synth.setValue (index, position);
            EXPECT_EQ (synth.value (index), position) << shownName (index);
            EXPECT_EQ (synth.valueOf (index, told (index)), position) << told (index);
        }
    }
    EXPECT_EQ (synth.text (param2Delay, *synth.valueOf (param2Delay, "250ms")), "250 ms");
    EXPECT_FALSE (synth.valueOf (paramFilterFreq, "loud"));
    synth.setValue (paramLfoBmpSync, 1);
    EXPECT_EQ (synth.text (paramLfoRate, *synth.valueOf (paramLfoRate, "1/8")), "1/8");
}

TEST_F (Hosted, AnEchoLeavesTheKnobWhereItStands)
{
    synth.instrument ().setParameter (paramOsc1Wave, 0.6f);
    synth.setValue (paramOsc1Wave, synth.value (paramOsc1Wave));
    EXPECT_EQ (stored (paramOsc1Wave), 0.6f);
    EXPECT_EQ (synth.eventFor (7, paramOsc1Wave, 1.0).kind, engine::Event::Kind::none);
    EXPECT_EQ (synth.eventFor (7, paramOsc1Wave, 2.0).value, 1.0f);
    synth.setValue (param2ToFilter, 0.49);
    EXPECT_EQ (synth.value (param2ToFilter), HostedInstrument::valueAfter (param2ToFilter, 0.49));
    EXPECT_EQ (synth.value (param2ToFilter), 0.5);
    for (const double odd : { std::nan (""), -3.0, 7e30 })
    {
        for (std::int32_t index = -2; index < shownCount + 2; ++index)
            synth.setValue (index, odd);
    }
    EXPECT_EQ (synth.value (shownProgram), 127.0);
    EXPECT_EQ (synth.value (paramVoices), 7.0);
}

TEST_F (Hosted, TheProgramIsAParameterWithNames)
{
    EXPECT_EQ (synth.text (shownProgram, 0), "001 Bass One");
    EXPECT_EQ (shownHighest (shownProgram), 127.0);
    for (const char* text : { "128", "128 whatever", "retro pad 64", " 128 Retro Pad 64" })
        EXPECT_EQ (synth.valueOf (shownProgram, text), 127.0) << text;
    for (const char* text : { "0", "129", "", "no such name", "12x" })
        EXPECT_FALSE (synth.valueOf (shownProgram, text)) << text;
    synth.setValue (shownProgram, 5);
    EXPECT_EQ (synth.instrument ().getProgram (), 5);
    const engine::Event event = synth.eventFor (3, shownProgram, 9);
    EXPECT_EQ (event.status, 0xC0);
    EXPECT_EQ (event.data1, 9);
    EXPECT_EQ (event.offset, 3);
}

TEST_F (Hosted, TheStateKeepsEverythingAndRefusesTheRest)
{
    synth.setValue (shownProgram, 9);
    synth.setValue (paramFilterFreq, 0.25);
    const auto state = synth.saveState ();
    synth.setValue (paramFilterFreq, 0.75);
    synth.setValue (shownProgram, 3);
    const auto before = synth.saveState ();

    for (const std::size_t length : { 0u, 1u, 19u, 20u, 23895u, 23897u, 23915u })
        EXPECT_FALSE (
            synth.loadState (std::span (state).first (std::min<std::size_t> (length, state.size ()))));
    for (const std::size_t place : { 0u, 7u, 8u, 12u, 16u, 20u, 5000u, 23915u })
    {
        auto damaged = state;
        damaged[place] ^= std::byte{ 0x80 };
        EXPECT_FALSE (synth.loadState (damaged)) << place;
    }
    auto longer = state;
    longer.push_back ({});
    EXPECT_FALSE (synth.loadState (longer));
    EXPECT_FALSE (synth.loadState (std::vector (sizeof (instrument::BankImage), std::byte{ 'x' })));
    EXPECT_EQ (synth.saveState (), before);
    EXPECT_TRUE (system.messages.empty ());

    EXPECT_TRUE (synth.loadState (state));
    EXPECT_EQ (synth.saveState (), state);
    EXPECT_EQ (synth.value (shownProgram), 9.0);
    EXPECT_EQ (stored (paramFilterFreq), 0.25f);
}

TEST_F (Hosted, ASongOfVst24IsTakenAndTheStatesOwnProgramWins)
{
    synth.setValue (shownProgram, 9);
    const auto chunk = synth.instrument ().getChunk (false);
    const std::vector bank (chunk.begin (), chunk.end ()); // it says 9, too
    synth.setValue (shownProgram, 0);
    const auto first = synth.saveState ();
    synth.setValue (shownProgram, 4);
    EXPECT_TRUE (synth.loadState (bank));
    EXPECT_EQ (synth.value (shownProgram), 9.0);
    EXPECT_TRUE (synth.loadState (first));
    EXPECT_EQ (synth.value (shownProgram), 0.0);
}
}
