#include "formats/dpf/BlockEvents.h"

#include <algorithm>
#include <span>
#include <tuple>

namespace dpf
{
namespace
{
constexpr std::int32_t noIndex = -1;
constexpr std::uint8_t firstController = 0xB0; // the messages of notes lie below
}

void BlockEvents::addMidi (std::int32_t offset, std::uint8_t status, std::uint8_t data1, std::uint8_t data2)
{
    add ({ offset, count, noIndex, 0.0f, status, data1, data2 });
}

void BlockEvents::addValue (std::int32_t offset, std::int32_t index, float shown)
{
    add ({ offset, count, index, shown, 0, 0, 0 });
}

void BlockEvents::add (Held event)
{
    if (static_cast<std::size_t> (count) == held.size ())
        return;
    held[static_cast<std::size_t> (count)] = event;
    ++count;
}

int BlockEvents::rank (const Held& event)
{
    if (event.index != noIndex)
        return 0;
    return event.status >= firstController ? 1 : 2;
}

// Not a stable sort: that would allocate.
void BlockEvents::sortFor (std::int32_t frames)
{
    const std::span gathered (held.data (), static_cast<std::size_t> (count));
    for (Held& event : gathered)
        event.offset = std::clamp (event.offset, 0, std::max (frames - 1, 0));
    std::ranges::sort (gathered, {},
                       [] (const Held& event)
                       { return std::tuple (event.offset, rank (event), event.arrival); });
}

engine::Event BlockEvents::at (std::int32_t n) const
{
    const Held& found = held[static_cast<std::size_t> (n)];
    if (found.index != noIndex)
        return synth.eventFor (found.offset, found.index, static_cast<double> (found.shown));
    engine::Event event;
    event.offset = found.offset;
    event.kind = engine::Event::Kind::midi;
    event.status = found.status;
    event.data1 = found.data1;
    event.data2 = found.data2;
    return event;
}
}
