// A song as a standard MIDI file holds it: one list of messages in order of time.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

namespace midi
{
// A channel message: status byte 0x80 to 0xEF and its data bytes (0..127).
struct Message
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
struct Song
{
    std::string title;           // name of the first track that has one, as its bytes are
    int ticksPerQuarter = 0;     // above 0 when time counts in quarter notes, else 0
    double ticksPerSecond = 0.0; // above 0 when time counts in SMPTE frames, else 0
    std::vector<Message> messages;
    std::vector<TempoChange> tempoChanges;
    std::vector<TimeSignature> timeSignatures;
    std::uint64_t endTick = 0; // where the longest track ends
};
}
