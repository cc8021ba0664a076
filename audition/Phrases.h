// What each kind of sound is auditioned with.
#pragma once

#include "examples/Piece.h"
#include "resources/bank/BankSource.h"

namespace audition
{
// The bars before the music: a chord that brings every voice's filter to the program's settings, as
// playing does, and the silence after it. Skip so much of the audio.
inline constexpr double warmUpSeconds = 8.0;

inline constexpr double heldSeconds = 4.0; // how long the measured note and chord are held

// One note (basses an octave lower than the others), velocity 100, held.
examples::Piece heldNote (const bank::SourceProgram& program);

// A four-note chord on the same key, held.
examples::Piece heldChord (const bank::SourceProgram& program);

// A few bars that suit the kind: a bass line, a lead line, chords, a held note.
examples::Piece phrase (const bank::SourceProgram& program);
}
