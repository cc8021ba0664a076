#include "engine/EventIntake.h"

#include <algorithm>

namespace engine
{
namespace
{
bool isProgramChange (const Event& event)
{
    constexpr unsigned statusProgramChange = 0xC0;
    return event.kind == Event::Kind::midi && (event.status & 0xF0u) == statusProgramChange;
}
}

void EventIntake::take (const EventList* list)
{
    events = list;
    next = 0;
    dueEnd = 0;
    programsFirst = false;
}

bool EventIntake::isDue (std::int32_t index, std::int32_t n) const
{
    if (events == nullptr || index >= events->size ())
        return false;
    const std::int32_t offset = events->at (index).offset;
    return offset == 0 || offset <= n;
}

bool EventIntake::hasParameterAmong (std::int32_t first, std::int32_t end) const
{
    for (std::int32_t index = first; index < end; ++index)
    {
        if (events->at (index).kind == Event::Kind::parameter)
            return true;
    }
    return false;
}

std::optional<Event> EventIntake::nextProgramChange ()
{
    while (programScan < dueEnd)
    {
        const Event event = events->at (programScan++);
        if (isProgramChange (event))
            return event;
    }
    return std::nullopt;
}

// Finds the events that are due together.
void EventIntake::gather (std::int32_t n)
{
    dueEnd = next + 1;
    while (isDue (dueEnd, n))
        ++dueEnd;
    programScan = next;
    programsFirst = hasParameterAmong (next, dueEnd);
}

std::optional<Event> EventIntake::nextDue (std::int32_t n)
{
    while (next < dueEnd || isDue (next, n))
    {
        if (next >= dueEnd)
            gather (n);
        if (programsFirst)
        {
            if (const auto change = nextProgramChange ())
                return change;
        }
        const Event event = events->at (next);
        // The event behind a foreign one is skipped unseen: a note right after a system exclusive message
        // does not sound.
        next += event.kind == Event::Kind::foreign ? 2 : 1;
        const bool wasFirst = programsFirst && isProgramChange (event);
        if ((event.kind == Event::Kind::midi || event.kind == Event::Kind::parameter) && !wasFirst)
            return event;
    }
    return std::nullopt;
}

std::int32_t EventIntake::samplesToNext (std::int32_t done, std::int32_t most) const
{
    if (events == nullptr || next >= events->size ())
        return most;
    const std::int32_t offset = events->at (next).offset;
    return offset > done + 1 ? std::min (most, offset - 1 - done) : most;
}
}
