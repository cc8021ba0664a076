// The example pieces. Sections change the program in a rest, when the sound before has died away.
#pragma once

#include "examples/Piece.h"

namespace examples
{
Piece demo ();          // half a minute through several sounds
Piece lowRoads ();      // bass-driven
Piece harbourLights (); // pads and lead
Piece nightTrain ();    // tempo-synced sequences

std::vector<Piece> allPieces ();
}
