// A piece of music, written down in short text lines. Each MIDI channel is an instance of the instrument.
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
    int channel = 0;
};

struct ProgramChange
{
    double start; // quarter notes
    std::string name;
    int channel = 0;
};

struct Controller
{
    double start; // quarter notes
    int number;   // 0..127
    int value;    // 0..127
    int channel = 0;
};

struct Bend
{
    double start; // quarter notes
    double value; // -1..1 of the range
    int channel = 0;
};

// What a line is played with: notes without a mark, from its beginning to its end.
struct Velocities
{
    int from = 92;
    int to = 92;
};

class Piece
{
public:
    Piece (std::string title, double tempo) : name (std::move (title)), bpm (tempo) {}

    // What is added from here on belongs to this channel, 0..15.
    void channel (int number) { part = number; }

    // How late every second sixteenth comes, as a share of a sixteenth: 0 is straight, 0.33 a triplet.
    void swing (double share) { lateness = share; }
    double swung (double quarters) const; // where the swing puts this place

    void program (double start, std::string_view program)
    {
        changes.push_back ({ start, std::string (program), part });
    }
    void note (double start, double length, int key, int velocity)
    {
        played.push_back ({ start, length, key, velocity, part });
    }
    void controller (double start, int number, int value)
    {
        controllers.push_back ({ start, number, value, part });
    }
    // The wheel moves evenly from one value to the other, -1..1.
    void bend (double start, double length, double from, double to);

    // Writes one line of music from `start` on, one step of `step` quarter notes for each word:
    //   A2 C#3 Bb3     a note, held for most of its step; several at once are joined: A2+C3+E3
    //   -              the notes before are held for this step too
    //   .              silence
    // A mark behind a word: ! plays it harder, , plays it softer, _ ties it into the next word (for glides).
    // Notes on a beat are a little stronger, those between the eighths a little weaker.
    // Throws std::invalid_argument for anything else.
    void line (double start, double step, std::string_view words, Velocities velocities = {});

    // Writes a drum part, one character a sixteenth: X x o - from hard to hardly, . for none; blanks are left
    // out. Throws std::invalid_argument for anything else.
    void beat (double start, int key, std::string_view strokes);

    const std::string& title () const { return name; }
    double beatsPerMinute () const { return bpm; }
    const std::vector<Note>& notes () const { return played; }
    const std::vector<ProgramChange>& programChanges () const { return changes; }
    const std::vector<Controller>& controllerChanges () const { return controllers; }
    const std::vector<Bend>& bends () const { return wheel; }

private:
    std::string name;
    double bpm;
    int part = 0;
    double lateness = 0.0;
    std::vector<Note> played;
    std::vector<ProgramChange> changes;
    std::vector<Controller> controllers;
    std::vector<Bend> wheel;
};
}
