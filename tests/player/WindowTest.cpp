// The player's window on a display of its own, with a mouse, a keyboard and somebody who drops files. What
// sounds is taken in place of a device.
#include <gtest/gtest.h>

#include "midi/Writer.h"
#include "parameters/Parameters.h"
#include "player/Player.h"
#include "tests/editor/Bench.h"
#include "tests/host/TemporaryFolder.h"
#include "tests/stage/Neighbour.h"
#include "tests/support/FakeSystem.h"
#include "tests/support/Signals.h"

using namespace parameters;

namespace
{
// Mouse and keys, as xdotool takes them.
void hand (const std::string& actions)
{
    EXPECT_EQ (std::system (("xdotool " + actions).c_str ()), 0) << actions;
}

class PlayerWindowTest : public testing::Test
{
protected:
    PlayerWindowTest () : performer (system.services (), {}), player (performer, { 44100.0, true, "" })
    {
        performer.instrument ().setParameter (param1Sustain, 1.0f);
        window = neighbour.find ();
        hand ("windowfocus " + std::to_string (window));
        soon ([] { return false; }, 200); // until it is drawn and has the focus
    }

    // Lets window and sound go on until it is so, ten seconds at the most.
    bool soon (const std::function<bool ()>& condition, int milliseconds = 10000)
    {
        const auto end = std::chrono::steady_clock::now () + std::chrono::milliseconds (milliseconds);
        while (!condition ())
        {
            if (std::chrono::steady_clock::now () > end)
                return false;
            player.idle (2);
            neighbour.serve ();
            performer.render (block.data (), 441);
            loudness = peakOf (block);
        }
        return true;
    }
    bool isSilentSoon ()
    {
        return soon ([this] { return loudness < 1e-4f; });
    }
    bool soundsSoon (int milliseconds = 10000)
    {
        return soon ([this] { return loudness > 1e-3f; }, milliseconds);
    }
    void strike (const std::string& key)
    {
        hand ("keydown " + key);
        EXPECT_TRUE (soundsSoon ()) << key;
        hand ("keyup " + key);
        EXPECT_TRUE (isSilentSoon ()) << key;
    }
    float get (int index) { return performer.instrument ().getParameter (index); }
    std::string title () { return neighbour.property (window, "_NET_WM_NAME"); }
    void moveToControl (int tag)
    {
        const panel::Rect& rect = controlOf (tag).rect;
        hand ("mousemove " + std::to_string (rect.x + rect.width / 2) + " " +
              std::to_string (rect.y + rect.height / 2));
    }

    // One for all, for the toolkit remembers a display's numbers for as long as the program runs.
    static VirtualDisplay& display ()
    {
        static VirtualDisplay shared;
        return shared;
    }

    VirtualDisplay& screen = display ();
    TemporaryFolder folder;
    FakeSystem system;
    player::Performer performer;
    player::Player player;
    Neighbour neighbour;
    xcb_window_t window = 0;
    std::vector<float> block = std::vector<float> (882);
    float loudness = 0.0f;
};
}

TEST_F (PlayerWindowTest, HasTitleIconAndThePanelsSize)
{
    ASSERT_NE (window, 0u);
    EXPECT_EQ (title (), "Brimvale");
    EXPECT_EQ (neighbour.property (window, "_NET_WM_ICON").size (), (64 * 64 + 2) * 4);
    EXPECT_EQ (neighbour.geometry (window).width, 612);
    EXPECT_EQ (neighbour.geometry (window).height, 433);
    performer.instrument ().setParameter (paramShowKeys, 0.0f);
    EXPECT_TRUE (soon ([this] { return neighbour.geometry (window).height < 433; }));
}

TEST_F (PlayerWindowTest, ComputerKeyboardPlaysWhileTheWindowHasTheKeys)
{
    moveToControl (paramFilterFreq); // the mouse on the panel, which has a window of its own
    strike ("q");

    // A short sound is struck once, however often the key repeats.
    performer.instrument ().setParameter (param1Sustain, 0.01f); // 0 would loop
    performer.instrument ().setParameter (param1Decay, 0.0f);
    hand ("keydown z");
    EXPECT_TRUE (soundsSoon ());
    EXPECT_TRUE (isSilentSoon ());
    EXPECT_FALSE (soundsSoon (1200));
    hand ("keyup z");
    performer.instrument ().setParameter (param1Sustain, 1.0f);

    hand ("keydown q");
    EXPECT_TRUE (soundsSoon ());
    hand ("windowfocus " + std::to_string (neighbour.makeWindow ()));
    EXPECT_TRUE (isSilentSoon ()) << "a key that is down when the focus goes";
    hand ("keyup q keydown w");
    EXPECT_FALSE (soundsSoon (300)) << "typed elsewhere";
    hand ("keyup w");

    for (int click = 0; click < 2; ++click) // the panel takes the focus, and the window takes it back
    {
        hand ("click 1");
        soon ([] { return false; }, 100);
        strike ("x");
    }
}

TEST_F (PlayerWindowTest, KeysGoToThePanelWhereItWantsThem)
{
    const float before = get (paramFilterFreq);
    moveToControl (paramFilterFreq);
    EXPECT_TRUE (soon (
        [&]
        {
            hand ("key Up");
            return get (paramFilterFreq) != before;
        }));
    const float turned = get (paramFilterFreq);
    hand ("keydown ctrl keydown z"); // takes it back instead of playing a C
    EXPECT_TRUE (soon ([&] { return get (paramFilterFreq) != turned; }));
    EXPECT_FALSE (soundsSoon (200));
    hand ("keyup z keyup ctrl");

    hand ("keydown shift click --repeat 2 --delay 50 1 keyup shift"); // opens a field
    soon ([] { return false; }, 300);
    hand ("key 3 keydown z");
    EXPECT_FALSE (soundsSoon (300)) << "typed into the field";
    hand ("keyup z key BackSpace Return");
    EXPECT_TRUE (soon ([&] { return get (paramFilterFreq) != before; }));
    strike ("z");
}

TEST_F (PlayerWindowTest, DroppedSongIsPlayedPausedAndSought)
{
    midi::Song song;
    song.ticksPerQuarter = 480;
    song.endTick = std::uint64_t{ 480 } * 240;
    song.messages = { { 0, { 0x90, 60, 100 }, 3 }, { song.endTick, { 0x80, 60, 0 }, 3 } };
    folder.write ("a song.mid", midi::fileBytes (song));
    folder.write ("no song.mid", std::string ("nothing"));

    const xcb_window_t source = neighbour.makeWindow ();
    const auto drop = [&] (const std::string& list)
    {
        neighbour.offer (source, list);
        neighbour.tell (window, "XdndEnter", { source, 5 << 24, neighbour.atom ("text/uri-list") });
        neighbour.tell (window, "XdndPosition", { source, 0, 0, 0, neighbour.atom ("XdndActionCopy") });
        EXPECT_TRUE (soon ([&] { return neighbour.hasHeard ("XdndStatus", 1); }));
        neighbour.tell (window, "XdndDrop", { source });
    };
    EXPECT_EQ (neighbour.property (window, "XdndAware").size (), 4u);
    const std::string folderUri = "file://" + folder.folder ().string ();
    drop ("# a list\r\n" + folderUri + "/a%20song.mid\r\n");
    EXPECT_TRUE (soundsSoon ());
    EXPECT_TRUE (neighbour.hasHeard ("XdndFinished", 1));
    EXPECT_TRUE (title ().starts_with ("a song.mid 0:0")) << title ();
    EXPECT_TRUE (title ().ends_with (" / 2:00 - Brimvale")) << title ();

    hand ("mousemove 330 300 key space"); // beside all controls
    EXPECT_TRUE (isSilentSoon ());
    EXPECT_NE (title ().find (" (paused)"), std::string::npos);
    const double stood = performer.songPlayer ().seconds ();
    hand ("key Right Right Left Right");
    EXPECT_TRUE (soon ([&] { return performer.songPlayer ().seconds () > stood + 9.99; }));
    hand ("key Home");
    EXPECT_TRUE (soon ([&] { return performer.songPlayer ().seconds () == 0.0; }));

    drop (folderUri + "/no%20song.mid");
    EXPECT_TRUE (soon ([this] { return !system.messages.empty (); }));
    EXPECT_TRUE (title ().starts_with ("a song.mid ")) << "the song before stays";
}
