// What the player plays: songs, and keys by hand. No window, no device.
#include <gtest/gtest.h>

#include "host/Renderer.h"
#include "midi/Reader.h"
#include "midi/Writer.h"
#include "parameters/Parameters.h"
#include "player/ComputerKeyboard.h"
#include "player/Performer.h"
#include "tests/host/TemporaryFolder.h"
#include "tests/player/SentEvents.h"
#include "tests/support/FakeSystem.h"
#include "tests/support/Signals.h"

using namespace player;

namespace
{
constexpr int rate = 44100;
constexpr std::uint32_t block = 512;

using Messages = std::vector<std::pair<double, std::array<std::uint8_t, 3>>>; // each at a beat

// One beat, of 480 ticks, lasts half a second.
std::filesystem::path writeSong (const TemporaryFolder& folder, const Messages& messages, double beats)
{
    midi::Song song;
    song.ticksPerQuarter = 480;
    song.endTick = static_cast<std::uint64_t> (beats * 480);
    for (const auto& [beat, bytes] : messages)
        song.messages.push_back ({ static_cast<std::uint64_t> (beat * 480), bytes,
                                   (bytes[0] & 0xF0) == 0xC0 || (bytes[0] & 0xF0) == 0xD0 ? 2 : 3 });
    folder.write ("song.mid", midi::fileBytes (song));
    return folder / "song.mid";
}

std::vector<float> renderBlocks (Performer& performer, std::size_t blocks)
{
    std::vector<float> stereo (blocks * 2 * block);
    for (std::size_t n = 0; n < blocks; ++n)
        performer.render (&stereo[n * 2 * block], block);
    return stereo;
}

class PerformerTest : public testing::Test
{
protected:
    PerformerTest () : performer (system.services (), {})
    {
        performer.instrument ().setParameter (parameters::param1Sustain, 1.0f);
    }

    std::vector<float> render (double seconds)
    {
        return renderBlocks (performer, static_cast<std::size_t> (std::ceil (seconds * rate / block)));
    }
    // Once what has ended has died away.
    bool sounds ()
    {
        render (3.0);
        return peakOf (render (0.1)) > 1e-3f;
    }
    void openSong (const Messages& messages, double beats)
    {
        performer.songPlayer ().open (readSong (writeSong (folder, messages, beats), rate, true));
    }

    TemporaryFolder folder;
    FakeSystem system;
    Performer performer;
};
}

TEST_F (PerformerTest, SongSoundsBitForBitAsTheRendererPlaysIt)
{
    Messages messages = { { 0.0, { 0xC0, 5, 0 } }, { 0.0, { 0xB0, 11, 90 } } };
    for (int note = 0; note < 24; ++note)
    {
        const auto key = static_cast<std::uint8_t> (40 + note);
        messages.push_back ({ note * 0.37, { 0x90, key, 100 } });
        messages.push_back ({ note * 0.37 + 0.1, { 0xE0, 0, static_cast<std::uint8_t> (30 + note) } });
        if (note % 3 != 0) // every third one ends with the song
            messages.push_back ({ note * 0.37 + 0.3, { 0x80, key, 0 } });
        if (note == 12)
            messages.push_back ({ note * 0.37 + 0.35, { 0xC0, 60, 0 } });
    }
    const auto file = writeSong (folder, messages, 9.3);

    const midi::Song song = midi::read (file);
    const host::TempoMap tempos (song);
    const host::Sequence sequence = host::makeSequence (song, tempos, rate, true);
    host::Plugin plugin (BRIMVALE_LIBRARY);
    std::vector<float> expected;
    host::Renderer ({ { plugin, sequence } }, tempos, { rate, block, 2.0, rate * 60 })
        .render ([&] (std::span<const float> stereo)
                 { expected.insert (expected.end (), stereo.begin (), stereo.end ()); },
                 [] (double, double) {});

    Performer fresh (system.services (), {});
    fresh.songPlayer ().open (readSong (file, rate, true));
    fresh.songPlayer ().play ();
    EXPECT_GT (peakOf (expected), 0.01f);
    EXPECT_EQ (renderBlocks (fresh, expected.size () / 2 / block), expected);
    EXPECT_FALSE (fresh.songPlayer ().isPlaying ());
    EXPECT_DOUBLE_EQ (fresh.songPlayer ().seconds (), std::ceil (4.65 * rate) / rate);
}

TEST_F (PerformerTest, PausesSeeksAndStartsAgain)
{
    SongPlayer& song = performer.songPlayer ();
    song.play ();
    EXPECT_FALSE (song.isPlaying ()) << "without a song";
    // A long note, a program, and a fade to nothing from 4 s on.
    openSong ({ { 0.0, { 0xC0, 0, 0 } },
                { 0.0, { 0xB0, 64, 127 } },
                { 4.0, { 0x90, 60, 100 } },
                { 6.0, { 0xC0, 7, 0 } },
                { 8.0, { 0xB0, 11, 0 } },
                { 60.0, { 0x80, 60, 0 } } },
              60.0);
    song.seek (1.9);
    EXPECT_DOUBLE_EQ (song.seconds (), 1.9);
    song.play ();
    const std::vector<float> sound = render (0.2);
    const int first = firstSound (sound) / 2;
    EXPECT_NEAR (first, 0.1 * rate, 5) << "an event counts from where the song was sought to";
    EXPECT_TRUE (song.isPlaying ());
    EXPECT_NEAR (song.seconds (), 2.1, 0.02);

    song.pause ();
    const double stood = song.seconds ();
    EXPECT_FALSE (sounds ()) << "paused: keys and pedal are up";
    EXPECT_DOUBLE_EQ (song.seconds (), stood);
    song.seek (3.5);
    render (0.1);
    EXPECT_EQ (performer.instrument ().getProgram (), 7) << "the program of that place";
    song.seek (100.0);
    EXPECT_NEAR (song.seconds (), 30.0, 1e-4);
    song.seek (-1.0);
    song.play ();
    performer.liveEvents ().send ({ 0x90, 72, 100 });
    render (0.5);
    EXPECT_EQ (performer.instrument ().getProgram (), 0);
    song.seek (5.0);
    render (0.1); // it plays on, with expression 0
    performer.liveEvents ().send ({ 0x90, 72, 100 });
    EXPECT_LT (peakOf (render (0.3)), 1e-3f);
    song.pause ();
    render (3.0);
    performer.liveEvents ().send ({ 0x90, 72, 100 });
    EXPECT_TRUE (sounds ()) << "a song that stands mutes nobody";

    // A song that ends by itself starts again.
    openSong ({ { 0.0, { 0x90, 50, 100 } } }, 1.0);
    song.play ();
    render (1.0);
    EXPECT_FALSE (song.isPlaying ());
    song.play ();
    EXPECT_EQ (song.seconds (), 0.0);
    render (0.1);
    EXPECT_TRUE (song.isPlaying ());
}

TEST_F (PerformerTest, JumpBringsWhatTheSongHasSetByThen)
{
    const Messages messages = { { 0.0, { 0xB0, 101, 0 } }, { 0.0, { 0xB0, 100, 0 } },
                                { 0.0, { 0xB0, 6, 12 } },  { 0.0, { 0xB0, 101, 127 } },
                                { 0.5, { 0xE0, 1, 90 } },  { 1.0, { 0xC3, 9, 0 } },
                                { 2.0, { 0xE5, 2, 80 } },  { 2.0, { 0xB0, 123, 0 } },
                                { 2.5, { 0xB0, 7, 5 } },   { 3.0, { 0xC0, 1, 0 } } };
    SongPlayer song; // at first it sets the wheel's range
    song.open (readSong (writeSong (folder, messages, 4.0), rate, true));
    song.seek (1.4); // beat 2.8
    song.beginBlock (block);
    const std::vector<ShortMessage> expected = { { 0xC3, 9, 0 },  { 0xB0, 101, 0 },   { 0xB0, 100, 0 },
                                                 { 0xB0, 6, 12 }, { 0xB0, 101, 127 }, { 0xE5, 2, 80 },
                                                 { 0xB0, 7, 5 } };
    ASSERT_EQ (song.interjectionCount (), expected.size ());
    for (std::size_t n = 0; n < expected.size (); ++n)
        EXPECT_EQ (song.interjection (n), expected[n]) << n;
    EXPECT_FALSE (song.transport ().has_value ()) << "while it stands";
    song.play ();
    song.beginBlock (block);
    ASSERT_TRUE (song.transport ().has_value ());
    EXPECT_EQ (song.transport ()->samplePosition, std::round (1.4 * rate));
    EXPECT_EQ (song.transport ()->tempo, 120.0);
    EXPECT_NEAR (song.transport ()->quarterPosition.value (), 2.8, 1e-4);
}

TEST_F (PerformerTest, KeyIsNotHeldForEverWhenMessagesAreLost)
{
    performer.liveEvents ().send ({ 0x90, 60, 100 });
    EXPECT_TRUE (sounds ());
    for (std::size_t n = 0; n < LiveEvents::capacity; ++n)
        performer.liveEvents ().send ({ 0xA0, 60, 1 });
    performer.liveEvents ().send ({ 0x80, 60, 0 }); // which finds no place
    EXPECT_FALSE (sounds ());
}

TEST (ComputerKeyboard, PlaysByPlaceFromCToE)
{
    LiveEvents events;
    ComputerKeyboard keyboard (events);
    using Row = std::pair<int, std::uint8_t>; // a key and its note; 0: none
    for (const auto& [key, note] :
         { Row{ 0x2C, 48 }, Row{ 0x1F, 49 }, Row{ 0x35, 64 }, Row{ 0x10, 60 }, Row{ 0x03, 61 },
           Row{ 0x19, 76 }, Row{ 0x1E, 0 }, Row{ 0x21, 0 }, Row{ 0x05, 0 } })
    {
        EXPECT_EQ (keyboard.press (key), note != 0) << key;
        keyboard.press (key); // again, as one that repeats
        keyboard.release (key);
        const std::vector<ShortMessage> expected = { { 0x90, note, 100 }, { 0x80, note, 0 } };
        EXPECT_EQ (sentBy (events), note != 0 ? expected : std::vector<ShortMessage> ()) << key;
    }
    // The rows share some notes, and a key that is down keeps its note while the octave changes.
    keyboard.press (0x33);
    keyboard.press (0x10);
    keyboard.release (0x33);
    keyboard.shift (-9);
    keyboard.press (0x2C);
    keyboard.releaseAll ();
    keyboard.shift (20);
    keyboard.press (0x19);
    const std::vector<ShortMessage> expected = { { 0x90, 60, 100 }, { 0x90, 60, 100 }, { 0x90, 0, 100 },
                                                 { 0x80, 60, 0 },   { 0x80, 0, 0 },    { 0x90, 124, 100 } };
    EXPECT_EQ (sentBy (events), expected);
}
