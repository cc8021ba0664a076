// MIDI files byte by byte, as other programs write them.
#include "midi/Reader.h"
#include "midi/Writer.h"

#include <gtest/gtest.h>
#include <random>

namespace
{
using namespace midi;
using Bytes = std::vector<std::uint8_t>;
using Messages = std::vector<std::pair<std::uint64_t, std::array<std::uint8_t, 3>>>;

Bytes operator+ (Bytes a, const Bytes& b)
{
    a.insert (a.end (), b.begin (), b.end ());
    return a;
}

Bytes text (const std::string& characters)
{
    return { characters.begin (), characters.end () };
}

Bytes number (std::size_t value, int count)
{
    Bytes bytes;
    for (int shift = 8 * (count - 1); shift >= 0; shift -= 8)
        bytes.push_back (static_cast<std::uint8_t> (value >> shift));
    return bytes;
}

Bytes chunk (const std::string& id, const Bytes& contents)
{
    return text (id) + number (contents.size (), 4) + contents;
}

Bytes header (std::size_t format, std::size_t tracks, std::size_t division)
{
    return chunk ("MThd", number (format, 2) + number (tracks, 2) + number (division, 2));
}

const Bytes endOfTrack = { 0x00, 0xFF, 0x2F, 0x00 };

Bytes track (const Bytes& events)
{
    return chunk ("MTrk", events + endOfTrack);
}

Messages messagesOf (const Song& song)
{
    Messages messages;
    for (const Message& message : song.messages)
        messages.emplace_back (message.tick, message.bytes);
    return messages;
}

// What a file plays, or why it is refused.
std::pair<Messages, std::string> read (const Bytes& bytes)
{
    try
    {
        return { messagesOf (parse (bytes)), "" };
    }
    catch (const ReadError& error)
    {
        return { {}, error.what () };
    }
}

TEST (MidiFile, MergesTheTracksByTimeWithEveryKindOfMessage)
{
    // Running status, also across a meta event; a delta time of two bytes.
    const Bytes first = { 0, 0xC0, 3, 100, 0x90, 60, 1, 0, 0xFF, 0x06, 1, 'x', 0, 61, 2, 0, 0xD1, 33 };
    const Bytes second = { 0, 0x91, 70,   2, 50, 0x81, 70,   0,    50, 0xA1, 72,
                           3, 0,    0xB1, 7, 90, 0x83, 0x60, 0xE1, 0,  64 };
    const Song song = parse (header (1, 2, 480) + track (first) + track (second));
    const Messages expected = {
        { 0, { 0xC0, 3, 0 } },    { 0, { 0x91, 70, 2 } },   { 50, { 0x81, 70, 0 } },
        { 100, { 0x90, 60, 1 } }, { 100, { 0x90, 61, 2 } }, { 100, { 0xD1, 33, 0 } },
        { 100, { 0xA1, 72, 3 } }, { 100, { 0xB1, 7, 90 } }, { 580, { 0xE1, 0, 64 } }
    };
    EXPECT_EQ (messagesOf (song), expected);
    EXPECT_EQ (song.messages[0].length, 2);
    EXPECT_EQ (song.messages[1].length, 3);
    EXPECT_EQ (song.ticksPerQuarter, 480);
    EXPECT_EQ (song.endTick, 580u) << "the end of the longest track";
}

TEST (MidiFile, AcceptsWhatTheFormatAllows)
{
    const Bytes note = { 0, 0x90, 60, 100 };
    const Bytes head = header (0, 1, 96);
    const Bytes plain = head + track (note);
    for (const Bytes& bytes :
         { plain, plain + text ("more"), chunk ("MThd", Bytes{ 0, 0, 0, 1, 0, 96, 1, 2, 3 }) + track (note),
           head + chunk ("XFIH", { 1, 2, 3 }) + track (note), // a foreign chunk
           head + chunk ("MTrk", note), head + chunk ("MTrk", note + endOfTrack + Bytes{ 0, 0x12 }),
           text ("RIFF") + number (0, 4) + text ("RMIDdata") + number (0, 4) + plain })
        EXPECT_EQ (messagesOf (parse (bytes)), (Messages{ { 0, { 0x90, 60, 100 } } }));
    EXPECT_DOUBLE_EQ (parse (header (0, 1, 0xE728) + track ({})).ticksPerSecond, 25.0 * 40.0);
    EXPECT_DOUBLE_EQ (parse (header (0, 1, 0xE350) + track ({})).ticksPerSecond, 30000.0 / 1001.0 * 80.0);
}

TEST (MidiFile, SaysWhatIsWrongWithADamagedFile)
{
    const Bytes head = header (0, 1, 96);
    const auto broken = [&] (const Bytes& events) { return head + chunk ("MTrk", events); };
    const std::vector<std::pair<Bytes, std::string>> cases = {
        { {}, "not a MIDI file" },
        { text ("MThd"), "ends in the middle" },
        { text ("MThd") + number (6, 4) + Bytes{ 0, 0 }, "should hold 6 bytes, but only 2" },
        { chunk ("MThd", { 0, 0, 0, 1 }), "header is too short" },
        { header (2, 1, 96) + track ({}), "format 2" },
        { header (0, 0, 96), "no tracks" },
        { header (0, 1, 0) + track ({}), "no ticks per quarter" },
        { header (0, 1, 0x8028) + track ({}), "time code" },
        { header (1, 2, 96) + track ({}), "track 2 of 2 is missing" },
        { head + text ("MTrk") + number (0xFFFFFFFF, 4) + Bytes{ 0 }, "4294967295 bytes, but only 1" },
        { broken ({ 0, 0x90, 60 }), "ends in the middle" },
        { broken ({ 0, 60, 100 }), "belongs to no message" },
        { broken ({ 0, 0x90, 60, 0x90 }), "breaks off" },
        { broken ({ 0xFF, 0xFF, 0xFF, 0xFF, 0x7F, 0x90, 60, 1 }), "longer than four bytes" },
        { broken ({ 0, 0xFF, 0x51, 3, 0, 0, 0 }), "endless tempo" },
        { broken ({ 0, 0xF8 }), "system message" },
    };
    for (const auto& [bytes, part] : cases)
        EXPECT_NE (read (bytes).second.find (part), std::string::npos)
            << read (bytes).second << ", expected: " << part;
}

TEST (MidiFile, WhatIsWrittenReadsTheSame)
{
    Song song;
    song.title = "A title";
    song.ticksPerQuarter = 480;
    song.messages = { { 0, { 0xC1, 5, 0 }, 2 },
                      { 127, { 0x91, 60, 1 }, 3 },
                      { 128, { 0x81, 60, 0 }, 3 },
                      { 40000000, { 0xE1, 0, 64 }, 3 } };
    song.tempoChanges = { { 0, 400000 }, { 128, 16777215 } };
    song.timeSignatures = { { 0, 7, 8 }, { 128, 3, 1 } };
    song.endTick = 40000001;
    const Bytes bytes = fileBytes (song);
    const Song read = parse (bytes);
    EXPECT_EQ (read.title, song.title);
    EXPECT_EQ (messagesOf (read), messagesOf (song));
    EXPECT_EQ (read.endTick, song.endTick);
    EXPECT_EQ (read.tempoChanges[1].microsecondsPerQuarter, 16777215u);
    EXPECT_EQ (read.timeSignatures[0].denominator, 8);
    EXPECT_EQ (fileBytes (read), bytes);
}

// Whatever happens to a file on its way, it is played or refused.
TEST (MidiFile, SurvivesEveryCutAndRandomDamage)
{
    const Bytes events = { 0,    0xFF, 0x51, 3, 7,    0xA1, 0x20, 0,    0x90, 60,   100, 0x81,
                           0x10, 60,   0,    0, 0xF0, 2,    1,    0xF7, 5,    0xC0, 9,   0,
                           0xFF, 0x58, 4,    3, 2,    24,   8,    0,    0xE0, 1,    2 };
    const Bytes whole = header (1, 2, 96) + track (events) + track (events);
    EXPECT_EQ (read (whole).first.size (), 8u);
    for (auto end = whole.begin (); end != whole.end (); ++end)
        EXPECT_NE (read (Bytes (whole.begin (), end)).second, "") << end - whole.begin ();

    std::mt19937 random (1);
    for (int round = 0; round < 20000; ++round)
    {
        Bytes damaged = whole;
        for (int change = 0; change < 4; ++change)
            damaged[random () % damaged.size ()] = static_cast<std::uint8_t> (random ());
        EXPECT_LE (read (damaged).first.size (), damaged.size ());
    }
}
}
