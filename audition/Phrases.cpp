#include "audition/Phrases.h"

namespace audition
{
namespace
{
using bank::Kind;
using examples::Piece;

struct PhraseRow
{
    Kind kind;
    double step; // quarter notes
    const char* words;
};
constexpr PhraseRow phrases[] = {
    { Kind::bass, 0.5, "A1! . A1 A2, G1_ A1 C2! D2 F1! - F1, F2 E2_ F1 . A1 - - - -" },
    { Kind::lead, 0.5, "A4! - C5 E5 D5_ C5 G4 A4 - - E4_ G4 A4! - - - - ." },
    { Kind::pad, 2.0, "A3+C4+E4+B4 - F3+A3+C4+G4 ." },
    { Kind::pluck, 0.25,
      "A3! E4 A4 B4 C5! E4 B4 A4 F3! C4 F4 A4 C5! A4 E5 C5 G3! D4 G4 B4 C4+E4+G4+C5! - - - - - - ." },
    { Kind::keys, 0.5,
      "A3+C4+E4! - . A3+C4+E4, F3+A3+C4! - . F3+A3+C4 G3+B3+D4! . G3+B3+D4, . C4+E4+G4! - - -" },
    { Kind::sequence, 4.0, "A3+C4+E4+B4 F3+A3+C4+G4" },
    { Kind::effect, 1.0, "C4! - - C3 . G4! - ." },
};
}

Piece phrase (const bank::SourceProgram& program)
{
    constexpr double beatsPerMinute = 120.0;
    Piece piece (program.name (), beatsPerMinute);
    piece.program (0.0, program.name ());
    for (const PhraseRow& row : phrases)
    {
        if (row.kind == program.kind)
            piece.line (0.0, row.step, row.words);
    }
    return piece;
}
}
