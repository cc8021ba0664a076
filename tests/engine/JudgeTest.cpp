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
    Duel (unsigned seed, float rate) : fast (rate), literal (rate), random (seed)
    {
        fast.programs = literal.programs = factoryPrograms ();
    }

    template <typename Work>
    void both (Work work)
    {
        work (fast);
        work (literal);
    }

    int below (int end) { return static_cast<int> (random () % static_cast<unsigned> (end)); }
    float unit () { return static_cast<float> (random () % 10001u) / 10000.0f; }

    // A value that a knob may take, often one of its ends or a position of a switch.
    float knob () { return below (3) == 0 ? static_cast<float> (below (5)) / 4.0f : unit (); }

    Event event (int offset)
    {
        const int note = 30 + below (50);
        const int data = below (128);
        switch (below (16))
        {
        case 0:
            return midi (offset, 0xE0, note, data);
        case 1:
            return midi (offset, 0xC0, data, 0);
        case 2:
            return midi (offset, 0xB0, 11, data);
        case 3:
            return midi (offset, 0xB0, below (4) == 0 ? 123 : 1, data);
        case 4:
            return { offset };
        case 5:
            return noteOn (offset, below (4), data);
        default:
            return below (2) == 0 ? noteOff (offset, note) : noteOn (offset, note, data);
        }
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

class JudgeTest : public testing::TestWithParam<int>
{
};
}

TEST_P (JudgeTest, RunsEqualTheLoopSampleBySample)
{
    constexpr float rates[] = { 44100.0f, 48000.0f, 22050.0f, 96000.0f, 11025.0f, 192000.0f };
    const auto seed = static_cast<unsigned> (GetParam ());
    Duel duel (seed, rates[seed % std::size (rates)]);
    duel.both (
        [seed] (TestEngine& side)
        {
            side.load (side.programs[(seed * 37u) % side.programs.size ()]);
            side.hasTime = true;
            side.time = { 0.0, 60.0 + seed, 0.0 };
        });
    for (int block = 0; block < 60; ++block)
    {
        const int frames = duel.below (5) == 0 ? 1 + duel.below (8) : 1 + duel.below (700);
        for (int change = duel.below (4) == 0 ? duel.below (10) : 0; change > 0; --change)
        {
            const int index = duel.below (parameterCount);
            const float value = duel.knob ();
            duel.both ([&] (TestEngine& side) { side.set (index, value); });
        }
        const float key = duel.unit ();
        if (duel.below (30) == 0)
            duel.both ([&] (TestEngine& side) { side.engine.playKeyboard (key); });
        if (duel.below (40) == 0)
            duel.fast.rate = duel.literal.rate = rates[duel.below (6)];
        const std::vector<Event> events = duel.events (frames, duel.below (7));
        ASSERT_EQ (duel.differsAt (frames, events), -1) << "block " << block << " of " << frames << " frames";
        if (duel.below (4) == 0)
            continue; // the song stands
        duel.both (
            [frames] (TestEngine& side)
            {
                side.time.samplePosition += frames;
                *side.time.quarterPosition +=
                    frames * *side.time.tempo / 60.0 / static_cast<double> (side.rate);
            });
    }
    EXPECT_GT (duel.heard, 0.0f);
}

INSTANTIATE_TEST_SUITE_P (Seeds, JudgeTest, testing::Range (1, 61));

TEST (JudgeTest, EveryFactoryProgramEqualsTheLoop)
{
    Duel duel (1, 44100.0f);
    for (std::size_t program = 0; program < duel.fast.programs.size (); ++program)
    {
        duel.both ([program] (TestEngine& side) { side.load (side.programs[program]); });
        const std::vector<Event> events = {
            noteOn (1, 48),          noteOn (30, 55, 70),   noteOn (99, 60, 120),      noteOff (700, 48),
            midi (901, 0xE0, 0, 80), noteOn (1200, 64, 90), midi (1500, 0xB0, 123, 0), noteOn (1900, 36, 127)
        };
        ASSERT_EQ (duel.differsAt (2500, events), -1) << "program " << program;
    }
}
