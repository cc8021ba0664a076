#pragma once

#include <array>

namespace engine
{
// Equal temperament by MIDI note, note 69 = 440 Hz.
using NoteTable = std::array<float, 128>;

// Hz of every note for one semitone ratio: 6.875 Hz (an A, three semitones below note 0) times ratio^(n + 3),
// multiplied up in double precision.
constexpr NoteTable makeNoteTable (double semitoneRatio)
{
    double hz = 6.875 * semitoneRatio * semitoneRatio * semitoneRatio;
    NoteTable table = {};
    for (float& entry : table)
    {
        entry = static_cast<float> (hz);
        hz *= semitoneRatio;
    }
    return table;
}

// The oscillators' notes, and the filters' key tracking, whose ratio is written with fewer digits.
inline constexpr double semitoneRatio = 1.0594630943592953; // 2^(1/12)
inline constexpr NoteTable noteFreq = makeNoteTable (semitoneRatio);
inline constexpr NoteTable keyTrackFactor = makeNoteTable (1.059463094359);

// Notes from arithmetic without limits (transposed, bent) wrap around the table's 128 entries.
constexpr float noteHz (int note)
{
    return noteFreq[static_cast<unsigned> (note) & 127u];
}
}
