// What each kind of sound is auditioned with.
#pragma once

#include "examples/Piece.h"
#include "resources/bank/BankSource.h"

namespace audition
{
// A few bars that suit the kind: a bass line, a lead line, chords, a held note.
examples::Piece phrase (const bank::SourceProgram& program);
}
