#include "examples/Pieces.h"

namespace examples
{
Piece demo ()
{
    Piece piece ("Brimvale demo", 116);

    piece.program (0, "Bass One");
    piece.line (0, 0.5,
                "A2! . A2 A3, G2 A2 C3! D3 "
                "F2! . F2 F3, E2 F2 A2! C3 "
                "C2! . C2 C3, G2 C2 E2! G2 "
                "G2! . G2 B2 D3! - . .");

    piece.program (16, "Super Vimble");
    piece.line (16.5, 0.5,
                "E5 A5! - G5 E5 - D5 "
                "C5 - D5 E5! - - C5, A4, "
                "G4 - C5 E5 G5! - E5 D5 "
                "B4! - - D5 G4 - . .");
    piece.line (16.5, 0.5,
                ". A3 - . E4, - . "
                "F3 - . C4, - . F3, - "
                "C3 - . G3, - . C4, - "
                "G3 - . D4, - . . .");

    piece.program (33, "Warm Blanket");
    piece.line (33, 1,
                "A3+C4+E4+A4, - - - F3+A3+C4+G4, - - - "
                "C3+G3+E4+B4, - - - G3+B3+D4+A4, - - . ");
    piece.line (34, 0.5,
                ". . E5 D5 C5 E5 . A5 - - G5 - E5 C5 . "
                ". . D5 C5 D5 E5 - B4 - - - D5 - . . .");

    piece.program (51, "Sync Gate Sixteenths");
    piece.line (51, 1,
                "A3+C4+E4+B4 - - - F3+A3+C4+E4 - - - "
                "D3+A3+C4+F4 - - . ");

    piece.program (64, "Retro Pad 64");
    piece.line (64, 1, "A3+E4+A4+C5+E5 - - -");
    return piece;
}

Piece lowRoads ()
{
    Piece piece ("Low Roads", 104);

    piece.program (0, "Bass One");
    for (const double bar : { 0.0, 8.0 })
        piece.line (bar, 0.25,
                    "E2! . . E2 . . E3, . G2 . A2 . B2! . D3 . "
                    "E2! . . E2 . . D3, . B2 . A2 . G2! . F#2 . ");

    piece.program (16.5, "Rubber Band");
    for (const double bar : { 17.0, 25.0 })
        piece.line (bar, 0.5,
                    "E2!_ E3 B2 D3_ C#3_ B2 G2 F#2_ "
                    "E2!_ G2 A2 B2_ D3_ E3 . .");

    piece.program (33.5, "Acid Corner");
    for (const double bar : { 34.0, 42.0 })
        piece.line (bar, 0.25,
                    "E2! E2, E3_ E2 . G2, E2! E2_ D3 E2, B2!_ A2 E2 . F#2, G2 "
                    "E2! E2, E3_ D3 . B2, G2! E2_ A2 E2, B2!_ E3 D3_ B2 G2 . ");

    piece.program (50.5, "Concrete");
    for (const double bar : { 51.0, 59.0 })
        piece.line (bar, 0.5,
                    "E2! - . E2 G2 - A2! - "
                    "C3! - B2 - A2 G2 . . ");

    piece.program (67.5, "Fun Bass");
    for (const double bar : { 68.0, 76.0 })
        piece.line (bar, 0.25,
                    "E2! . E3, . D3_ E3 . B2, . D3 . G2! . A2_ B2 . "
                    "C3! . C3, . B2_ A2 . G2, . A2 . B2! . D3_ B2 . ");

    piece.program (84.5, "Reese Street");
    piece.line (85, 1, "E2! - D3_ - C3_ - B2_ - E2! - - - - . .");
    return piece;
}

Piece harbourLights ()
{
    Piece piece ("Harbour Lights", 84);

    piece.program (0, "Low Pads");
    piece.line (0, 2,
                "D3+A3+F4+C5 - Bb2+F3+D4+A4 - "
                "G2+D3+Bb3+F4 - A2+E3+G3+C#4 . ");

    piece.program (17, "Warm Blanket");
    piece.line (17, 2,
                "D3+F3+A3+E4 - Bb2+D3+F3+A3 - "
                "F3+A3+C4 - C3+E3+G3+D4 . ");
    piece.line (18, 0.5,
                "A4 D5 F5 E5 - C5 . D5 - - - F5, E5, D5 . "
                "C5 - A4 G4 A4 - - - E5 - D5 . . . . .");

    piece.program (34, "Simple Lead");
    piece.line (34.5, 0.5,
                "D5 E5 F5 A5! - - G5 F5 - E5 D5 - . F5 G5 "
                "A5! - - C6 - Bb5 A5 - G5 - - . . . . .");
    piece.line (34, 2, "D3+A3, D3+A3, Bb2+F3, Bb2+F3, F3+C4, F3+C4, C3+G3, .");

    piece.program (51, "Night Drive");
    piece.line (51, 0.5,
                "D5_ F5_ A5 - G5_ F5_ E5_ - D5 . C5_ D5_ F5_ - E5 . "
                "D5_ A5_ C6!_ - Bb5_ A5_ G5_ - A5 - - - . . . .");

    piece.program (68, "Glass Choir");
    piece.line (68, 2, "D4+F4+A4 - Bb3+F4+D5 - F4+A4+C5 - E4+G4+C5 .");

    piece.program (86, "Space Pads");
    piece.line (86, 2, "D3+A3+E4+F4 - Bb2+F3+A3+D4 - D3+A3+D4+F#4 - - -");
    return piece;
}

Piece nightTrain ()
{
    Piece piece ("Night Train", 126);

    piece.program (0, "Quarter Sync Pump");
    piece.line (0, 1,
                "C3+G3+Eb4+Bb4 - - - Ab2+Eb3+C4+G4 - - - "
                "F3+C4+Eb4+Ab4 - - - G3+D4+F4+Bb4 - - . ");

    piece.program (17, "Sync Gate Sixteenths");
    piece.line (17, 1,
                "C3+G3+Eb4+Bb4 - - - Ab2+Eb3+C4+G4 - - - "
                "F3+C4+Eb4+Ab4 - - - G3+D4+F4+B4 - - . ");

    piece.program (34, "MidiSyncLFO");
    for (const double bar : { 34.0, 42.0 })
        piece.line (bar, 0.5,
                    "C4! C4 Eb4 G4 Bb4! G4 Eb4 C4 "
                    "Ab3! C4 Eb4 Ab4 G4! Eb4 F4 . ");

    piece.program (51, "Sync Dice Sixteenths");
    piece.line (51, 1,
                "C3+G3+Eb4+G4 - - - - - - - "
                "Ab2+Eb3+C4+Eb4 - - - G2+D3+B3+F4 - - . ");

    piece.program (68, "Wobble Yard");
    piece.line (68, 1, "C2! - - Eb2_ F2_ - - - Ab2_ - - - G2_ - - .");

    piece.program (85, "Two Bar Sync Riser");
    piece.line (85, 1, "G3+D4+F4+B4 - - - - - - - - - - - - .");

    piece.program (100, "Sync Triplet Ripple");
    piece.line (100, 1,
                "C3+G3+Eb4+Bb4 - - - Ab2+Eb3+C4+G4 - - - "
                "F3+C4+Ab4+C5 - - - C3+G3+C4+E4+G4 - - -");
    return piece;
}

std::vector<Piece> allPieces ()
{
    return { demo (), lowRoads (), harbourLights (), nightTrain () };
}
}
