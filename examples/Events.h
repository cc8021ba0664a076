// The MIDI messages of a piece, in playing order.
#pragma once

#include "examples/Piece.h"

#include <string>
#include <vector>

namespace examples
{
inline constexpr int ticksPerQuarter = 480;

// Within one tick notes end first, then programs and controllers change, then notes begin.
enum class Rank
{
    noteEnd,
    change,
    noteStart,
};

struct Event
{
    int tick;
    Rank rank;
    std::vector<unsigned char> message;
};

// Sorted by tick and rank. `programNames` are the bank's, in order; a piece that asks for another name throws
// std::invalid_argument.
std::vector<Event> eventsOf (const Piece& piece, const std::vector<std::string>& programNames);
}
