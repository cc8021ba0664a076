#include "examples/Events.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>

namespace examples
{
namespace
{
int tickOf (double quarters)
{
    return static_cast<int> (std::lround (quarters * ticksPerQuarter));
}

unsigned char byteOf (int value)
{
    return static_cast<unsigned char> (value);
}

int programNumber (const std::vector<std::string>& names, const std::string& name)
{
    const auto found = std::ranges::find (names, name);
    if (found == names.end ())
        throw std::invalid_argument ("the bank has no program \"" + name + "\"");
    return static_cast<int> (found - names.begin ());
}
}

std::vector<Event> eventsOf (const Piece& piece, const std::vector<std::string>& programNames)
{
    std::vector<Event> events;
    for (const Note& note : piece.notes ())
    {
        events.push_back (
            { tickOf (note.start), Rank::noteStart, { 0x90, byteOf (note.key), byteOf (note.velocity) } });
        events.push_back (
            { tickOf (note.start + note.length), Rank::noteEnd, { 0x80, byteOf (note.key), 0 } });
    }
    for (const ProgramChange& change : piece.programChanges ())
        events.push_back ({ tickOf (change.start),
                            Rank::change,
                            { 0xC0, byteOf (programNumber (programNames, change.name)) } });
    for (const Controller& change : piece.controllerChanges ())
        events.push_back (
            { tickOf (change.start), Rank::change, { 0xB0, byteOf (change.number), byteOf (change.value) } });
    std::ranges::stable_sort (events, [] (const Event& a, const Event& b)
                              { return a.tick != b.tick ? a.tick < b.tick : a.rank < b.rank; });
    return events;
}
}
