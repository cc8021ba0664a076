#pragma once

#include <array>
#include <atomic>
#include <bit>
#include <cstdint>

namespace instrument
{
// Carries messages to the audio thread, in the order in which they were sent, from any number of threads. A
// fixed number of places, no lock, no allocation; neither side ever waits for the other. What does not fit is
// not sent, and `takeOverflow` tells. A sender that is interrupted in the middle holds back what came after
// it until it goes on; the audio thread then takes that at a later block.
//
// The scheme: D. Vyukov, "Bounded MPMC queue", 2010, with one receiver. Boost's queue would do the same, but
// one of its threads reads a place while another writes it (and throws the reading away): a race, which the
// thread sanitizer reports.
template <typename Message, std::uint32_t capacityInMessages>
class MessageQueue
{
public:
    static constexpr std::uint32_t capacity = capacityInMessages;

    MessageQueue ()
    {
        for (std::uint32_t n = 0; n < capacity; ++n)
            places[n].turn.store (n, std::memory_order_relaxed);
    }

    // Any thread.
    void send (const Message& message)
    {
        std::uint32_t ticket = nextTicket.load (std::memory_order_relaxed);
        while (true)
        {
            Place& place = places[ticket % capacity];
            const std::uint32_t turn = place.turn.load (std::memory_order_acquire);
            const auto ahead = static_cast<std::int32_t> (turn - ticket);
            if (ahead == 0)
            {
                // A failed exchange has fetched the ticket of now.
                if (nextTicket.compare_exchange_weak (ticket, ticket + 1, std::memory_order_relaxed))
                {
                    place.message = message;
                    place.turn.store (ticket + 1, std::memory_order_release);
                    return;
                }
            }
            else if (ahead < 0)
            {
                // The message of a whole round before is still here, or only on its way in.
                overflowed.store (true, std::memory_order_release);
                return;
            }
            else
            {
                ticket = nextTicket.load (std::memory_order_relaxed);
            }
        }
    }

    // Audio thread: the next message; false when there is none.
    bool next (Message& message)
    {
        Place& place = places[nextTaken % capacity];
        if (place.turn.load (std::memory_order_acquire) != nextTaken + 1)
            return false;
        message = place.message;
        place.turn.store (nextTaken + capacity, std::memory_order_release);
        ++nextTaken;
        return true;
    }

    // Audio thread: whether something did not fit since the last call.
    bool takeOverflow ()
    {
        return overflowed.load (std::memory_order_relaxed) &&
               overflowed.exchange (false, std::memory_order_acquire);
    }

private:
    static_assert (std::has_single_bit (capacity), "tickets must stay in step when they wrap");

    // Whose turn it is: the sender's with this ticket, or, one higher, the receiver's.
    struct Place
    {
        std::atomic<std::uint32_t> turn;
        Message message;
    };
    std::array<Place, capacity> places;
    std::atomic<std::uint32_t> nextTicket = 0;
    std::uint32_t nextTaken = 0; // the audio thread's
    std::atomic<bool> overflowed = false;
};
}
