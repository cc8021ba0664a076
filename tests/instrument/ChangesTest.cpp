// How a change finds its way to the engine, from whatever thread and in whatever number.
#include <thread>

#include <gtest/gtest.h>

#include "tests/instrument/TestInstrument.h"

using namespace instrument;
using engine::Event;

namespace
{
constexpr std::int32_t program = -1; // as the index of a step: select

using Steps = std::vector<std::pair<std::int32_t, float>>;

void take (TestInstrument& synth, std::int32_t index, float value)
{
    if (index == program)
        synth.core.setProgram (static_cast<std::int32_t> (value));
    else
        synth.set (index, value);
}

// The sound of two notes with whatever is set.
std::vector<float> sound (TestInstrument& synth)
{
    return synth.block (4000, { noteOn (5, 48), noteOn (700, 55) });
}

class ChangesTest : public testing::Test
{
protected:
    // What `steps` sound like, taken one by one with an empty block after each, or all before one block.
    std::vector<float> soundAfter (const Steps& steps, bool oneByOne)
    {
        TestInstrument synth (system);
        for (const auto& [index, value] : steps)
        {
            take (synth, index, value);
            if (oneByOne)
                synth.block (1);
        }
        return sound (synth);
    }
    static void elsewhere (const std::function<void ()>& work) { std::thread (work).join (); }

    FakeSystem system;
};
}

TEST_F (ChangesTest, MapInTheOrderOfTheirCalls)
{
    const Steps base = { { paramLfoFilter, 1.0f }, { paramFilterFreq, 0.3f }, { paramOsc1Wave, 1.0f } };
    const Steps rows[] = {
        { { paramLfoBmpSync, 0.0f }, { paramLfoBmpSync, 1.0f }, { paramLfoRate, 0.9f } }, // sees the sync on
        { { paramGlideMono, 0.5f }, { paramVoices, 0.1f }, { paramGlideMono, 0.0f } },
        { { paramVolType, 0.0f }, { paramVolType, 1.0f }, { paramVolType, 0.5f } }, // the last says nothing
        { { paramFilterType, 1.0f }, { program, 60 }, { paramFilterType, 0.0f }, { program, 0 } },
        { { program, 85 }, { paramVolume, 0.25f }, { program, 12 }, { program, 85 }, { paramNoise, 0.5f } },
    };
    for (const Steps& row : rows)
    {
        Steps steps = base;
        steps.insert (steps.end (), row.begin (), row.end ());
        const std::vector<float> expected = soundAfter (steps, true);
        EXPECT_EQ (soundAfter (steps, false), expected);
        EXPECT_GT (peakOf (expected), 0.0f);
        Steps reversed = base;
        reversed.insert (reversed.end (), row.rbegin (), row.rend ());
        EXPECT_NE (soundAfter (reversed, true), expected) << "the order is heard";
    }
}

TEST_F (ChangesTest, ComeInTheOrderOfSeveralThreads)
{
    TestInstrument synth (system);
    Steps steps;
    for (int n = 0; n < 60; ++n)
        steps.emplace_back (n % 7 == 6   ? program
                            : n % 3 == 0 ? paramVolType
                                         : n % 26,
                            n % 7 == 6 ? static_cast<float> (n) : static_cast<float> (n % 5) / 4.0f);
    for (const auto& [index, value] : steps)
        elsewhere ([&, index = index, value = value] { take (synth, index, value); });
    EXPECT_EQ (sound (synth), soundAfter (steps, true));
}

// What a queue cannot hold is taken from the store, and no key stays down.
TEST_F (ChangesTest, MoreThanTheQueueHoldsLoseNothing)
{
    TestInstrument synth (system);
    TestInstrument calm (system);
    synth.set (commandKeyboard, 0.5f);
    synth.block (64);
    calm.block (64);
    synth.core.setProgram (45);
    for (int n = 0; n < 600; ++n)
        synth.set (n % 25, static_cast<float> (n % 41) / 40.0f);
    synth.set (paramVoices, 0.3f);
    synth.told.clear ();
    calm.core.setProgram (45);
    for (std::int32_t index = 0; index < parameterCount; ++index)
        calm.set (index, synth.get (index));
    calm.block (1);
    synth.block (1);
    EXPECT_EQ (std::count (synth.told.begin (), synth.told.end (), std::pair (50 + 1, 0.5f)), 1)
        << "key released";
    synth.block (44100 * 10); // until its tail has ended
    EXPECT_EQ (peakOf (synth.block (64)), 0.0f);
    EXPECT_NEAR (levelOf (sound (synth)) / levelOf (sound (calm)), 1.0, 0.05);
    synth.set (paramVolume, 0.0f); // and the queue works on
    EXPECT_EQ (peakOf (synth.block (64)), 0.0f);
}

// A value goes to the program that was current when it was set: here another thread sets one in the middle of
// a block whose next event selects another program. The sound of that goes on.
TEST_F (ChangesTest, OfAProgramThatIsNotPlayedIsStoredThere)
{
    TestInstrument synth (system);
    synth.learn (paramNonUsed, 74);
    synth.core.setProgram (5);
    synth.block (16);
    synth.whenTold = [&] (std::int32_t index)
    {
        if (index == paramNonUsed)
            elsewhere ([&] { synth.core.setParameter (paramGlideMono, 0.5f); });
        synth.whenTold = nullptr;
    };
    synth.block (64, { midi (5, 0xB0, 74, 9), midi (20, 0xC0, 60, 0), noteOn (30) });
    EXPECT_EQ (synth.bank ().programs[5].values[paramGlideMono], 0.5f);
    EXPECT_EQ (synth.get (paramGlideMono), 0.0f);
    synth.told.clear ();
    EXPECT_GT (peakOf (synth.block (2000)), 0.0f);
    EXPECT_TRUE (synth.told.empty ()) << "no voice mode changed";
}

TEST_F (ChangesTest, OfTheAudioThreadActAtOnceAtTheirSampleAndOutliveOlderOnes)
{
    const Event timed = parameterAt (301, paramOsc1Wave, 1.0); // from the saw to the pulse
    for (const Event& event : { timed, midi (301, 0xB0, 74, 127), midi (301, 0xC0, 60, 0) })
    {
        std::vector<std::vector<float>> sounds;
        for (const bool acts : { false, true })
        {
            TestInstrument synth (system);
            synth.learn (paramOsc1Wave, 74, 64);
            std::vector<Event> events = { noteOn (1) };
            if (acts)
                events.push_back (event);
            sounds.push_back (synth.block (500, events));
        }
        const auto differ = std::mismatch (sounds[0].begin (), sounds[0].end (), sounds[1].begin ());
        EXPECT_EQ (differ.first - sounds[0].begin (), 300) << static_cast<int> (event.status);
    }

    // While the block sounds another thread sets the value, and then the controller does.
    TestInstrument synth (system);
    TestInstrument calm (system);
    for (TestInstrument* side : { &synth, &calm })
        side->learn (paramOsc1Vol, 74);
    synth.whenTold = [&] (std::int32_t)
    {
        synth.whenTold = nullptr;
        elsewhere ([&] { synth.set (paramOsc1Vol, 0.2f); });
    };
    for (TestInstrument* side : { &synth, &calm })
        side->block (64, { midi (5, 0xB0, 74, 1), midi (20, 0xB0, 74, 127) });
    EXPECT_EQ (synth.get (paramOsc1Vol), 1.0f);
    EXPECT_EQ (sound (synth), sound (calm));
}

TEST_F (ChangesTest, AreSeenInAnInstanceThatNeverRenders)
{
    TestInstrument synth (system);
    synth.set (paramVolume, 0.25f);
    synth.set (paramVoices, 0.5f);
    synth.set (paramVoices, 0.5f); // says nothing new
    synth.set (commandRemoveAbout, 0.0f);
    EXPECT_EQ (synth.told,
               (TestInstrument::News{ { paramVolume, 0.25f }, { paramVoices, 0.5f }, { 44, 0.0f } }));
    synth.told.clear ();
    synth.core.setProgram (60);
    EXPECT_EQ (synth.marks, 1);
    ASSERT_EQ (synth.told.size (), 37u) << "all but Voices, which is as before";
    for (const auto& [index, value] : synth.told)
        EXPECT_EQ (value, synth.get (index)) << index;
}

TEST_F (ChangesTest, KeysAreToldToTheEditor)
{
    TestInstrument synth (system);
    synth.block (16, { noteOn (1, 60), noteOn (2, 64), noteOff (3, 60), midi (4, 0xB0, 123, 0) });
    EXPECT_EQ (synth.told, (TestInstrument::News{
                               { 50, 60 / 128.0f }, { 50, 0.5f }, { 51, 60 / 128.0f }, { 52, 1.0f } }));
    synth.told.clear ();
    synth.set (commandKeyboard, 67 / 128.0f);
    synth.set (commandKeyboard, -1.0f);
    EXPECT_EQ (synth.told, (TestInstrument::News{ { 49, 67 / 128.0f }, { 49, -1.0f } }));
    synth.told.clear ();
    EXPECT_GT (peakOf (synth.block (64)), 0.0f);
    EXPECT_EQ (synth.told, (TestInstrument::News{ { 51, 0.0f }, { 50, 67 / 128.0f }, { 51, 67 / 128.0f } }));
    synth.told.clear ();
    synth.set (paramGlideMono, 0.5f);
    synth.block (1);
    EXPECT_EQ (synth.told, (TestInstrument::News{ { paramGlideMono, 0.5f }, { 52, 1.0f } }));
}

TEST_F (ChangesTest, TheSampleRateAndTheFiltersFollow)
{
    const auto start = [this] (const std::function<void (TestInstrument&)>& prepare)
    {
        TestInstrument synth (system);
        prepare (synth);
        return sound (synth);
    };
    const std::vector<float> plain = start ([] (TestInstrument&) {});
    EXPECT_NE (start ([] (TestInstrument& synth) { synth.core.setSampleRate (96000.0f); }), plain);
    EXPECT_NE (start ([] (TestInstrument& synth) { synth.core.refreshVoiceFilters (); }), plain);
    for (const float hz : { 0.0f, -44100.0f, 999.0f, 1000001.0f, std::nanf (""), HUGE_VALF })
        EXPECT_EQ (start ([hz] (TestInstrument& synth) { synth.core.setSampleRate (hz); }), plain) << hz;
    for (const float hz : { 1000.0f, 1000000.0f })
        EXPECT_NE (start ([hz] (TestInstrument& synth) { synth.core.setSampleRate (hz); }), plain) << hz;
}
