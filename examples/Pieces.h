// The example pieces. Each sound has a channel of its own, so that nothing is cut off when the next one
// begins.
#pragma once

#include "examples/Piece.h"

namespace examples
{
Piece demo ();          // a minute and a half: drums, bass, pad, lead, sequence and more together
Piece lowRoads ();      // bass-driven
Piece harbourLights (); // pads and lead
Piece nightTrain ();    // tempo-synced sequences

std::vector<Piece> allPieces ();
}
