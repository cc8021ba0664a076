#include "examples/Score.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>

namespace examples
{
namespace
{
constexpr int ticksPerQuarter = 480;
constexpr double microsecondsPerMinute = 60.0e6;

constexpr std::uint8_t noteOff = 0x80;
constexpr std::uint8_t noteOn = 0x90;
constexpr std::uint8_t controlChange = 0xB0;
constexpr std::uint8_t programChange = 0xC0;
constexpr std::uint8_t pitchBend = 0xE0;

std::uint64_t tickOf (double quarters)
{
    return static_cast<std::uint64_t> (std::lround (quarters * ticksPerQuarter));
}

std::uint8_t byteOf (int value)
{
    return static_cast<std::uint8_t> (value);
}

int programNumber (const std::vector<std::string>& names, const std::string& name)
{
    const auto found = std::ranges::find (names, name);
    if (found == names.end ())
        throw std::invalid_argument ("the bank has no program \"" + name + "\"");
    return static_cast<int> (found - names.begin ());
}

// Place of a message among those of one tick.
int rank (const midi::Message& message)
{
    const int kind = message.bytes[0] & 0xF0;
    return kind == noteOff ? 0 : kind == noteOn ? 2 : 1;
}

std::vector<midi::Message> messagesOf (const Piece& piece, const std::vector<std::string>& programNames)
{
    std::vector<midi::Message> messages;
    const auto add = [&] (double quarters, int channel, std::uint8_t kind, int first, int second)
    {
        messages.push_back ({ tickOf (piece.swung (quarters)),
                              { byteOf (kind | channel), byteOf (first), byteOf (second) },
                              kind == programChange ? 2 : 3 });
    };
    for (const Note& note : piece.notes ())
    {
        add (note.start, note.channel, noteOn, note.key, note.velocity);
        add (note.start + note.length, note.channel, noteOff, note.key, 0);
    }
    for (const ProgramChange& change : piece.programChanges ())
        add (change.start, change.channel, programChange, programNumber (programNames, change.name), 0);
    for (const Controller& change : piece.controllerChanges ())
        add (change.start, change.channel, controlChange, change.number, change.value);
    for (const Bend& bend : piece.bends ())
    {
        constexpr int centre = 8192; // of 14 bits
        const int wheel =
            std::clamp (static_cast<int> (std::lround (centre * (1.0 + bend.value))), 0, 2 * centre - 1);
        add (bend.start, bend.channel, pitchBend, wheel & 0x7F, wheel >> 7);
    }
    std::ranges::stable_sort (messages, [] (const midi::Message& a, const midi::Message& b)
                              { return a.tick != b.tick ? a.tick < b.tick : rank (a) < rank (b); });
    return messages;
}
}

midi::Song songOf (const Piece& piece, const std::vector<std::string>& programNames)
{
    midi::Song song;
    song.title = piece.title ();
    song.ticksPerQuarter = ticksPerQuarter;
    const long microseconds = std::lround (microsecondsPerMinute / piece.beatsPerMinute ());
    song.tempoChanges = { { 0, static_cast<std::uint32_t> (microseconds) } };
    song.timeSignatures = { { 0, 4, 4 } };
    song.messages = messagesOf (piece, programNames);
    song.endTick = song.messages.empty () ? 0 : song.messages.back ().tick;
    return song;
}
}
