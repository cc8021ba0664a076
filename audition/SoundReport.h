// Measures the whole bank and says what is wrong with it.
#pragma once

#include "audition/Measures.h"

#include <string>
#include <vector>

namespace audition
{
// The limits that a sound of the bank keeps.
inline constexpr double loudnessTolerance = 4.0; // LU around the bank's median
inline constexpr double chordPeakLimit = 0.0;    // dBFS, true peak of a four-note chord
inline constexpr double answerLimit = 0.030;     // seconds until a note is within 20 dB of its loudest
inline constexpr double dcLimit = 0.01;          // of the peak
inline constexpr double leastDistance = 6.0;     // dB between any two sounds, see distance()
inline constexpr double answerDecibels = 20.0;
inline constexpr double attackDecibels = 6.0;

struct SoundFigures
{
    double loudness;   // LUFS of a chord, of a note where the program is a bass or mono
    double chordPeak;  // dBFS, true peak
    double answer;     // seconds until the note is heard: within 20 dB of its loudest 10 ms
    double attack;     // seconds until it is within 6 dB
    double brightness; // Hz
    double dc;         // share of the peak
    double nearest;    // distance to the most similar other program
    int nearestProgram;
};

// The program's phrase, without the bars that warm it up.
Audio playPhrase (const Player& player, const bank::SourceProgram& program);

// Renders and measures every program.
std::vector<SoundFigures> measureBank (const std::vector<bank::SourceProgram>& programs);

double medianLoudness (const std::vector<SoundFigures>& figures);

// One sentence for each limit that a program breaks.
std::vector<std::string> complaints (const std::vector<bank::SourceProgram>& programs,
                                     const std::vector<SoundFigures>& figures);

// The list of sounds as a document, with their figures and the limits that they keep.
std::string soundList (const std::vector<bank::SourceProgram>& programs,
                       const std::vector<SoundFigures>& figures);

inline constexpr double clickLimit = 5.0;         // see sharpestClick()
inline constexpr double restBeforeChange = -50.0; // dBFS: a program change cuts nothing off that is louder

struct PieceFigures
{
    double seconds;
    double loudness;        // LUFS, loudest 400 ms
    double peak;            // dBFS, true peak
    double dc;              // share of the peak
    double click;           // sharpest lone step
    double loudestAtChange; // dBFS, the 20 ms before a program change
};

PieceFigures measurePiece (const std::vector<bank::SourceProgram>& programs, const examples::Piece& piece);
std::vector<std::string> complaints (const examples::Piece& piece, const PieceFigures& figures);
std::string describe (const PieceFigures& figures);
}
