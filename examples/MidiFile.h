// Writes a piece as a standard MIDI file.
#pragma once

#include "examples/Piece.h"

#include <string_view>
#include <vector>

namespace examples
{
// The bytes of a format 0 file. `programNames` are the bank's, in order; a piece that asks for another name
// throws std::invalid_argument.
std::vector<unsigned char> midiFile (const Piece& piece, const std::vector<std::string>& programNames);
}
