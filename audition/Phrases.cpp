#include "audition/Phrases.h"

namespace audition
{
namespace
{
using bank::Kind;
using examples::Piece;

constexpr double beatsPerMinute = 120.0;
constexpr double quartersPerSecond = beatsPerMinute / 60.0;
constexpr double start = warmUpSeconds * quartersPerSecond;
constexpr double heldQuarters = heldSeconds * quartersPerSecond;

Piece warmedUp (const bank::SourceProgram& program)
{
    Piece piece (program.name (), beatsPerMinute);
    piece.program (0.0, program.name ());
    constexpr double chordQuarters =
        9.0; // with less than 4 s of rest behind it, so that the engine stays awake
    for (const int key : { 48, 55, 60, 64, 67 })
        piece.note ({ 0.0, chordQuarters, key, 100 });
    return piece;
}

void hold (Piece& piece, std::initializer_list<int> keys)
{
    constexpr int velocity = 100;
    for (const int key : keys)
        piece.note ({ start, heldQuarters, key, velocity });
}

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

Piece heldNote (const bank::SourceProgram& program)
{
    Piece piece = warmedUp (program);
    hold (piece, { program.kind == Kind::bass ? 48 : 60 });
    return piece;
}

Piece heldChord (const bank::SourceProgram& program)
{
    Piece piece = warmedUp (program);
    if (program.kind == Kind::bass)
        hold (piece, { 48, 52, 55, 60 });
    else
        hold (piece, { 60, 64, 67, 72 });
    return piece;
}

Piece phrase (const bank::SourceProgram& program)
{
    Piece piece = warmedUp (program);
    for (const PhraseRow& row : phrases)
    {
        if (row.kind == program.kind)
            piece.line (start, row.step, row.words);
    }
    return piece;
}
}
