#include "host/MidiFile.h"

#include "tests/host/MidiBytes.h"

#include <gtest/gtest.h>
#include <random>

namespace
{
using namespace host;
using namespace midiBytes;
using Message = std::array<std::uint8_t, 3>;

std::vector<std::pair<std::uint64_t, Message>> messages (const MidiFile& song)
{
    std::vector<std::pair<std::uint64_t, Message>> list;
    for (const MidiMessage& message : song.messages)
        list.emplace_back (message.tick, message.bytes);
    return list;
}

using List = std::vector<std::pair<std::uint64_t, Message>>;

TEST (MidiFile, ReadsEveryKindOfChannelMessageAndItsLength)
{
    const Bytes events = { 0,    0x91, 60, 100, 10,   0x81, 60, 0,    0,  0xA1, 60,   5, 0,
                           0xB1, 7,    90, 0,   0xC1, 12,   0,  0xD1, 33, 0,    0xE1, 0, 64 };
    const MidiFile song = parseMidiFile (header (0, 1, 96) + track (events));
    const List expected = { { 0, { 0x91, 60, 100 } }, { 10, { 0x81, 60, 0 } }, { 10, { 0xA1, 60, 5 } },
                            { 10, { 0xB1, 7, 90 } },  { 10, { 0xC1, 12, 0 } }, { 10, { 0xD1, 33, 0 } },
                            { 10, { 0xE1, 0, 64 } } };
    EXPECT_EQ (messages (song), expected);
    EXPECT_EQ (song.messages[0].length, 3);
    EXPECT_EQ (song.messages[4].length, 2);
    EXPECT_EQ (song.ticksPerQuarter, 96);
    EXPECT_EQ (song.endTick, 10u);
}

TEST (MidiFile, RunningStatusHoldsAlsoAcrossMetaEvents)
{
    const Bytes events = { 0, 0x90, 60, 100, 5, 62, 100, 0, 0xFF, 0x06, 1, 'x', 5, 60, 0 };
    const List expected = { { 0, { 0x90, 60, 100 } }, { 5, { 0x90, 62, 100 } }, { 10, { 0x90, 60, 0 } } };
    EXPECT_EQ (messages (parseMidiFile (header (0, 1, 96) + track (events))), expected);
}

TEST (MidiFile, MergesTracksByTimeAndKeepsTheirOrderAtOneTime)
{
    const Bytes first = { 0, 0xC0, 3, 100, 0x90, 60, 1 };
    const Bytes second = { 0, 0x91, 70, 2, 50, 0x81, 70, 0, 50, 0x91, 72, 3, 0x83, 0x60, 0x81, 72, 0 };
    const MidiFile song = parseMidiFile (header (1, 2, 480) + track (first) + track (second));
    const List expected = { { 0, { 0xC0, 3, 0 } },    { 0, { 0x91, 70, 2 } },   { 50, { 0x81, 70, 0 } },
                            { 100, { 0x90, 60, 1 } }, { 100, { 0x91, 72, 3 } }, { 580, { 0x81, 72, 0 } } };
    EXPECT_EQ (messages (song), expected);
    EXPECT_EQ (song.endTick, 580u); // of the longest track
}

TEST (MidiFile, ReadsTempoAndTimeSignatureAndPassesOverSystemExclusive)
{
    const Bytes events = { 0, 0xFF, 0x51, 3,    0x06, 0x1A, 0x80, 0,  0xFF, 0x58, 4,  6,    3,    24,
                           8, 0,    0xF0, 3,    0x41, 0x10, 0xF7, 96, 0xFF, 0x51, 3,  0x0F, 0x42, 0x40,
                           0, 0xF7, 1,    0x55, 0,    0xFF, 0x58, 4,  0,    2,    24, 8 };
    const MidiFile song = parseMidiFile (header (0, 1, 96) + track (events));
    ASSERT_EQ (song.tempoChanges.size (), 2u);
    EXPECT_EQ (song.tempoChanges[0].microsecondsPerQuarter, 400000u);
    EXPECT_EQ (song.tempoChanges[1].microsecondsPerQuarter, 1000000u);
    EXPECT_EQ (song.tempoChanges[1].tick, 96u);
    ASSERT_EQ (song.timeSignatures.size (), 1u) << "a bar of no beats is left out";
    EXPECT_EQ (song.timeSignatures[0].numerator, 6);
    EXPECT_EQ (song.timeSignatures[0].denominator, 8);
    EXPECT_TRUE (song.messages.empty ());
}

TEST (MidiFile, AcceptsWhatTheFormatAllows)
{
    const Bytes note = { 0, 0x90, 60, 100 };
    const Bytes plain = header (0, 1, 96) + track (note);
    const Bytes longHeader = chunk ("MThd", Bytes{ 0, 0, 0, 1, 0, 96, 1, 2, 3 }) + track (note);
    const Bytes foreign = header (0, 1, 96) + chunk ("XFIH", { 1, 2, 3 }) + track (note);
    const Bytes noEnd = header (0, 1, 96) + chunk ("MTrk", note);
    const Bytes afterEnd = header (0, 1, 96) + chunk ("MTrk", note + endOfTrack + Bytes{ 0, 0x12 });
    const Bytes riff = text ("RIFF") + bigEndian (0, 4) + text ("RMIDdata") + bigEndian (0, 4) + plain;
    const Bytes trailing = plain + text ("more");
    for (const Bytes& bytes : { plain, longHeader, foreign, noEnd, afterEnd, riff, trailing })
        EXPECT_EQ (messages (parseMidiFile (bytes)), (List{ { 0, { 0x90, 60, 100 } } }));
}

TEST (MidiFile, TimeCodeDivisionsGiveTicksPerSecond)
{
    const std::vector<std::pair<std::uint32_t, double>> cases = { { 0xE728, 25.0 * 40.0 },
                                                                  { 0xE850, 24.0 * 80.0 },
                                                                  { 0xE264, 30.0 * 100.0 },
                                                                  { 0xE350, 30000.0 / 1001.0 * 80.0 } };
    for (const auto& [division, ticksPerSecond] : cases)
    {
        const MidiFile song = parseMidiFile (header (0, 1, division) + track ({}));
        EXPECT_DOUBLE_EQ (song.ticksPerSecond, ticksPerSecond);
        EXPECT_EQ (song.ticksPerQuarter, 0);
    }
}

TEST (MidiFile, SaysWhatIsWrongWithADamagedFile)
{
    const Bytes head = header (0, 1, 96);
    const auto broken = [&] (const Bytes& events) { return head + chunk ("MTrk", events); };
    const std::vector<std::pair<Bytes, std::string>> cases = {
        { {}, "not a MIDI file" },
        { text ("RIFF"), "not a MIDI file" },
        { text ("RIFF....WAVEfmt "), "not a MIDI file" },
        { text ("MThd"), "ends in the middle" },
        { text ("MThd") + bigEndian (6, 4) + Bytes{ 0, 0 }, "should hold 6 bytes, but only 2" },
        { chunk ("MThd", { 0, 0, 0, 1 }), "header is too short" },
        { header (2, 1, 96) + track ({}), "format 2" },
        { header (0, 0, 96), "no tracks" },
        { header (0, 1, 0) + track ({}), "no ticks per quarter" },
        { header (0, 1, 0x8028) + track ({}), "time code" },
        { header (0, 1, 0xE700) + track ({}), "time code" },
        { head, "track 1 of 1 is missing" },
        { header (1, 2, 96) + track ({}), "track 2 of 2 is missing" },
        { head + text ("MTrk") + bigEndian (0xFFFFFFFF, 4) + Bytes{ 0 }, "4294967295 bytes, but only 1" },
        { broken ({ 0 }), "ends in the middle" },
        { broken ({ 0, 0x90, 60 }), "ends in the middle" },
        { broken ({ 0, 60, 100 }), "belongs to no message" },
        { broken ({ 0, 0x90, 60, 0x90 }), "breaks off" },
        { broken ({ 0xFF, 0xFF, 0xFF, 0xFF, 0x7F, 0x90, 60, 1 }), "longer than four bytes" },
        { broken ({ 0, 0xFF, 0x51, 3, 0, 0, 0 }), "endless tempo" },
        { broken ({ 0, 0xFF, 0x03, 0x90, 0x00, 'a' }), "ends in the middle" },
        { broken ({ 0, 0xF0, 0x81, 0x00, 1 }), "ends in the middle" },
        { broken ({ 0, 0xF8 }), "system message" },
    };
    for (const auto& [bytes, part] : cases)
    {
        try
        {
            parseMidiFile (bytes);
            ADD_FAILURE () << "accepted, expected: " << part;
        }
        catch (const MidiFileError& error)
        {
            EXPECT_NE (std::string (error.what ()).find (part), std::string::npos)
                << error.what () << ", expected: " << part;
        }
    }
}

// Whatever happens to a file on its way, it is played or refused.
TEST (MidiFile, SurvivesEveryCutAndRandomDamage)
{
    const Bytes events = { 0,    0xFF, 0x51, 3, 7,    0xA1, 0x20, 0,    0x90, 60,   100, 0x81,
                           0x10, 60,   0,    0, 0xF0, 2,    1,    0xF7, 5,    0xC0, 9,   0,
                           0xFF, 0x58, 4,    3, 2,    24,   8,    0,    0xE0, 1,    2 };
    const Bytes whole = header (1, 2, 96) + track (events) + track (events);
    const auto outcome = [] (const Bytes& bytes)
    {
        try
        {
            return parseMidiFile (bytes).messages.size ();
        }
        catch (const MidiFileError&)
        {
            return std::size_t{ 0 };
        }
    };
    EXPECT_EQ (outcome (whole), 8u);
    for (std::size_t length = 0; length < whole.size (); ++length)
        EXPECT_EQ (outcome (Bytes (whole.begin (), whole.begin () + static_cast<std::ptrdiff_t> (length))),
                   0u)
            << length;

    std::mt19937 random (1);
    for (int round = 0; round < 20000; ++round)
    {
        Bytes damaged = whole;
        for (int change = 0; change < 4; ++change)
            damaged[random () % damaged.size ()] = static_cast<std::uint8_t> (random ());
        EXPECT_LE (outcome (damaged), damaged.size ());
    }
}
}
