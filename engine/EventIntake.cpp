#include "engine/EventIntake.h"

#include <algorithm>

namespace engine
{
void EventIntake::take (const EventList* list)
{
    events = list;
    next = 0;
}

std::optional<Event> EventIntake::nextDue (std::int32_t n)
{
    while (isPending ())
    {
        const Event event = events->at (next);
        if (event.offset != 0 && event.offset != n)
            return std::nullopt;
        if (event.kind != Event::Kind::foreign)
        {
            ++next;
            return event;
        }
        // The event behind a foreign one is skipped unseen: a note right after a system exclusive message
        // does not sound.
        next += 2;
    }
    return std::nullopt;
}

std::int32_t EventIntake::samplesToNext (std::int32_t done, std::int32_t most) const
{
    if (!isPending ())
        return most;
    const std::int32_t offset = events->at (next).offset;
    return offset > done + 1 ? std::min (most, offset - 1 - done) : most;
}
}
