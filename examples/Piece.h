// A piece of music for one instance of the instrument, written down in short text lines.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace examples
{
struct Note
{
    double start;  // quarter notes from the beginning
    double length; // quarter notes
    int key;       // MIDI, 60 = middle C
    int velocity;  // 1..127
};

struct ProgramChange
{
    double start; // quarter notes
    std::string name;
};

struct Controller
{
    double start; // quarter notes
    int number;   // 0..127
    int value;    // 0..127
};

class Piece
{
public:
    Piece (std::string title, double tempo) : name (std::move (title)), bpm (tempo) {}

    void program (double start, std::string_view program)
    {
        changes.push_back ({ start, std::string (program) });
    }
    void note (Note added) { played.push_back (added); }
    void controller (double start, int number, int value)
    {
        controllers.push_back ({ start, number, value });
    }

    // Writes one line of music from `start` on, one step of `step` quarter notes for each word:
    //   A2 C#3 Bb3     a note, held for most of its step; several at once are joined: A2+C3+E3
    //   -              the notes before are held for this step too
    //   .              silence
    // A mark behind a word: ! plays it hard, , plays it softly, _ ties it into the next word (for glides).
    // Throws std::invalid_argument for anything else.
    void line (double start, double step, std::string_view words);

    const std::string& title () const { return name; }
    double beatsPerMinute () const { return bpm; }
    const std::vector<Note>& notes () const { return played; }
    const std::vector<ProgramChange>& programChanges () const { return changes; }
    const std::vector<Controller>& controllerChanges () const { return controllers; }

private:
    std::string name;
    double bpm;
    std::vector<Note> played;
    std::vector<ProgramChange> changes;
    std::vector<Controller> controllers;
};
}
