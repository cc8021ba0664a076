#include "host/TempoMap.h"

#include "host/Sequence.h"

#include <gtest/gtest.h>

namespace
{
using namespace host;

// 100 ticks per quarter note: two at 120, then a change to 60, then to 240 at quarter 4.
MidiFile threeTempos ()
{
    MidiFile song;
    song.ticksPerQuarter = 100;
    song.tempoChanges = { { 200, 1000000 }, { 400, 250000 } };
    song.endTick = 800;
    return song;
}

TEST (TempoMap, SecondsFollowTheTempoFromEachChangeOn)
{
    const TempoMap map (threeTempos ());
    const std::vector<std::pair<std::uint64_t, double>> cases = { { 0, 0.0 },   { 100, 0.5 }, { 200, 1.0 },
                                                                  { 300, 2.0 }, { 400, 3.0 }, { 402, 3.005 },
                                                                  { 800, 4.0 } };
    for (const auto& [tick, seconds] : cases)
        EXPECT_NEAR (map.secondsAt (tick), seconds, 1e-12) << tick;
}

TEST (TempoMap, MusicalTimeIsTheWayBack)
{
    const TempoMap map (threeTempos ());
    for (std::uint64_t tick = 0; tick < 1000; tick += 7)
        EXPECT_NEAR (map.at (map.secondsAt (tick)).quarters, static_cast<double> (tick) / 100.0, 1e-9)
            << tick;
    EXPECT_DOUBLE_EQ (map.at (0.5).tempo, 120.0);
    EXPECT_DOUBLE_EQ (map.at (1.5).tempo, 60.0);
    EXPECT_DOUBLE_EQ (map.at (100.0).tempo, 240.0);
    EXPECT_DOUBLE_EQ (map.at (-1.0).quarters, 0.0);
}

TEST (TempoMap, OfTwoChangesAtOneTickTheLastCounts)
{
    MidiFile song;
    song.ticksPerQuarter = 100;
    song.tempoChanges = { { 0, 1000000 }, { 0, 250000 } };
    EXPECT_DOUBLE_EQ (TempoMap (song).secondsAt (400), 1.0);
    EXPECT_DOUBLE_EQ (TempoMap (song).at (0.0).tempo, 240.0);
}

TEST (TempoMap, BarsStartAgainAtEachTimeSignature)
{
    MidiFile song;
    song.ticksPerQuarter = 100;
    song.timeSignatures = { { 0, 3, 4 }, { 600, 6, 8 }, { 1200, 4, 4 } };
    const TempoMap map (song);
    // quarter note (two per second), start of its bar, beats, beat unit
    const std::vector<std::array<double, 4>> cases = {
        { 0.0, 0.0, 3, 4 }, { 2.9, 0.0, 3, 4 },   { 3.0, 3.0, 3, 4 },   { 6.5, 6.0, 6, 8 },
        { 9.5, 9.0, 6, 8 }, { 12.0, 12.0, 4, 4 }, { 19.0, 16.0, 4, 4 },
    };
    for (const auto& [quarter, barStart, numerator, denominator] : cases)
    {
        const MusicalTime time = map.at (quarter / 2.0);
        EXPECT_NEAR (time.barStartQuarters, barStart, 1e-9) << quarter;
        EXPECT_EQ (time.numerator, static_cast<int> (numerator)) << quarter;
        EXPECT_EQ (time.denominator, static_cast<int> (denominator)) << quarter;
    }
}

TEST (TempoMap, TimeCodeKnowsNoTempo)
{
    MidiFile song;
    song.ticksPerSecond = 1000.0;
    song.tempoChanges = { { 0, 100000 } };
    const TempoMap map (song);
    EXPECT_DOUBLE_EQ (map.secondsAt (2500), 2.5);
    EXPECT_DOUBLE_EQ (map.at (2.5).quarters, 5.0); // shown at 120
}

TEST (Sequence, MessagesFallOnTheNearestSample)
{
    MidiFile song = threeTempos ();
    song.messages = { { 1, { 0xB0, 1, 2 }, 3 }, { 201, { 0xB0, 1, 3 }, 3 } };
    const Sequence sequence = makeSequence (song, TempoMap (song), 44100.0, true);
    ASSERT_EQ (sequence.messages.size (), 2u);
    EXPECT_EQ (sequence.messages[0].sample, 221u);   // 0.005 s is 220.5 samples
    EXPECT_EQ (sequence.messages[1].sample, 44541u); // 1.01 s
    EXPECT_DOUBLE_EQ (sequence.seconds, 4.0);
}

TEST (Sequence, LetsGoAtTheEndOfKeysThatTheSongHolds)
{
    MidiFile song = threeTempos ();
    song.messages = { { 0, { 0x90, 60, 100 }, 3 },
                      { 0, { 0x93, 61, 100 }, 3 },
                      { 0, { 0x93, 62, 100 }, 3 },
                      { 9, { 0x80, 60, 64 }, 3 },
                      { 9, { 0x93, 62, 0 }, 3 } };
    const auto messages = makeSequence (song, TempoMap (song), 1000.0, true).messages;
    ASSERT_EQ (messages.size (), 6u);
    EXPECT_EQ (messages.back ().sample, 4000u);
    EXPECT_EQ (messages.back ().bytes, (std::array<std::uint8_t, 3>{ 0x83, 61, 0 }));
}

TEST (Sequence, LeavesProgramChangesOutOnRequestAlone)
{
    MidiFile song = threeTempos ();
    song.messages = { { 0, { 0xC0, 5, 0 }, 2 }, { 0, { 0xC9, 6, 0 }, 2 }, { 0, { 0xB0, 1, 2 }, 3 } };
    const TempoMap map (song);
    EXPECT_EQ (makeSequence (song, map, 1000.0, true).messages.size (), 3u);
    const auto without = makeSequence (song, map, 1000.0, false).messages;
    ASSERT_EQ (without.size (), 1u);
    EXPECT_EQ (without[0].bytes[0], 0xB0);
}
}
