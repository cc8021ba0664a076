#include "engine/VoiceAllocator.h"

#include <tuple>
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

// The candidate is a stamp at first and a slot number later, and both are compared with stamps. The expected
// slots are worked out by hand.
TEST (VoiceAllocatorTest, StealsByItsRule)
{
    // voices; keys of the full chord 60, 61, ... that are let go again; slots that the next notes get. Stamps
    // after the chord are 2^32-1, 0, 1, 2: slot 1 is the first below slot 0's, and from then on stamps are
    // compared with its number, 1. With keys up the last free slot wins, but the new note counts as active
    // already, so that the last one that is free is not found any more.
    using Row = std::tuple<int, std::vector<int>, std::vector<int>>;
    for (const auto& [voices, released, stolen] :
         { Row{ 2, {}, { 1, 1, 1 } }, Row{ 4, {}, { 1, 1, 1 } }, Row{ 4, { 60 }, { 1 } },
           Row{ 4, { 60, 62 }, { 2, 1 } }, Row{ 4, { 60, 61, 63 }, { 3, 1, 1 } },
           Row{ 4, { 60, 61, 62, 63 }, { 3, 2, 1, 1 } } })
    {
        VoiceAllocator a = allocatorOf (voices);
        for (int key = 0; key < voices; ++key)
            a.allocate (static_cast<std::uint32_t> (60 + key), 100, [key] (int slot) { return slot >= key; });
        for (const int key : released)
            a.release (static_cast<std::uint32_t> (key));
        for (std::size_t n = 0; n < stolen.size (); ++n)
            EXPECT_EQ (a.allocate (static_cast<std::uint32_t> (80 + n), 100, never), stolen[n])
                << voices << " voices, " << released.size () << " released, note " << n;
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
