#include "engine/VoiceAllocator.h"

#include <array>
#include <vector>

#include <gtest/gtest.h>

using namespace engine;

namespace
{
constexpr int noSlot = VoiceAllocator::noSlot;

bool never (int /*slot*/)
{
    return false;
}
bool always (int /*slot*/)
{
    return true;
}

VoiceAllocator allocatorOf (int voices)
{
    VoiceAllocator allocator;
    allocator.setVoiceLimit (voices);
    return allocator;
}
}

TEST (VoiceAllocatorTest, TakesTheFirstIdleSlotAndReusesAHeldKey)
{
    VoiceAllocator a = allocatorOf (4);
    std::array<bool, 4> idle = { true, true, true, true };
    const auto isIdle = [&idle] (int slot) { return idle[static_cast<std::size_t> (slot)]; };
    EXPECT_EQ (a.allocate (60, 100, isIdle), 0);
    idle[0] = false;
    EXPECT_EQ (a.allocate (64, 90, isIdle), 1);
    idle[1] = false;
    EXPECT_EQ (a.allocate (60, 20, isIdle), 0);
    EXPECT_EQ (a.velocityOf (0), 100u); // keeps what it was first struck with
    EXPECT_EQ (a.release (60), 0);
    EXPECT_FALSE (a.contains (60));
    EXPECT_TRUE (a.contains (64));
    EXPECT_EQ (a.allocate (67, 80, isIdle), 2); // slot 0 still rings
    idle[0] = true;
    EXPECT_EQ (a.allocate (60, 30, isIdle), 0);
    EXPECT_EQ (a.velocityOf (0), 30u);
}

// The candidate is a stamp at first and a slot number later, and both are compared with stamps. The expected
// slots are worked out by hand.
TEST (VoiceAllocatorTest, StealsByItsRule)
{
    struct Row
    {
        const char* what;
        int voices;
        std::vector<int> released; // keys of the full chord (60, 61, ...) let go again before the next notes
        std::vector<int> stolen;   // slots that the next notes get
    };
    const Row rows[] = {
        // Stamps after the chord: 2^32-1, 0, 1, 2. Slot 1 is the first one below slot 0's, and from then on
        // stamps are compared with its number, 1. Its own next stamps never reach 2^32-1.
        { "two voices, full chord", 2, {}, { 1, 1, 1 } },
        { "four voices, full chord", 4, {}, { 1, 1, 1 } },
        // With keys up the last free slot wins, but the new note counts as active already: the last slot
        // that is free is not found any more.
        { "one released", 4, { 60 }, { 1 } },
        { "two released", 4, { 60, 62 }, { 2, 1 } },
        { "three released", 4, { 60, 61, 63 }, { 3, 1, 1 } },
        { "all released", 4, { 60, 61, 62, 63 }, { 3, 2, 1, 1 } },
    };
    for (const Row& row : rows)
    {
        VoiceAllocator a = allocatorOf (row.voices);
        for (int key = 0; key < row.voices; ++key)
            a.allocate (static_cast<std::uint32_t> (60 + key), 100, [key] (int slot) { return slot >= key; });
        for (const int key : row.released)
            a.release (static_cast<std::uint32_t> (key));
        std::vector<int> stolen;
        for (std::size_t n = 0; n < row.stolen.size (); ++n)
            stolen.push_back (a.allocate (static_cast<std::uint32_t> (80 + n), 100, never));
        EXPECT_EQ (stolen, row.stolen) << row.what;
    }
}

TEST (VoiceAllocatorTest, NoteZeroCannotBeToldFromAFreeSlot)
{
    VoiceAllocator a = allocatorOf (4);
    EXPECT_TRUE (a.contains (0));
    EXPECT_EQ (a.allocate (60, 100, always), 0);
    EXPECT_EQ (a.allocate (0, 77, never), 1); // the first free one, taken without being entered
    EXPECT_EQ (a.velocityOf (1), 0u);
    EXPECT_EQ (a.release (0), 1);
    EXPECT_TRUE (a.contains (60));

    VoiceAllocator mono = allocatorOf (1);
    mono.allocate (60, 100, always);
    mono.allocate (64, 100, always);
    EXPECT_TRUE (mono.contains (0)); // the entry above the stack is looked at, too
    mono.release (0);                // takes the newest key with it
    EXPECT_EQ (mono.currentNote (), 60u);
}

TEST (VoiceAllocatorTest, MonoIsAStackOfHeldKeys)
{
    VoiceAllocator a = allocatorOf (1);
    EXPECT_EQ (a.allocate (60, 100, never), 0); // the only key
    EXPECT_EQ (a.allocate (64, 90, never), noSlot);
    EXPECT_EQ (a.allocate (67, 80, never), noSlot);
    EXPECT_EQ (a.currentNote (), 67u);
    EXPECT_EQ (a.release (64), noSlot); // from the middle
    EXPECT_EQ (a.currentNote (), 67u);
    EXPECT_FALSE (a.contains (64));
    EXPECT_EQ (a.release (67), noSlot);
    EXPECT_EQ (a.currentNote (), 60u);
    EXPECT_EQ (a.release (60), 0);
    EXPECT_EQ (a.currentNote (), 60u); // the releasing voice keeps its pitch
    EXPECT_EQ (a.allocate (50, 70, never), 0);

    VoiceAllocator full = allocatorOf (1); // 128 keys, one more overwrites the top
    for (std::uint32_t n = 0; n < 300; ++n)
        full.allocate (n % 128u, 100, never);
    EXPECT_EQ (full.currentNote (), 299u % 128u);
    int released = 0;
    while (released < 1000 && full.release (static_cast<std::uint32_t> (released) % 128u) == noSlot)
        ++released;
    EXPECT_EQ (released, 127);
}

TEST (VoiceAllocatorTest, ForgetsOnResetAndOnANewLimit)
{
    VoiceAllocator a = allocatorOf (4);
    a.allocate (60, 100, always);
    a.setVoiceLimit (4);
    EXPECT_TRUE (a.contains (60));
    a.setVoiceLimit (6);
    EXPECT_FALSE (a.contains (60));
    a.allocate (60, 100, always);
    a.reset ();
    EXPECT_FALSE (a.contains (60));
    EXPECT_EQ (a.voiceLimit (), 6);
    a.setVoiceLimit (-3);
    EXPECT_EQ (a.voiceLimit (), 1);
}
