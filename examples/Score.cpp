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
    return message.bytes[0] == noteOff ? 0 : message.bytes[0] == noteOn ? 2 : 1;
}

std::vector<midi::Message> messagesOf (const Piece& piece, const std::vector<std::string>& programNames)
{
    std::vector<midi::Message> messages;
    for (const Note& note : piece.notes ())
    {
        const std::uint8_t key = byteOf (note.key);
        messages.push_back ({ tickOf (note.start), { noteOn, key, byteOf (note.velocity) }, 3 });
        messages.push_back ({ tickOf (note.start + note.length), { noteOff, key, 0 }, 3 });
    }
    for (const ProgramChange& change : piece.programChanges ())
    {
        const int number = programNumber (programNames, change.name);
        messages.push_back ({ tickOf (change.start), { programChange, byteOf (number), 0 }, 2 });
    }
    for (const Controller& change : piece.controllerChanges ())
        messages.push_back (
            { tickOf (change.start), { controlChange, byteOf (change.number), byteOf (change.value) }, 3 });
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
