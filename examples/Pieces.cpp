#include "examples/Pieces.h"

#include <span>

namespace examples
{
namespace
{
// One instance in a piece: which program its channel plays, and how loud (controller 7; 127 as it is).
struct Part
{
    const char* program;
    int channel;
    int volume;
};

constexpr int channelVolume = 7;
constexpr int expression = 11;

void seat (Piece& piece, std::span<const Part> parts)
{
    for (const Part& part : parts)
    {
        piece.channel (part.channel);
        piece.program (0.0, part.program);
        piece.controller (0.0, channelVolume, part.volume);
    }
}

// The channel's sound grows or fades evenly, from one expression value to another.
void fade (Piece& piece, double start, double length, int from, int to)
{
    constexpr int steps = 32;
    for (int n = 0; n <= steps; ++n)
        piece.controller (start + length * n / steps, expression, from + (to - from) * n / steps);
}

constexpr double bar = 4.0; // quarter notes

// The channels of the demo.
enum DemoPart
{
    kick,
    snare,
    hat,
    bass,
    pad,
    lead,
    sequence,
    toms,
    riser,
    brass,
    bells,
};
constexpr Part demoParts[] = {
    { "Soft Kick", kick, 110 },      { "Tin Snare", snare, 125 }, { "Tight Hat", hat, 78 },
    { "Fun Bass", bass, 87 },        { "Warm Blanket", pad, 74 }, { "Super Vimble", lead, 81 },
    { "Koto Bridge", sequence, 81 }, { "Floor Tom", toms, 93 },   { "Two Bar Sync Riser", riser, 81 },
    { "Brass Section", brass, 77 },  { "Bell Tower", bells, 85 },
};

// Four bars each: A minor 9, F major 9, C with its 9th, G 6; one voice moves at a time.
constexpr const char* versePad = "G3+B3+C4+E4 G3+A3+C4+E4 G3+C4+D4+E4 G3+B3+D4+E4";
constexpr const char* bridgePad = "F3+A3+C4+E4 G3+A3+C4+E4 F3+A3+C4+E4 E3+A3+B3+D4";
constexpr const char* verseSequence = "A3 E4 B4 C5 E5 B4 C5 E4 A3 E4 B4 C5 G5 E5 C5 B4 "
                                      "F3 C4 A4 C5 E5 C5 A4 C4 F3 C4 G4 A4 C5 E5 C5 A4 "
                                      "C4 G4 D5 E5 G5 E5 D5 G4 C4 G4 D5 E5 G5 C5 E5 D5 "
                                      "G3 D4 B4 D5 E5 D5 B4 D4 G3 D4 A4 B4 D5 G5 E5 D5";
constexpr const char* bridgeSequence = "D4 A4 C5 E5 F5 E5 C5 A4 D4 A4 C5 E5 A5 F5 E5 C5 "
                                       "A3 E4 G4 C5 E5 C5 G4 E4 A3 E4 G4 C5 G5 E5 C5 G4 "
                                       "F3 C4 A4 C5 E5 C5 A4 C4 F3 C4 A4 C5 F5 E5 C5 A4 "
                                       "E4 A4 B4 D5 E5 D5 B4 A4 E4 G#4 B4 D5 E5 D5 B4 G#4";
constexpr const char* verseBass = "A1! . . A1, . A1 . C2, . A2!_ A1 . G1 . G1_ G#1 "
                                  "F1! . . F1, . F1 . A1, . F2!_ F1 . E1 . E1, G1 "
                                  "C2! . . C2, . C2 . E2, . G2!_ C2 . B1 . C2, D2 "
                                  "G1! . . G1, . G1 . B1, . D2!_ G1 . G1_ - E2_ G1";
constexpr const char* chorusBass = "A1! . A1, A2 . A1, E2 . A1! . A2_ A1, G1 . E1_ G1 "
                                   "F1! . F1, F2 . F1, C2 . F1! . F2_ F1, E1 . C2_ E1 "
                                   "C2! . C2, C3 . C2, G2 . C2! . E2_ C2, B1 . D2_ B1 "
                                   "G1! . G1, G2 . G1, D2 . G1! . G2_ G1, G1 . D2_ G#1";

void drums (Piece& piece, double start, const char* kicks, const char* snares, const char* hats)
{
    piece.channel (kick);
    piece.beat (start, 48, kicks);
    piece.channel (snare);
    piece.beat (start, 64, snares);
    piece.channel (hat);
    piece.beat (start, 72, hats);
}

// Two bars of the groove, eight times alike would tire: the second differs.
void groove (Piece& piece, double start)
{
    drums (piece, start, "X.....x. ..X....o X..o..x. ..X.....", "....X..- .-..X... ....X..- .-..X.-o",
           "x-o-x-o- x-o-x-ox x-o-x-o- x-oox-o-");
}

// The fill that ends four bars: snare and three toms, growing.
void fill (Piece& piece, double start)
{
    piece.channel (snare);
    piece.beat (start, 64, "o.o-");
    piece.channel (toms);
    piece.line (start + 1.0, 0.25, "C5 C5, C5 . G4 G4, G4 . D4! . D4! D4!", { 84, 112 });
}

void line (Piece& piece, DemoPart part, double start, double step, const char* words, Velocities velocities)
{
    piece.channel (part);
    piece.line (start, step, words, velocities);
}

void demoIntro (Piece& piece) // bars 1 to 8
{
    line (piece, pad, 0.0, bar, versePad, { 64, 78 });
    line (piece, pad, 4 * bar, bar, versePad, { 80, 90 });
    line (piece, sequence, 0.0, 0.25, verseSequence, { 40, 74 });
    line (piece, sequence, 4 * bar, 0.25, verseSequence, { 74, 84 });
    piece.channel (hat);
    piece.beat (2 * bar, 72, "..o...o. ..o...o- ..o.-.o. ..o.-.oo");
    drums (piece, 4 * bar, "X....... ..x..... X.....o. ..x.....", "........ ........ ........ ....x...",
           "x.o.x.o. x.o.x.o- x.o.x.o. x.o-x.o-");
    drums (piece, 6 * bar, "X....... ..x....o X.....x. ........", "........ ....x... ....x...",
           "x.o-x.o. x.o-x-o- x-o-x-o-");
    fill (piece, 7.0 * bar);
    line (piece, bass, 4 * bar, 0.25,
          "A1! - - - . . . . . . . . G1, . G1_ G#1 F1! - - - . . . . . . . . E1, . E1 . "
          "C2! - - - . . . C2, . . . . B1, . B1 . G1! - - - . . G1, . B1 . D2 . E2 . G2_ G1",
          { 92, 100 });
}

void demoVerse (Piece& piece) // bars 9 to 16
{
    for (const double start : { 8 * bar, 12 * bar })
    {
        line (piece, pad, start, bar, versePad, { 76, 84 });
        line (piece, sequence, start, 0.25, verseSequence, { 66, 80 });
        line (piece, bass, start, 0.25, verseBass, { 96, 100 });
        groove (piece, start);
    }
    groove (piece, 10 * bar);
    drums (piece, 14 * bar, "X.....x. ..X....o X..o..x.", "....X..- .-..X... ", "x-o-x-o- x-o-x-ox x-o-x-o-");
    fill (piece, 15 * bar);
    line (piece, lead, 8 * bar, 0.5,
          "E5 - - D5 C5 - A4 - C5 - D5 E5! - - C5, A4 G4 - - E4, G4 - A4 C5 B4! - - - . A4, B4 D5 "
          "E5! - - D5 C5 - E5 A5! G5 - F5, E5 - C5 D5 - E5! - - - D5, C5 B4 C5 D5 - - - B4, - . .",
          { 84, 98 });
    // Each half of the tune is reached from below.
    piece.bend (8 * bar, 0.25, -0.8, 0.0);
    piece.bend (11 * bar, 0.35, -1.0, 0.0);
    piece.bend (12 * bar, 0.25, -0.6, 0.0);
    piece.bend (14 * bar, 0.3, -1.0, 0.0);
}

void demoBridge (Piece& piece) // bars 17 to 20: half as dense, long notes
{
    line (piece, pad, 16 * bar, bar, bridgePad, { 88, 80 });
    line (piece, sequence, 16 * bar, 0.25, bridgeSequence, { 60, 70 });
    drums (piece, 16 * bar, "X....... .......o ......x. ........", "........ X....... ........ X.....-.",
           "o...x... o...x... o...x.-. o...x...");
    drums (piece, 18 * bar, "X....... .......o ......x. ........", "........ X....... ........ X..-..oo",
           "o...x... o...x... o...x.-. o.-.x.--");
    line (piece, bass, 16 * bar, 0.5,
          "D2! - - - . . A1, - A1 - - - . . G1, - F1! - - - . . C2, - E1! - - - . . E1 G#1", { 88, 94 });
    line (piece, lead, 16 * bar, 0.5,
          ". A4 - - - - C5 D5 E5! - - - - - D5, C5 A4 - - - F5! - - E5 D5 - - - B4, - - -", { 72, 100 });
    piece.bend (16 * bar + 0.5, 0.6, -1.0, 0.0);
    piece.bend (17 * bar, 0.3, -0.5, 0.0);
    piece.bend (18 * bar + 2.0, 0.4, -1.0, 0.0);
    piece.bend (19 * bar + 3.0, 0.9, 0.0, -1.0); // falls away
    piece.bend (20 * bar, 0.05, 0.0, 0.0);
}

void demoBuild (Piece& piece) // bars 21 to 24: all over one E, growing
{
    line (piece, pad, 20 * bar, 2 * bar, "E3+A3+B3+D4 E3+G#3+B3+D4", { 70, 110 });
    line (piece, sequence, 20 * bar, 0.25,
          "E4 A4 B4 D5 E5 D5 B4 A4 E4 A4 B4 D5 E5 D5 B4 A4 E4 A4 B4 D5 G5 E5 D5 A4 E4 A4 B4 D5 G5 E5 D5 B4 "
          "E4 G#4 B4 D5 E5 D5 B4 G#4 E4 G#4 B4 D5 G#5 E5 D5 B4 E4 B4 E5 G#5 B5 G#5 E5 B4 E5 G#5 B5 G#5 E5 "
          "G#5 B5 D5",
          { 50, 112 });
    line (piece, riser, 20 * bar, 4 * bar, "E3+B3+D4+E4", { 100, 100 });
    fade (piece, 20 * bar, 3.9 * bar, 40, 127);
    line (piece, bass, 20 * bar, 0.5,
          "E1 . E1 . E1 . E1 . E1 . E1 . E1 . E1, E2 E1 E1 E1 E1 E1 E1 E1 E2 E1 E1 E1 E1 E2! E1 . .",
          { 76, 112 });
    piece.channel (kick);
    piece.beat (20 * bar, 48, "X...X... X...X... X...X... X...X... X...X... X...X... X.X.X.X. X.X.....");
    piece.channel (snare);
    piece.line (22 * bar, 0.25,
                "E4 . . . E4 . . . E4 . E4 . E4 . E4 . E4 E4 E4 E4 E4 E4 E4 E4 E4! E4 E4! E4 . . . .",
                { 46, 116 });
    piece.channel (hat);
    piece.line (20 * bar, 0.5, "C5 C5 C5 C5 C5 C5 C5 C5 C5 C5 C5 C5 C5 C5 C5 C5", { 44, 84 });
    piece.line (22 * bar, 0.25,
                "C5 C5, C5 C5, C5 C5, C5 C5, C5 C5, C5 C5, C5 C5, C5 C5, "
                "C5 C5, C5 C5, C5 C5, C5 C5, C5 C5, C5 C5, . . . .",
                { 76, 112 });
    line (piece, toms, 23 * bar + 3.0, 0.25, "C5! G4! G4 D4!", { 100, 110 });
}

void demoChorus (Piece& piece) // bars 25 to 32
{
    for (const double start : { 24 * bar, 28 * bar })
    {
        line (piece, pad, start, bar, versePad, { 92, 98 });
        line (piece, sequence, start, 0.25, verseSequence, { 78, 92 });
        line (piece, bass, start, 0.25, chorusBass, { 98, 104 });
        line (piece, brass, start, 0.5,
              ". . . G4+C5+E5! . . . . . . . A4+C5+E5! . A4+C5, . . "
              ". . . G4+D5+E5! . . . . . . . G4+B4+D5! . G4+B4 . D4+G4+B4",
              { 78, 92 });
        drums (piece, start, "X..o..X. ..X...xo X..o..X. ..X.o.x.", "....X..- .-..X-.- ....X..- .-..X.oo",
               "xoxoXox- xoxoXoxo xoxoXox- xoxoXoxo");
    }
    drums (piece, 26 * bar, "X..o..X. ..X...xo X..o..X. ..X.o.x.", "....X..- .-..X-.- ....X..- ..o.X.oX",
           "xoxoXox- xoxoXoxo xoxoXox- xo..Xoxo");
    drums (piece, 30 * bar, "X..o..X. ..X...xo X..o..X.", "....X..- .-..X-.-", "xoxoXox- xoxoXoxo xoxoXox-");
    fill (piece, 31 * bar);
    line (piece, lead, 24 * bar, 0.5,
          "A5! - G5, A5 - E5 - G5 F5 - E5, C5 - - D5 E5 G5! - - E5 D5, - C5 D5 E5! - D5 B4 - - G4, A4 "
          "C6! - B5, A5 - G5 - A5 A5! - G5, F5 E5 - F5 G5 E5! - - - G5 - E5, D5 E5 - - D5 B4, - A4 -",
          { 98, 108 });
    piece.bend (24 * bar, 0.3, -1.0, 0.0);
    piece.bend (26 * bar, 0.25, -1.0, 0.0);
    piece.bend (28 * bar, 0.4, -1.0, 0.0);
    piece.bend (30 * bar + 1.0, 0.25, 0.0, 1.0);
    piece.bend (30 * bar + 1.5, 0.3, 1.0, 0.0);
    line (piece, bells, 24 * bar, bar, "A4 . . . E5 . . .", { 100, 100 });
}

void demoEnd (Piece& piece) // bars 33 to 37: one by one they leave
{
    line (piece, pad, 32 * bar, bar, versePad, { 84, 66 });
    line (piece, sequence, 32 * bar, 0.25, verseSequence, { 78, 36 });
    drums (piece, 32 * bar, "X.....x. ..X..... X.....x. ..x.....", "....X..- ....X..- ....x..- ....x...",
           "x-o-x-o- x-o-x-o- o-o-x-o- o.o.x.o.");
    drums (piece, 34 * bar, "x....... ..o..... o.......", "........ ....o...", "o...o... o...-... -...");
    line (piece, bass, 32 * bar, 0.5,
          "A1! - - . A1, - G1 - F1 - - . F1, - E1 - C2 - - - . - - . G1 - - - . . G1, -", { 96, 72 });
    line (piece, lead, 32 * bar, 0.5,
          "A4 - - - - - . . C5 - - - A4, - . . G4 - - - E4, - - - D4 - - - E4, - - -", { 88, 60 });
    piece.bend (32 * bar, 0.5, -1.0, 0.0);
    piece.bend (35 * bar + 2.0, 0.6, -0.6, 0.0);
    line (piece, pad, 36 * bar, bar, "A3+B3+C4+E4 -", { 76, 76 });
    line (piece, bass, 36 * bar, 0.5, "A1 - - - - -", { 84, 84 });
    line (piece, bells, 36 * bar, 0.5, "A4 . E5, . B5, - - -", { 84, 56 });
    piece.channel (kick);
    piece.beat (36 * bar, 48, "x");
}
}

Piece demo ()
{
    Piece piece ("Brimvale demo", 104);
    piece.swing (0.16);
    seat (piece, demoParts);
    demoIntro (piece);
    demoVerse (piece);
    demoBridge (piece);
    demoBuild (piece);
    demoChorus (piece);
    demoEnd (piece);
    return piece;
}

Piece lowRoads ()
{
    Piece piece ("Low Roads", 104);
    piece.swing (0.12);
    constexpr Part parts[] = { { "Bass One", 0, 127 }, { "Rubber Band", 1, 114 }, { "Acid Corner", 2, 110 },
                               { "Concrete", 3, 108 }, { "Fun Bass", 4, 112 },    { "Reese Street", 5, 112 },
                               { "Tight Hat", 6, 64 }, { "Soft Kick", 7, 112 } };
    seat (piece, parts);
    // Two kicks and a hat carry the tempo from one bass to the next.
    for (int at = 0; at < 22; ++at)
    {
        piece.channel (6);
        piece.beat (at * bar, 72, at % 4 == 3 ? "o-x-o-x- o-xoo-xx" : "o-x-o-x- o-x-o-x-");
        piece.channel (7);
        piece.beat (at * bar, 48, at % 2 == 0 ? "x.....o. x......." : "x.....o. x....o..");
    }
    piece.channel (0);
    for (const double start : { 0.0, 8.0 })
        piece.line (start, 0.25,
                    "E2! . . E2 . . E3, . G2 . A2 . B2! . D3 . "
                    "E2! . . E2 . . D3, . B2 . A2 . G2! . F#2 . ",
                    { 84, 100 });
    piece.channel (1);
    for (const double start : { 16.0, 24.0 })
        piece.line (start, 0.5, "E1!_ E2 B1 D2_ C#2_ B1 G1 F#1_ E1!_ G1 A1 B1_ D2_ E2 . B1,", { 88, 102 });
    piece.channel (2);
    for (const double start : { 32.0, 40.0 })
        piece.line (start, 0.25,
                    "E2! E2, E3_ E2 . G2, E2! E2_ D3 E2, B2!_ A2 E2 . F#2, G2 "
                    "E2! E2, E3_ D3 . B2, G2! E2_ A2 E2, B2!_ E3 D3_ B2 G2 F#2,",
                    { 76, 104 });
    piece.channel (3);
    for (const double start : { 48.0, 56.0 })
        piece.line (start, 0.5, "E1! - . E1 G1 - A1! - C2! - B1 - A1 G1 . D1,", { 88, 104 });
    piece.channel (4);
    for (const double start : { 64.0, 72.0 })
        piece.line (start, 0.25,
                    "E1! . E2, . D2_ E2 . B1, . D2 . G1! . A1_ B1 . "
                    "C2! . C2, . B1_ A1 . G1, . A1 . B1! . D2_ B1 D1",
                    { 86, 102 });
    piece.channel (5);
    piece.line (80, 1, "E1! - D2_ - C2_ - B1_ - E1! - - - - - - .", { 98, 90 });
    return piece;
}

Piece harbourLights ()
{
    Piece piece ("Harbour Lights", 84);
    constexpr Part parts[] = { { "Low Pads", 0, 108 },    { "Warm Blanket", 1, 104 },
                               { "Simple Lead", 2, 100 }, { "Night Drive", 3, 102 },
                               { "Glass Choir", 4, 100 }, { "Space Pads", 5, 112 },
                               { "Golden Horn", 6, 108 }, { "Harp Arc", 7, 112 } };
    seat (piece, parts);
    // D minor 7, B flat major 7, F with its 9th, C: the common notes stay, the others go by a step.
    constexpr const char* chords = "D3+A3+C4+F4 - D3+A3+Bb3+F4 - C3+A3+C4+G4 - C3+G3+C4+E4 -";
    constexpr const char* harp =
        "D3 A3 D4 F4 A4 C5 A4 F4 D3 A3 C4 F4 A4 D5 C5 A4 Bb2 F3 D4 F4 A4 D5 A4 F4 Bb2 F3 A3 D4 F4 A4 D5 C5 "
        "F3 C4 A4 C5 G5 C5 A4 C4 F3 A3 C4 G4 A4 C5 F5 C5 C3 G3 C4 E4 G4 C5 G4 E4 C3 G3 C4 D4 E4 G4 C5 D5";
    piece.channel (0);
    piece.line (0, 2, chords, { 72, 96 });
    piece.line (66, 2, "D3+A3+C4+F4 - D3+A3+Bb3+F4 -", { 90, 70 });
    piece.channel (7);
    piece.line (16, 0.5, harp, { 66, 88 });
    piece.line (50, 0.5, harp, { 84, 64 });
    piece.channel (1);
    piece.line (16, 2, "F3+A3+C4+E4 - F3+A3+Bb3+D4 - G3+A3+C4+F4 - G3+Bb3+C4+E4 -", { 70, 84 });
    piece.channel (2);
    piece.line (16, 0.5, ". . A4 D5 F5 - E5 C5 - . D5 - - - F5, E5 D5 . C5 - A4 G4, A4 - - - E5! - D5 C5 - -",
                { 74, 98 });
    piece.bend (18, 0.4, -0.7, 0.0);
    piece.channel (6);
    piece.line (33, 0.5,
                "D5 E5, F5 A5! - - G5 F5 - E5 D5 - C5, F5 G5 A5! - - C6 - Bb5, A5 - G5 - - F5, E5 C5 - . .",
                { 80, 104 });
    piece.bend (34.5, 0.4, -1.0, 0.0);
    piece.channel (1);
    piece.line (32, 2, "F3+A3+D4+F4 - F3+Bb3+D4+F4 - F3+A3+C4+G4 - E3+G3+C4+E4 -", { 82, 92 });
    piece.channel (3);
    piece.line (
        48, 0.5,
        ". . F5_ A5 - G5_ F5_ E5_ - D5 - C5_ D5_ F5_ - E5 - - D5_ A5_ C6!_ - Bb5_ A5_ G5_ - A5 - - - . .",
        { 84, 108 });
    piece.channel (1);
    piece.line (48, 2, "F3+A3+C4+F4 - F3+A3+Bb3+D4 - F3+A3+C4+G4 - E3+G3+C4+G4 -", { 80, 76 });
    piece.channel (4);
    piece.line (64, 2, "D4+F4+A4 - D4+F4+Bb4 - C4+F4+A4 - C4+E4+G4 -", { 78, 88 });
    piece.channel (5);
    piece.line (78, 2, "A3+D4+E4+F4 - A3+D4+F4 - A3+D4+E4+F#4 - - .", { 70, 92 });
    return piece;
}

Piece nightTrain ()
{
    Piece piece ("Night Train", 126);
    constexpr Part parts[] = { { "Quarter Sync Pump", 0, 104 },
                               { "Sync Gate Sixteenths", 1, 98 },
                               { "MidiSyncLFO", 2, 104 },
                               { "Sync Dice Sixteenths", 3, 104 },
                               { "Wobble Yard", 4, 112 },
                               { "Two Bar Sync Riser", 5, 86 },
                               { "Sync Triplet Ripple", 6, 108 },
                               { "Soft Kick", 7, 120 },
                               { "Tight Hat", 8, 72 },
                               { "Hand Clap", 9, 108 } };
    seat (piece, parts);
    for (int at = 4; at < 28; ++at)
    {
        if (at == 23)
            continue; // a breath before the end
        piece.channel (7);
        piece.beat (at * bar, 48, at % 4 == 3 ? "X...X... X...X.x." : "X...X... X...X...");
        piece.channel (8);
        piece.beat (at * bar, 72, at < 8 ? "..o...o. ..o...o." : "-.x.-.x- -.x.-.xo");
        piece.channel (9);
        if (at >= 8)
            piece.beat (at * bar, 60, at % 8 == 7 ? "....x... ....x.ox" : "....x... ....x...");
    }
    // C minor 7, A flat major 7, F minor 7, G minor 7.
    piece.channel (0);
    piece.line (0, 4, "C3+G3+Bb3+Eb4 C3+G3+Ab3+Eb4 C3+F3+Ab3+Eb4 D3+F3+Bb3+D4", { 76, 100 });
    piece.channel (1);
    piece.line (16, 4, "C3+G3+Bb3+Eb4 C3+G3+Ab3+Eb4 C3+F3+Ab3+Eb4 D3+G3+B3+F4", { 80, 104 });
    piece.channel (2);
    for (const double start : { 32.0, 40.0 })
        piece.line (start, 0.5, "C4! C4, Eb4 G4 Bb4! G4, Eb4 C4 Ab3! C4, Eb4 Ab4 G4! Eb4, F4 D4",
                    { 84, 104 });
    piece.channel (3);
    piece.line (48, 4, "C3+G3+Eb4+G4 C3+G3+Eb4+G4 C3+Ab3+Eb4+G4 D3+G3+B3+F4", { 80, 102 });
    piece.channel (4);
    piece.line (48, 1, "C1! - - Eb1_ F1_ - - - Ab1_ - - - G1_ - - -", { 90, 104 });
    piece.line (64, 1, "C1! - - Eb1_ F1_ - - - Ab1_ - - Bb1 G1_ - - -", { 94, 108 });
    piece.channel (2);
    piece.line (64, 0.5,
                "C5! C5, G4 Eb5 - C5, Bb4 G4 F4! Ab4, C5 Eb5 - C5, Ab4 F4 "
                "Eb4! Ab4, C5 G5 - Eb5, C5 Ab4 G4! B4, D5 F5 - D5, B4 G4",
                { 80, 108 });
    piece.channel (5);
    piece.line (80, 4, "G3+D4+F4+B4 - - -", { 84, 84 });
    piece.channel (6);
    piece.line (96, 4, "C3+G3+Bb3+Eb4 C3+G3+Ab3+Eb4 C3+F3+Ab3+Eb4 C3+G3+C4+E4 -", { 98, 80 });
    return piece;
}

std::vector<Piece> allPieces ()
{
    return { demo (), lowRoads (), harbourLights (), nightTrain () };
}
}
