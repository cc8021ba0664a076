// What each kind of sound is auditioned with.
#pragma once

#include "tools/makeBank/BankSource.h"
#include "tools/makeDemos/Piece.h"

namespace audition
{
// The bars before the music: a chord that brings every voice's filter to the program's settings, as
// playing does, and the silence after it. Skip so much of the audio.
inline constexpr double warmUpSeconds = 8.0;

inline constexpr double heldSeconds = 4.0; // how long the measured note and chord are held

// One note (basses an octave lower than the others), velocity 100, held.
makeDemos::Piece heldNote (const makeBank::SourceProgram& program);

// A four-note chord on the same key, held.
makeDemos::Piece heldChord (const makeBank::SourceProgram& program);

// A few bars that suit the kind: a bass line, a lead line, chords, a held note.
makeDemos::Piece phrase (const makeBank::SourceProgram& program);
}
