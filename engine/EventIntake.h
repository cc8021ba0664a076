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
    // is not late. An event that comes late in its list is due at once. Of the events that are due together,
    // program changes come before timed parameter changes: a host that sends a program and its values means
    // the values for that program.
    std::optional<Event> nextDue (std::int32_t n);

    // How many samples after the first `done` no event interrupts, `most` at the most.
    std::int32_t samplesToNext (std::int32_t done, std::int32_t most) const;

private:
    bool isDue (std::int32_t index, std::int32_t n) const;
    bool hasParameterAmong (std::int32_t first, std::int32_t end) const;
    void gather (std::int32_t n);
    std::optional<Event> nextProgramChange ();

    const EventList* events = nullptr;
    std::int32_t next = 0;
    std::int32_t dueEnd = 0;      // one past the events that were found due together
    std::int32_t programScan = 0; // where the search for program changes among them stands
    bool programsFirst = false;   // and are handed out ahead
};
}
