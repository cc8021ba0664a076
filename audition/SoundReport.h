// Measures the whole bank and says what is wrong with it.
#pragma once

#include "audition/Measures.h"

#include <string>
#include <vector>

namespace audition
{
// The limits that a sound of the bank keeps.
inline constexpr double spreadLimit = 2.0;    // LU between takes
inline constexpr double varyingLimit = 4.0;   // the same for a sound that is meant to beat or to move
inline constexpr double leastVelocity = 5.0;  // LU from velocity 30 to 127, but for organs
inline constexpr double chordPeakLimit = 0.0; // dBFS, true peak of a four-note chord
inline constexpr double answerLimit = 0.030;  // seconds until a note is within 20 dB of its loudest
inline constexpr double dcLimit = 0.01;       // of the peak
inline constexpr double leastDistance = 6.0;  // dB between any two sounds, see distance()
inline constexpr double straightTail = 0.6;   // tailBend() of a plucked sound lies below
inline constexpr double answerDecibels = 20.0;
inline constexpr double attackDecibels = 6.0;

struct SoundFigures
{
    double loudness;   // LUFS as its kind is played: a note or a chord
    double spread;     // LU between the loudest and the quietest of 16 notes of different pasts
    double velocity;   // LU between velocities 30 and 127
    double chordPeak;  // dBFS, true peak
    double answer;     // seconds until the slowest note is heard: within 20 dB of its loudest 10 ms
    double attack;     // seconds until it is within 6 dB
    double brightness; // Hz
    double dc;         // share of the peak, the note with the most
    double tail;       // see tailBend()
    double nearest;    // distance to the most similar other program
    int nearestProgram;
};

// The bank's first program is given: its 38 values cannot be levelled.
inline constexpr std::size_t givenProgram = 0;

// The program's phrase.
Audio playPhrase (const Player& player, const bank::SourceProgram& program);

// Renders and measures every program.
std::vector<SoundFigures> measureBank (const std::vector<bank::SourceProgram>& programs);

// One sentence for each limit that a program breaks.
std::vector<std::string> complaints (const std::vector<bank::SourceProgram>& programs,
                                     const std::vector<SoundFigures>& figures);

// The list of sounds as a document, with their figures and the limits that they keep.
std::string soundList (const std::vector<bank::SourceProgram>& programs,
                       const std::vector<SoundFigures>& figures);

inline constexpr double clickLimit = 5.0;     // see sharpestClick()
inline constexpr double softestPiece = -20.0; // LUFS over the whole piece
inline constexpr double loudestPiece = -16.0;
inline constexpr double longestHole =
    0.3; // s of silence (below -50 dBFS) between the first and the last note

struct PieceFigures
{
    double seconds;
    double loudness; // LUFS, integrated over the piece
    double peak;     // dBFS, true peak
    double dc;       // share of the peak
    double click;    // sharpest lone step
    double hole;     // s, the longest silence before the last note
};

PieceFigures measurePiece (const std::vector<bank::SourceProgram>& programs, const examples::Piece& piece);
std::vector<std::string> complaints (const examples::Piece& piece, const PieceFigures& figures);
std::string describe (const PieceFigures& figures);
}
