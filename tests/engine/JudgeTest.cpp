// The renderer works run by run and stage by stage. It must give exactly the samples of a loop that does
// everything sample by sample, whatever is played and turned.
#include <algorithm>
#include <random>

#include <gtest/gtest.h>

#include "tests/engine/EngineProbe.h"
#include "tests/engine/TestEngine.h"

using namespace engine;
using namespace parameters;

namespace
{
// Two engines that are told the same things.
class Duel
{
public:
    Duel (const VoiceKernel& kernel, unsigned seed, float rate)
        : fast (rate, recordedWaves (), kernel),
          literal (rate),
          random (seed)
    {
        fast.programs = literal.programs = factoryPrograms ();
    }

    void set (int index, float value)
    {
        fast.set (index, value);
        literal.set (index, value);
    }

    void playKeyboard (float value)
    {
        fast.engine.playKeyboard (value);
        literal.engine.playKeyboard (value);
    }

    void load (const TestEngine::Program& program)
    {
        fast.load (program);
        literal.load (program);
    }

    int below (int end) { return static_cast<int> (random () % static_cast<unsigned> (end)); }
    float unit () { return static_cast<float> (random () % 10001u) / 10000.0f; }

    // A value that a knob may take, often one of its ends or a position of a switch.
    float knob () { return below (3) == 0 ? static_cast<float> (below (5)) / 4.0f : unit (); }

    Event event (int offset)
    {
        const int note = 30 + below (50);
        const int data = below (128);
        const int kind = below (16);
        if (kind > 5)
            return midi (offset, kind <= 10 ? 0x80 : 0x93, note, data);
        constexpr int controllers[] = { 123, 1, 1, 64, 64, 7, 120, 121, 6 };
        const std::pair<int, int> others[] = {
            { 0xE0, note },      { 0xC0, data },
            { 0xB0, 11 },        { 0xB0, controllers[below (std::size (controllers))] },
            { 0x90, below (4) }, { 0, 0 }
        };
        const auto [status, first] = others[kind];
        return status == 0 ? Event{ offset } : midi (offset, status, first, data); // or a foreign one
    }

    std::vector<Event> events (int frames, int count)
    {
        std::vector<int> offsets;
        for (int n = 0; n < count; ++n)
            offsets.push_back (below (frames + 4) - 2); // some outside the block
        if (below (20) != 0)
            std::sort (offsets.begin (), offsets.end ());
        std::vector<Event> list;
        for (const int offset : offsets)
            list.push_back (event (offset));
        return list;
    }

    void advanceTransport (int frames)
    {
        for (TestEngine* side : { &fast, &literal })
        {
            side->time.samplePosition += frames;
            *side->time.quarterPosition +=
                frames * *side->time.tempo / 60.0 / static_cast<double> (side->rate);
        }
    }

    // One block on both sides; the first sample that differs, or -1.
    int differsAt (int frames, const std::vector<Event>& events)
    {
        const std::vector<float> run = fast.block (frames, events);
        const EventSpan list (events);
        literal.engine.processEvents (&list);
        std::vector<float> left (run.size ());
        std::vector<float> right (run.size ());
        EngineProbe::renderSampleBySample (literal.engine, left.data (), right.data (), frames);
        const auto difference = std::mismatch (run.begin (), run.end (), left.begin ());
        for (const float sample : run)
            heard = std::max (heard, std::abs (sample));
        return difference.first == run.end () ? -1 : static_cast<int> (difference.first - run.begin ());
    }

    TestEngine fast;
    TestEngine literal;
    std::mt19937 random;
    float heard = 0.0f; // largest magnitude so far
};

// Once for each instruction set that this machine has.
class JudgeTest : public testing::TestWithParam<std::size_t>
{
protected:
    void SetUp () override
    {
        if (!kernel.isSupported)
            GTEST_SKIP () << "this machine has no " << kernel.name;
    }

    const VoiceKernel& kernel = voiceKernels ()[GetParam ()];
};

std::string nameOf (const testing::TestParamInfo<std::size_t>& kernel)
{
    return std::string (voiceKernels ()[kernel.param].name);
}
}

INSTANTIATE_TEST_SUITE_P (Kernels, JudgeTest, testing::Range (std::size_t{ 0 }, voiceKernels ().size ()),
                          nameOf);

namespace
{
void playAtRandom (const VoiceKernel& kernel, unsigned seed)
{
    constexpr float rates[] = { 44100.0f, 48000.0f, 22050.0f, 96000.0f, 11025.0f, 192000.0f, 2000.0f };
    Duel duel (kernel, seed, rates[seed % std::size (rates)]);
    duel.load (duel.fast.programs[seed]);
    for (TestEngine* side : { &duel.fast, &duel.literal })
    {
        side->engine.setAdditions ({ seed % 2 == 0, seed % 4 < 2 });
        side->hasTime = true;
        side->time.tempo = 60.0 + seed;
        side->time.quarterPosition = 0.0;
    }

    for (int block = 0; block < 60; ++block)
    {
        const int frames = duel.below (5) == 0 ? 1 + duel.below (8) : 1 + duel.below (700);
        for (int change = duel.below (4) == 0 ? duel.below (10) : 0; change > 0; --change)
            duel.set (duel.below (parameterCount), duel.knob ());
        if (duel.below (30) == 0)
            duel.playKeyboard (duel.unit ());
        if (duel.below (40) == 0)
            duel.fast.rate = duel.literal.rate = rates[duel.below (std::size (rates))];
        const std::vector<Event> events = duel.events (frames, duel.below (7));
        ASSERT_EQ (duel.differsAt (frames, events), -1)
            << "seed " << seed << ", block " << block << " of " << frames << " frames";
        if (duel.below (4) != 0)
            duel.advanceTransport (frames);
    }
    EXPECT_GT (duel.heard, 0.0f);
}
}

TEST_P (JudgeTest, RunsEqualTheLoopFromEveryFactoryProgramOn)
{
    for (unsigned seed = 0; seed < 128 && !HasFatalFailure (); ++seed)
        playAtRandom (kernel, seed);
}

// The LFO stands still from the sample on at which the engine falls asleep, in the middle of a run; the next
// note's vibrato tells where it stood.
TEST_P (JudgeTest, FallingAsleepStopsTheLfoAtItsSample)
{
    Duel duel (kernel, 1, 2000.0f);
    duel.load (plainProgram ());
    duel.set (paramLfoPitch, 1.0f);
    ASSERT_EQ (duel.differsAt (301, { noteOn (1, 60), midi (100, 0x80, 60, 0) }), -1);
    while (!duel.fast.engine.isAsleep ())
        ASSERT_EQ (duel.differsAt (997, {}), -1);
    EXPECT_EQ (duel.differsAt (997, { noteOn (1, 60) }), -1);
}

// A kernel renders whole groups of lanes: what high notes at a low sample rate leave in lanes that no voice
// needs any more must not run out of its table.
TEST_P (JudgeTest, LanesWithoutAVoiceStayInTheirTables)
{
    Duel duel (kernel, 1, 2000.0f);
    duel.load (plainProgram ());
    std::vector<Event> chord;
    for (int note = 112; note < 128; ++note)
        chord.push_back (noteOn (1, note));
    ASSERT_EQ (duel.differsAt (100, chord), -1);
    ASSERT_EQ (duel.differsAt (4000, { midi (0, 0xB0, 123, 0) }), -1);
    duel.fast.rate = duel.literal.rate = 96000.0f;
    ASSERT_EQ (duel.differsAt (20000, { noteOn (1, 40), noteOn (1, 43) }), -1);
}
