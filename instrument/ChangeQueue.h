#pragma once

#include <atomic>
#include <boost/lockfree/queue.hpp>
#include <cstdint>

#include "engine/ParameterMapping.h"

namespace instrument
{
// Something that another thread wants of the engine.
struct Change
{
    enum class Kind : std::uint8_t
    {
        parameter,
        selection,
        keyboard,
        refreshFilters
    };

    Kind kind = Kind::parameter;
    std::int32_t index = 0;              // parameter
    std::int32_t program = 0;            // whose value changes, -1: of all; or the one selected
    std::uint64_t unclamped = 0;         // bit n: the store rule does not limit parameter n
    float value = 0.0f;                  // as sent; the keyboard's too
    engine::ParameterValues values = {}; // of a selection
};

// Carries changes to the audio thread, in the order in which they were sent, from any number of threads. A
// fixed number of places, no lock, no allocation. What does not fit is not sent, and `takeOverflow` tells.
class ChangeQueue
{
public:
    // Any thread.
    void send (const Change& change)
    {
        if (!changes.bounded_push (change))
            overflowed.store (true, std::memory_order_release);
    }

    // Audio thread: the next change; false when there is none.
    bool next (Change& change) { return changes.pop (change); }

    // Audio thread: whether something did not fit since the last call.
    bool takeOverflow ()
    {
        return overflowed.load (std::memory_order_relaxed) &&
               overflowed.exchange (false, std::memory_order_acquire);
    }

    // More than hosts and hands send between two blocks.
    static constexpr int capacity = 512;

private:
    boost::lockfree::queue<Change, boost::lockfree::capacity<capacity>> changes;
    std::atomic<bool> overflowed = false;
};
}
