// The editor in a real window, seen and played from outside. The same tests run on both libraries, and each
// opening takes Wine seconds: what can follow one another in one window does.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <utility>

#include "editor/MenuTable.h"
#include "parameters/Parameters.h"
#include "tests/editor/Bench.h"
#include "tests/host/TemporaryFolder.h"

using namespace editor;
using namespace parameters;

namespace
{
// On the lowest of its keys, middle C is the eighth white one.
const panel::Rect middleC = { 39 + 7 * 35, 380, 35, 33 };

class EditorWindow : public testing::Test
{
protected:
    void SetUp () override { ASSERT_EQ (bench.open ().find ("error"), std::string::npos); }

    // Whether a control stands where its parameter is.
    bool standsAt (int tag, float value)
    {
        const panel::Control& control = controlOf (tag);
        const panel::Rect& rect = control.rect;
        if (control.kind == panel::ControlKind::slider) // the handle is 6 of 100 pixels wide
            return Bench::eventually (
                [&, left = static_cast<int> (value * 94.0f)] {
                    return matches (bench.redrawnPicture (), { rect.x + left, rect.y, 6, 10 },
                                    bitmapFile (184), 1);
                });
        // Equal steps, the last one at the very end; what lies between off and on is on.
        const int frames = panel::findBitmap (control.bitmapId)->frames;
        const bool isOn = control.kind == panel::ControlKind::onOffButton && value > 0.0f;
        const int frame = isOn ? 1 : static_cast<int> (static_cast<double> (value) * (frames - 1));
        return bench.shows (panel::paintedRect (control), control.bitmapId, frame);
    }
    void hostSets (int tag, float value)
    {
        bench.say ("set " + std::to_string (tag) + " " + std::to_string (value));
    }
    void moveInto (const panel::Rect& rect)
    {
        bench.moveTo (rect.x + rect.width / 2, rect.y + rect.height / 2);
    }
    void moveToControl (int tag) { moveInto (controlOf (tag).rect); }
    void moveAway () { bench.moveTo (300, 300); } // from every control, and no help is shown
    bool parameterBecomes (int index, float value)
    {
        return Bench::eventually ([&] { return std::abs (bench.parameter (index) - value) < 1e-4f; });
    }
    bool answers (const std::string& question, const std::string& answer)
    {
        return Bench::eventually ([&] { return bench.say (question) == answer; });
    }
    void clickMenuButton ()
    {
        moveInto (panel::menuButtonRect);
        EXPECT_TRUE (bench.changesAfter ("click 1"));
    }
    // Whether the frame that marks a learning control lies around it.
    bool learnMarkIs (int tag, bool there)
    {
        const panel::Rect& rect = controlOf (tag).rect;
        return Bench::eventually (
            [&]
            { return (bench.redrawnPicture ().at (rect.x, rect.y + 3) == panel::accentColour) == there; });
    }
    // The main menu, with the entry of a submenu or of one of the panel's own commands selected.
    void openMenuAt (std::int32_t tag)
    {
        std::vector<std::int32_t> tags (menuTable (commandMainMenu).entries.size (), -1);
        for (const MenuTable& table : menuTables ().subspan (1))
            tags.push_back (table.tag);
        for (const CommandEntry& entry : commandEntries ())
        {
            // The system's own menus stop at what cannot be chosen, too.
            if (entry.tag == tag || Bench::isWine () || entry.tag >= commandRenameProgram)
                tags.push_back (entry.tag);
        }
        clickMenuButton ();
        std::string presses;
        for (auto at = tags.begin (); at == tags.begin () || at[-1] != tag; ++at)
            presses += "Down ";
        bench.keys (presses);
    }
    // With its first entry selected.
    void openSubmenu (std::int32_t tag)
    {
        openMenuAt (tag);
        bench.keys ("Right");
    }
    bool pictureBecomes (const Picture& wanted)
    {
        return Bench::eventually ([&] { return bench.redrawnPicture () == wanted; });
    }
    Picture shownProgram ()
    {
        const panel::Rect& place = panel::programDisplayRect;
        return bench.redrawnPicture ().part (place.x, place.y, place.width, place.height);
    }

    Bench bench;
};

TEST_F (EditorWindow, ControlsFollowTheHost)
{
    // A parameter, its value, the control that shows it and as what; the lamps have tags of their own.
    using Row = std::tuple<int, float, int, float>;
    for (const auto& [index, value, tag, shown] :
         { Row{ paramFilterFreq, 0.25f, paramFilterFreq, 0.25f }, Row{ paramFilterType, 0.5f, 20, 0.5f },
           Row{ paramOsc1Range, 1.0f, paramOsc1Range, 1.0f }, Row{ paramLfoWave, 0.8f, paramLfoWave, 0.8f },
           Row{ paramVelocityAmp, 1.0f, paramVelocityAmp, 1.0f },
           Row{ paramVoices, 0.0f, paramVoices, 0.0f }, // sixteen voices play from 0.9334 on:
           Row{ paramVoices, 0.93f, paramVoices, 0.93f }, Row{ paramVoices, 0.95f, paramVoices, 1.0f },
           Row{ paramFilterFreq, 1.0f, paramFilterFreq, 1.0f }, Row{ paramOsc1Vol, 0.0f, paramOsc1Vol, 0.0f },
           Row{ paramOsc1Vol, 1.0f, paramOsc1Vol, 1.0f }, Row{ paramOsc2Vol, 0.5f, paramOsc2Vol, 0.5f },
           Row{ param1Sustain, 0.0f, 39, 1.0f }, Row{ param1Sustain, 0.5f, 39, 0.0f },
           Row{ paramLfoFilter, 0.49f, 41, 0.0f }, // snaps to the centre
           Row{ param2ToFilter, 1.0f, 42, 1.0f }, Row{ paramSmothFilt, 0.3f, paramSmothFilt, 0.3f },
           Row{ paramFilterKeyTrak, 0.3f, paramFilterKeyTrak, 0.3f } })
    {
        hostSets (index, value);
        EXPECT_TRUE (standsAt (tag, shown)) << index << " at " << value;
    }
    moveToControl (42);
    bench.mouse ("click 1");
    EXPECT_TRUE (standsAt (42, 1.0f)) << "lamps do not switch";
    const panel::Rect place = { 222, 190, 25, 12 }; // of the rate's display, in Hertz or parts of a bar
    const auto display = [&]
    { return bench.redrawnPicture ().part (place.x, place.y, place.width, place.height); };
    hostSets (paramLfoBmpSync, 0.0f);
    hostSets (paramLfoRate, 0.5f);
    EXPECT_TRUE (standsAt (paramLfoRate, 0.5f)); // drawn together with its display
    const Picture hertz = display ();
    hostSets (paramLfoBmpSync, 1.0f);
    EXPECT_TRUE (Bench::eventually ([&] { return display () != hertz; }));
    hostSets (paramLfoBmpSync, 0.0f);
    EXPECT_TRUE (Bench::eventually ([&] { return display () == hertz; }));
    EXPECT_EQ (bench.say ("calls"), "") << "what comes from the host does not go back to it";
}

TEST_F (EditorWindow, MouseAndKeysTurnControls)
{
    moveAway ();
    bench.mouse ("click 1"); // the window gets the keys
    struct Row
    {
        int tag;
        float from;
        const char* actions;
        float to;
    };
    const Row rows[] = {
        // 200 pixels are the whole travel, or five times as many
        { paramFilterFreq, 0.5f,
          "mousedown 1 mousemove_relative -- 0 -10 mousemove_relative -- 0 -10 mouseup 1", 0.6f },
        { paramMasterP, 0.25f, "keydown ctrl click 1 keyup ctrl", 0.5f },
        { paramLfoBmpSync, 0.3f, "click 1", 0.0f },
        { paramSmothFilt, 0.3f, "click 1", 0.0f },
        { paramFilterKeyTrak, 0.0f, "click 1", 1.0f },
        // pauses that are too long for a double click, and then one
        { paramFilterFreq, 0.25f, "click 1 sleep 0.6 click --repeat 2 --delay 60 1", 1.0f },
        { paramFilterFreq, 0.5f, "click 4 click 4 click 4 click 5", 0.54f },
        { paramOsc1Vol, 0.5f, "click 4 click 4 click 4 click 5", 0.54f },
        { paramOsc2Vol, 0.5f, "click 4 click 4 click 4 click 5", 0.54f },
        { paramLfoWave, 0.0f, "click 4 click 4", 0.4f }, // two of the six positions on
        { paramLfoWave, 0.4f, "click --repeat 9 --delay 30 5", 0.0f },
        { paramFilterFreq, 0.5f, "key --delay 60 Up Up Right Down", 0.54f },
        { paramFilterFreq, 0.54f, "keydown shift sleep 0.1 key Left sleep 0.1 keyup shift", 0.538f },
        { paramFilterFreq, 0.5f,
          "sleep 0.6 keydown shift mousedown 1 mousemove_relative -- 0 -20 "
          "mousemove_relative -- 0 -20 mouseup 1 keyup shift",
          0.52f },
        { paramLfoBmpSync, 0.0f, "key Up", 1.0f },
    };
    for (const Row& row : rows)
    {
        SCOPED_TRACE (testing::Message () << row.tag << " " << row.actions);
        moveAway ();
        hostSets (row.tag, row.from);
        EXPECT_TRUE (standsAt (row.tag, row.from));
        bench.say ("calls");
        moveToControl (row.tag);
        bench.mouse (row.actions);
        EXPECT_TRUE (parameterBecomes (row.tag, row.to));
        EXPECT_TRUE (standsAt (row.tag, row.to));
        char last[32];
        std::snprintf (last, sizeof last, " %.4f;end %d;", static_cast<double> (row.to), row.tag);
        const std::string calls = bench.callsUntil (last);
        EXPECT_TRUE (calls.starts_with ("begin " + std::to_string (row.tag) + ";")) << calls;
        EXPECT_TRUE (calls.ends_with (last)) << calls;
    }
}

TEST_F (EditorWindow, NamesAndValuesCanBeTyped)
{
    openMenuAt (commandRenameProgram);
    bench.keys ("Return ctrl+a");
    bench.mouse ("type --delay 30 'Mine'");
    bench.keys ("Return");
    EXPECT_TRUE (answers ("name ?", "Mine"));
    EXPECT_NE (bench.callsUntil ("display;").find ("display;"), std::string::npos);

    const auto type = [this] (const std::string& text, const std::string& end)
    {
        EXPECT_TRUE (bench.changesAfter ("keydown shift click --repeat 2 --delay 60 1 keyup shift"))
            << "a field";
        bench.keys ("ctrl+a");
        bench.mouse ("type --delay 30 '" + text + "'");
        bench.keys (end);
    };
    hostSets (paramFilterFreq, 0.25f);
    EXPECT_TRUE (standsAt (paramFilterFreq, 0.25f));
    moveToControl (paramFilterFreq);
    type ("1715 Hz", "Return");
    EXPECT_TRUE (parameterBecomes (paramFilterFreq, 0.5f));
    EXPECT_TRUE (standsAt (paramFilterFreq, 0.5f));
    EXPECT_NE (bench.callsUntil ("automate 18").find ("begin 18;"), std::string::npos);
    type ("100", "Escape");
    EXPECT_FALSE (bench.parameter (paramFilterFreq) < 0.4f) << "Escape takes nothing";
    moveToControl (paramOsc1Wave);
    type ("pulse", "Return");
    EXPECT_TRUE (parameterBecomes (paramOsc1Wave, 1.0f));
}

TEST_F (EditorWindow, KeyboardPlaysNotes)
{
    const auto looksLike = [this] (int x, int bitmap)
    {
        const panel::Rect key = { x, middleC.y, middleC.width, middleC.height };
        return Bench::eventually (
            [&] { return matches (bench.redrawnPicture (), key, bitmapFile (bitmap), 64); });
    };
    const auto isHeard = [this] (bool heard)
    { return Bench::eventually ([&] { return (std::stof (bench.say ("render 40")) > 0.01f) == heard; }); };
    bench.moveTo (middleC.x + 5, 400);
    bench.mouse ("mousedown 1");
    EXPECT_TRUE (looksLike (middleC.x, panel::whiteKeyDownId));
    EXPECT_TRUE (isHeard (true));
    bench.mouse ("mousemove_relative 35 0"); // on to D
    EXPECT_TRUE (looksLike (middleC.x, panel::whiteKeyUpId)) << "the key left behind comes up";
    bench.mouse ("mouseup 1");
    EXPECT_TRUE (looksLike (middleC.right (), panel::whiteKeyUpId));
    EXPECT_TRUE (isHeard (false));

    bench.mouse ("mousedown 1");
    EXPECT_TRUE (isHeard (true));
    bench.say ("close");
    EXPECT_TRUE (isHeard (false)) << "closing ends the key under the mouse";
    bench.mouse ("mouseup 1");
}

TEST_F (EditorWindow, MenusOpenSetAndTakeBack)
{
    moveAway ();
    const Picture before = bench.redrawnPicture ();
    EXPECT_TRUE (bench.changesAfter ("click 3"));
    bench.keys ("Escape");
    EXPECT_TRUE (pictureBecomes (before));

    hostSets (paramHighQuality, 0.0f);
    bench.say ("calls");
    openSubmenu (paramHighQuality);
    bench.keys ("Escape Right Down Return"); // Escape leaves the submenu alone
    EXPECT_TRUE (parameterBecomes (paramHighQuality, 1.0f)) << "its second entry is Off, which is 1";
    EXPECT_EQ (bench.callsUntil ("end 34;"), "begin 34;automate 34 1.0000;end 34;");
    openMenuAt (commandUndo);
    bench.keys ("Return");
    EXPECT_TRUE (parameterBecomes (paramHighQuality, 0.0f));

    // Without the keyboard the menu has no room below its button.
    hostSets (paramShowKeys, 0.0f);
    bench.callsUntil ("size");
    clickMenuButton ();
    const panel::Rect& button = panel::menuButtonRect;
    EXPECT_TRUE (Bench::isWine () || matches (bench.picture (), { button.x, button.y, 3, button.height },
                                              bitmapFile (panel::smallButtonBitmapId), button.height))
        << "no entry lies under the press";
    bench.keys ("Escape");
}

TEST_F (EditorWindow, MenuSwitchesAnAddition)
{
    const auto plays = [this]
    {
        bench.say ("midi 176 7 0");
        bench.say ("midi 144 60 100");
        return bench.say ("render 4") != "0.000000";
    };
    EXPECT_TRUE (plays ());
    openMenuAt (commandPedalAndWheel);
    bench.keys ("Return");
    EXPECT_NE (bench.callsUntil ("display;").find ("display;"), std::string::npos);
    EXPECT_FALSE (plays ()) << "the volume counts now";
}

// Desktops whose dialogs cannot be shown. (Windows has one of its own, into which a name can be typed as
// well.)
struct BrokenDialogs
{
    BrokenDialogs ()
    {
        for (const char* name : { "zenity", "kdialog" })
        {
            std::ofstream (folder / name) << "#!/bin/sh\nexit 5\n";
            std::filesystem::permissions (folder / name, std::filesystem::perms::owner_all);
        }
        ::setenv ("PATH", (folder.folder ().string () + ":" + path).c_str (), 1);
    }
    ~BrokenDialogs () { ::setenv ("PATH", path.c_str (), 1); }

    TemporaryFolder folder;
    std::string path = std::getenv ("PATH");
};

class FilesInAWindow : public BrokenDialogs, public EditorWindow
{
};

TEST_F (FilesInAWindow, CanBeNamedByTyping)
{
    const auto choose = [this] (std::int32_t command, std::string name, const std::string& end = "key Return")
    {
        name = (folder / name).string ();
        if (Bench::isWine ())
            std::ranges::replace (name.insert (0, "Z:"), '/', '\\');
        const Picture before = bench.redrawnPicture ();
        openMenuAt (command);
        const Picture menu = bench.picture ();
        bench.keys ("Return");
        EXPECT_TRUE (Bench::eventually (
            [&]
            {
                const Picture now = bench.picture ();
                return now != menu && now != before;
            }));
        bench.keys ("ctrl+a");
        bench.mouse ("type --delay 30 '" + name + "'");
        bench.mouse (end);
    };
    if (!Bench::isWine ())
        choose (commandSaveBank, "Left", "mousemove 10 300 click 1");
    hostSets (paramFilterFreq, 0.25f);
    choose (commandSaveBank, "Typed");
    EXPECT_TRUE (Bench::eventually ([&] { return std::filesystem::exists (folder / "Typed.fxb"); }));
    EXPECT_FALSE (std::filesystem::exists (folder / "Left.fxb")) << "a click beside the field writes nothing";
    hostSets (paramFilterFreq, 0.75f);
    choose (commandLoadFile, "Typed.fxb");
    EXPECT_TRUE (parameterBecomes (paramFilterFreq, 0.25f));
}

TEST_F (EditorWindow, AboutPageComesAndGoes)
{
    moveAway ();
    const Picture before = bench.redrawnPicture ();
    for (const char* closing : { "click 1", "key Escape" })
    {
        clickMenuButton ();
        bench.keys ("Down Down Down Return");
        // The part of the page above its version line.
        const panel::Rect top = { panel::aboutRect.x, panel::aboutRect.y, panel::aboutRect.width, 40 };
        EXPECT_TRUE (bench.shows (top, panel::aboutBitmapId));
        moveAway ();
        bench.mouse (closing);
        EXPECT_TRUE (pictureBecomes (before)) << closing;
    }
    EXPECT_EQ (bench.say ("calls"), "") << "the page is the editor's own";
}

TEST_F (EditorWindow, LearnsAndForgetsAController)
{
    moveToControl (paramFilterFreq);
    EXPECT_TRUE (bench.changesAfter ("click 3"));
    bench.keys ("Down Return");
    EXPECT_TRUE (learnMarkIs (paramFilterFreq, true)) << "it says that it waits";
    bench.say ("midi 176 74 32");
    EXPECT_TRUE (parameterBecomes (paramFilterFreq, 32.0f / 127.0f));
    EXPECT_TRUE (learnMarkIs (paramFilterFreq, false));
    EXPECT_TRUE (standsAt (paramFilterFreq, 32.0f / 127.0f));
    EXPECT_EQ (bench.say ("calls"), "") << "neither learning nor the controller is automation";
    EXPECT_TRUE (bench.changesAfter ("click 3"));
    bench.keys ("Down Down Return"); // the second entry is there now: Forget CC 74
    EXPECT_TRUE (Bench::eventually (
        [&]
        {
            bench.say ("midi 176 74 100");
            hostSets (paramFilterFreq, 0.25f);
            bench.say ("midi 176 74 100");
            return std::abs (bench.parameter (paramFilterFreq) - 0.25f) < 1e-4f;
        }));
}

TEST_F (EditorWindow, ProgramsCanBeStepped)
{
    const Picture first = shownProgram ();
    moveInto (panel::nextProgramRect);
    bench.mouse ("click 1");
    EXPECT_TRUE (answers ("program ?", "1"));
    EXPECT_TRUE (Bench::eventually ([&] { return shownProgram () != first; }));
    EXPECT_EQ (bench.callsUntil ("display;"), "display;") << "the program is no parameter";
    EXPECT_TRUE (standsAt (paramFilterFreq, bench.parameter (paramFilterFreq))) << "the controls follow";

    moveInto (panel::programDisplayRect);
    bench.mouse ("click 5"); // down the list
    EXPECT_TRUE (answers ("program ?", "2"));
    bench.mouse ("click 4 click 4 click 4");
    EXPECT_TRUE (answers ("program ?", "127")) << "round to the end";
    EXPECT_TRUE (bench.changesAfter ("click 1"));
    bench.keys ("Down Down Right Down Return"); // the second group's second
    EXPECT_TRUE (answers ("program ?", "25")) << "the second lead";
    bench.say ("program 0");
    moveAway ();
    EXPECT_TRUE (Bench::eventually ([&] { return shownProgram () == first; })) << "the host's choice, too";
    bench.say ("rename Renamed");
    EXPECT_TRUE (Bench::eventually ([&] { return shownProgram () != first; }));
}

// Where two pictures differ: the leftmost column.
int leftOfDifference (const Picture& one, const Picture& other)
{
    for (int x = 0; x < one.width; ++x)
    {
        if (one.part (x, 0, 1, one.height) != other.part (x, 0, 1, one.height))
            return x;
    }
    return one.width;
}

// From the menu's place at the button, through the groups to a program far down the list, with the mouse
// alone.
TEST_F (EditorWindow, EveryProgramCanBeReachedWithTheMouse)
{
    if (Bench::isWine ())
        GTEST_SKIP () << "menus are the system's own there";
    const auto leftAfter = [this] (const std::string& actions)
    {
        const Picture before = bench.picture ();
        EXPECT_TRUE (bench.changesAfter (actions)) << actions;
        return leftOfDifference (before, bench.picture ());
    };
    moveInto (panel::menuButtonRect);
    const int menu = leftAfter ("click 1");
    const int presets =
        panel::menuButtonRect.bottom () + 1 + 5 * 18 + 7 + 18 + 9; // rows of 18, separators of 7
    const auto at = [] (int x, int y)
    { return "mousemove " + std::to_string (x) + " " + std::to_string (y) + " sleep 0.3 "; };
    const int groups = leftAfter (at (menu + 40, presets) + "click 1");
    ASSERT_LT (groups, menu) << "they lie beside the menu";
    const int pads = leftAfter (at (groups + 20, presets + 2 * 18) + "click 1");
    ASSERT_LT (pads, groups);
    bench.mouse (at (pads + 40, 200) + "click 5 click 5 click 1");
    EXPECT_TRUE (Bench::eventually ([&] { return std::stoi (bench.say ("program ?")) > 54 + 12; }))
        << "two notches of the wheel are six programs";
}

TEST_F (EditorWindow, RandomSoundsByNumberKeys)
{
    hostSets (paramFilterType, 0.9f);
    bench.say ("key 1");
    EXPECT_NEAR (bench.parameter (paramFilterType), 0.9f, 1e-4f) << "not armed yet";
    openSubmenu (commandRandom);
    bench.keys ("Down Down Down Down Return"); // from its first entry to its last: Use Keys
    EXPECT_NEAR (bench.parameter (paramFilterType), 0.9f, 1e-4f) << "arming makes no sound itself";
    const auto isBass = [this] { return std::abs (bench.parameter (paramFilterType) - 0.1f) < 1e-4f; };
    EXPECT_TRUE (Bench::eventually (
        [&]
        {
            EXPECT_EQ (bench.say ("key 1"), "1");
            return isBass ();
        }));
    EXPECT_EQ (bench.say ("calls"), "");
    hostSets (paramFilterType, 0.9f);
    moveAway ();
    bench.mouse ("click 1"); // the window gets the keys
    bench.keys ("1");
    EXPECT_TRUE (Bench::eventually (isBass)) << "typed into the window";
}

TEST_F (EditorWindow, KeyboardCanBeHiddenAndAnotherOpeningShowsWhatChanged)
{
    using Row = std::tuple<float, const char*>;
    for (const auto& [keys, size] :
         { Row{ 0.0f, "612 295" }, Row{ 1.0f, "612 433" }, Row{ 0.0f, "612 295" } })
    {
        hostSets (paramShowKeys, keys);
        EXPECT_EQ (bench.callsUntil ("size"), std::string ("size ") + size + ";");
        EXPECT_EQ (bench.say ("rect"), size);
        EXPECT_TRUE (keys == 0.0f || bench.shows ({ 39, 316, 24, 97 }, panel::whiteKeyUpId));
    }
    bench.say ("close");
    EXPECT_EQ (bench.say ("rect"), "612 295");
    hostSets (paramFilterFreq, 0.7f); // while nobody looks
    EXPECT_EQ (bench.say ("open").find ("error"), std::string::npos);
    EXPECT_TRUE (
        Bench::eventually ([&] { return bench.picture (612, 295).at (300, 290) == panel::caseColour; }));
    hostSets (paramShowKeys, 1.0f);
    EXPECT_TRUE (standsAt (paramFilterFreq, 0.7f));
}

// On controls, lamps, displays, keys and buttons.
TEST_F (EditorWindow, HoverHelpComesAndGoes)
{
    moveAway ();
    const Picture before = bench.redrawnPicture ();
    for (const panel::Rect& place :
         { controlOf (paramFilterRez).rect, controlOf (39).rect, panel::Rect{ 222, 190, 25, 12 },
           controlOf (49).rect, panel::nextProgramRect, panel::menuButtonRect, panel::programDisplayRect })
    {
        bench.moveTo (place.x + 3, place.y + 3);
        EXPECT_TRUE (Bench::eventually ([&] { return bench.picture () != before; }))
            << place.x << " " << place.y;
        moveAway ();
        EXPECT_TRUE (pictureBecomes (before)) << place.x << " " << place.y;
    }
}

TEST_F (EditorWindow, InstrumentCanGoWithAMenuOpen)
{
    if (Bench::isWine ())
        GTEST_SKIP () << "menus are modal there, so the host cannot act while one is open";
    openSubmenu (zoomMenuTag);
    EXPECT_EQ (bench.say ("remove"), "ok");
    EXPECT_EQ (bench.finish (), 0);
}

// A leaked picture of the panel is a thousand kilobytes at each opening. The first ones fill caches.
TEST_F (EditorWindow, ManyOpeningsLeaveNothingBehind)
{
    bench.say ("close");
    ASSERT_EQ (bench.say ("cycle 10"), "ok");
    const long before = std::stol (bench.say ("memory"));
    for (int five = 0; five < 4; ++five) // so that each answer comes in time
        ASSERT_EQ (bench.say ("cycle 5"), "ok");
    const long after = std::stol (bench.say ("memory"));
    EXPECT_LT (after - before, 4000) << before << " -> " << after;
    bench.open ();
    EXPECT_TRUE (standsAt (paramFilterFreq, bench.parameter (paramFilterFreq)));
}
}
