#pragma once

#include <array>
#include <atomic>
#include <boost/lockfree/queue.hpp>
#include <cstdint>

namespace player
{
using ShortMessage = std::array<std::uint8_t, 3>; // of MIDI; unused bytes are 0

// Carries what is played by hand to the audio thread, from any number of threads. A fixed number of places,
// no lock, no allocation. What does not fit is lost, and `takeOverflow` tells, for a key might have been let
// go.
class LiveEvents
{
public:
    // Any thread.
    void send (const ShortMessage& message)
    {
        if (!messages.bounded_push (message))
            overflowed.store (true, std::memory_order_release);
    }

    // Audio thread: the next message; false when there is none.
    bool next (ShortMessage& message) { return messages.pop (message); }

    // Audio thread: whether something was lost since the last call.
    bool takeOverflow ()
    {
        return overflowed.load (std::memory_order_relaxed) &&
               overflowed.exchange (false, std::memory_order_acquire);
    }

    static constexpr std::size_t capacity = 512;

private:
    boost::lockfree::queue<ShortMessage, boost::lockfree::capacity<capacity>> messages;
    std::atomic<bool> overflowed = false;
};
}
