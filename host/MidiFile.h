// Standard MIDI files (formats 0 and 1, plain or wrapped in RIFF) as one list of messages.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <span>
#include <stdexcept>
#include <vector>

namespace host
{
// Why a file could not be read, as one sentence without the file's name.
class MidiFileError : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

// A channel message: status byte 0x80 to 0xEF and its data bytes (0..127).
struct MidiMessage
{
    std::uint64_t tick = 0;
    std::array<std::uint8_t, 3> bytes = {}; // unused ones are 0
    int length = 0;                         // 2 or 3
};

struct TempoChange
{
    std::uint64_t tick = 0;
    std::uint32_t microsecondsPerQuarter = 0; // above 0
};

struct TimeSignature
{
    std::uint64_t tick = 0;
    int numerator = 4;   // 1..255
    int denominator = 4; // 1, 2, 4, ... 128
};

// All lists are in ascending order of tick; simultaneous entries keep the order of tracks and bytes.
// System exclusive messages and other meta events are read over.
struct MidiFile
{
    int ticksPerQuarter = 0;     // above 0 when time counts in quarter notes, else 0
    double ticksPerSecond = 0.0; // above 0 when time counts in SMPTE frames, else 0
    std::vector<MidiMessage> messages;
    std::vector<TempoChange> tempoChanges;
    std::vector<TimeSignature> timeSignatures;
    std::uint64_t endTick = 0; // where the longest track ends
};

// Throws MidiFileError when the bytes are not a MIDI file that can be played from start to end.
MidiFile parseMidiFile (std::span<const std::uint8_t> bytes);

// The same from a file. Throws MidiFileError also when the file cannot be opened.
MidiFile readMidiFile (const std::filesystem::path& file);
}
