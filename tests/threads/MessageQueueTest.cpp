#include "instrument/MessageQueue.h"

#include <gtest/gtest.h>

#include <array>
#include <atomic>
#include <cstdint>
#include <thread>
#include <vector>

using instrument::MessageQueue;

// Round and round through few places, so that they are full and empty again and again: what arrives of each
// sender arrives whole, once and in its order, and what is missing was told.
TEST (MessageQueue, KeepsEachSendersOrderAndTellsWhatDidNotFit)
{
    constexpr std::uint32_t senders = 3;
    constexpr std::uint32_t perSender = 100'000;
    struct Message
    {
        std::uint32_t sender, number, check;
    };
    MessageQueue<Message, 8> queue;
    std::atomic<std::uint32_t> sending = senders;
    std::vector<std::thread> threads;
    for (std::uint32_t sender = 0; sender < senders; ++sender)
        threads.emplace_back (
            [&, sender]
            {
                for (std::uint32_t number = 1; number <= perSender; ++number)
                    queue.send ({ sender, number, ~number });
                --sending;
            });

    std::array<std::uint32_t, senders> last = {};
    std::uint32_t taken = 0;
    bool toldOfLoss = false;
    for (bool more = true; more;)
    {
        more = sending > 0; // so that the last look comes after the last message
        for (Message message; queue.next (message); ++taken)
        {
            ASSERT_LT (message.sender, senders);
            ASSERT_EQ (message.check, ~message.number);
            ASSERT_GT (message.number, last[message.sender]);
            last[message.sender] = message.number;
        }
        toldOfLoss |= queue.takeOverflow ();
    }
    for (std::thread& thread : threads)
        thread.join ();
    EXPECT_GT (taken, 0u);
    EXPECT_EQ (toldOfLoss, taken < senders * perSender);
}

// A place is free again as soon as its message was taken.
TEST (MessageQueue, HoldsAsManyAsItHasPlacesOverAndOver)
{
    MessageQueue<int, 4> queue;
    int message = 0;
    for (int round = 0; round < 3; ++round)
    {
        for (int n = 0; n < 4; ++n)
            queue.send (n);
        EXPECT_FALSE (queue.takeOverflow ());
        queue.send (4);
        EXPECT_TRUE (queue.takeOverflow ());
        EXPECT_FALSE (queue.takeOverflow ());
        for (int n = 0; n < 4; ++n)
        {
            ASSERT_TRUE (queue.next (message));
            EXPECT_EQ (message, n);
        }
        EXPECT_FALSE (queue.next (message));
    }
}
