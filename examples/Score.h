// A piece as the MIDI messages that play it.
#pragma once

#include "examples/Piece.h"
#include "midi/Song.h"

namespace examples
{
// Within one tick notes end first, then programs, controllers and the wheel move, then notes begin.
// `programNames` are the bank's, in order; a piece that asks for another name throws std::invalid_argument.
midi::Song songOf (const Piece& piece, const std::vector<std::string>& programNames);
}
