#pragma once

#include <optional>

#include "engine/Event.h"

namespace engine
{
// The events of the block that is being rendered, handed out when their sample comes. Audio thread.
class EventIntake
{
public:
    // The list is read in place and must outlive the block. Null: none.
    void take (const EventList* list);
    void clear () { take (nullptr); }

    // The next event that is due at the n-th sample of the block, counted from 1: an event sounds one sample
    // ahead of its offset, and offsets 0 and 1 both from the first sample, so that a note on the first sample
    // is not late. An event whose offset lies behind stalls the list until the block ends.
    std::optional<Event> nextDue (std::int32_t n);

    // How many samples after the first `done` no event interrupts, `most` at the most.
    std::int32_t samplesToNext (std::int32_t done, std::int32_t most) const;

private:
    friend class EngineProbe; // the tests' sample-by-sample renderer works on the same state

    bool isPending () const { return events != nullptr && next < events->size (); }

    const EventList* events = nullptr;
    std::int32_t next = 0;
};
}
