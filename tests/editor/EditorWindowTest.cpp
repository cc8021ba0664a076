// The editor in a real window, seen and played from outside. The same tests run on both libraries.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "editor/MenuTable.h"
#include "parameters/Parameters.h"
#include "tests/editor/Bench.h"
#include "tests/host/TemporaryFolder.h"

using namespace editor;
using namespace parameters;

namespace
{
// A knob's or button's frame for a value, as the eye tells it: equal steps, the last one at the very end.
int frameOf (const panel::Control& control, float value)
{
    const int frames = panel::findBitmap (control.bitmapId)->frames;
    return static_cast<int> (std::floor (static_cast<double> (value) * (frames - 1)));
}

class EditorWindow : public testing::Test
{
protected:
    void SetUp () override { ASSERT_EQ (bench.open ().find ("error"), std::string::npos); }

    // Whether a knob or button stands where its parameter is.
    bool standsAt (int tag, float value)
    {
        const panel::Control& control = controlOf (tag);
        return bench.shows (panel::paintedRect (control), control.bitmapId, frameOf (control, value));
    }
    // Of a knob or button, and waits until the panel has heard of it.
    void hostSets (int tag, float value)
    {
        bench.say ("set " + std::to_string (tag) + " " + std::to_string (value));
        EXPECT_TRUE (standsAt (tag, value));
    }
    void moveToControl (int tag)
    {
        const panel::Rect& rect = controlOf (tag).rect;
        bench.moveTo (rect.x + rect.width / 2, rect.y + rect.height / 2);
    }
    bool parameterBecomes (int index, float value)
    {
        return Bench::eventually ([&] { return std::abs (bench.parameter (index) - value) < 1e-4f; });
    }
    void clickMenuButton ()
    {
        const panel::Rect& rect = panel::menuButtonRect;
        bench.moveTo (rect.x + rect.width / 2, rect.y + rect.height / 2);
        const Picture before = bench.redrawnPicture ();
        bench.mouse ("click 1");
        EXPECT_TRUE (menuIsOpen (before));
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
    // A menu covers part of the panel that was free before: wait until the picture rests at something new.
    bool menuIsOpen (const Picture& before)
    {
        Picture last = before;
        return Bench::eventually (
            [&]
            {
                const Picture now = bench.picture ();
                const bool rests = now == last && now != before;
                last = now;
                return rests;
            });
    }
    bool pictureBecomes (const Picture& wanted)
    {
        return Bench::eventually ([&] { return bench.redrawnPicture () == wanted; });
    }

    Bench bench;
};

TEST_F (EditorWindow, SlidersFollowTheHostAndTheWheel)
{
    for (const int tag : { paramOsc1Vol, paramOsc2Vol })
    {
        bench.moveTo (300, 300); // so that no help lies over the other slider
        const panel::Rect& rect = controlOf (tag).rect;
        for (const float value : { 0.0f, 1.0f, 0.5f })
        {
            bench.say ("set " + std::to_string (tag) + " " + std::to_string (value));
            const int left =
                static_cast<int> (std::floor (value * 94.0f)); // the handle is 6 of 100 pixels wide
            EXPECT_TRUE (Bench::eventually (
                [&] {
                    return matches (bench.redrawnPicture (), { rect.x + left, rect.y, 6, 10 },
                                    bitmapFile (184), 1);
                }))
                << tag << " at " << value;
        }
        moveToControl (tag);
        bench.mouse ("click 4 click 4 click 4 click 5");
        EXPECT_TRUE (parameterBecomes (tag, 0.54f)) << tag;
    }
}

TEST_F (EditorWindow, HostMovesTheControls)
{
    struct Change
    {
        int index;
        float value;
    };
    for (const Change& change :
         { Change{ paramFilterFreq, 0.25f }, Change{ paramFilterType, 0.5f }, Change{ paramOsc1Range, 1.0f },
           Change{ paramLfoWave, 0.8f }, Change{ paramVoices, 0.0f }, Change{ paramVelocityAmp, 1.0f },
           Change{ paramSmothFilt, 1.0f }, Change{ paramFilterFreq, 1.0f } })
    {
        bench.say ("set " + std::to_string (change.index) + " " + std::to_string (change.value));
        EXPECT_TRUE (standsAt (change.index, change.value)) << change.index;
    }
    EXPECT_EQ (bench.say ("calls"), "") << "what comes from the host does not go back to it";
}

// Sixteen voices play from 0.9334 on.
TEST_F (EditorWindow, PolyphonyStandsAtTheVoicesThatPlay)
{
    const panel::Control& knob = controlOf (paramVoices);
    bench.say ("set 27 0.93");
    EXPECT_TRUE (bench.shows (knob.rect, knob.bitmapId, 6));
    bench.say ("set 27 0.95");
    EXPECT_TRUE (bench.shows (knob.rect, knob.bitmapId, 7));
}

TEST_F (EditorWindow, LampsFollowTheirParameters)
{
    bench.say ("set 12 0");
    EXPECT_TRUE (standsAt (39, 1.0f));
    bench.say ("set 12 0.5");
    EXPECT_TRUE (standsAt (39, 0.0f));
    bench.say ("set 24 0.49"); // snaps to the centre
    EXPECT_TRUE (standsAt (41, 0.0f));
    bench.say ("set 17 1");
    EXPECT_TRUE (standsAt (42, 1.0f));
    moveToControl (42);
    bench.mouse ("click 1");
    EXPECT_TRUE (standsAt (42, 1.0f)) << "lamps do not switch";
    EXPECT_EQ (bench.say ("calls"), "");
}

TEST_F (EditorWindow, DraggingAKnobReachesTheHost)
{
    hostSets (18, 0.5f);
    moveToControl (paramFilterFreq);
    bench.mouse ("mousedown 1");
    EXPECT_EQ (bench.callsUntil ("begin 18;"), "begin 18;");
    bench.mouse ("mousemove_relative -- 0 -10 mousemove_relative -- 0 -10");
    EXPECT_TRUE (parameterBecomes (paramFilterFreq, 0.6f)) << "200 pixels are the whole travel";
    EXPECT_TRUE (standsAt (paramFilterFreq, 0.6f));
    bench.mouse ("mouseup 1");
    const std::string calls = bench.callsUntil ("end 18;");
    EXPECT_NE (calls.find ("automate 18 0.6000;"), std::string::npos) << calls;
    EXPECT_TRUE (calls.ends_with ("end 18;")) << calls;
}

TEST_F (EditorWindow, ShiftDragsFinely)
{
    hostSets (18, 0.5f);
    moveToControl (paramFilterFreq);
    bench.mouse ("keydown shift mousedown 1 mousemove_relative -- 0 -20 mousemove_relative -- 0 -20 mouseup "
                 "1 keyup shift");
    EXPECT_TRUE (parameterBecomes (paramFilterFreq, 0.52f));
}

TEST_F (EditorWindow, DoubleClickAndControlClickSetBack)
{
    hostSets (18, 0.25f);
    moveToControl (paramFilterFreq);
    // A click, a pause that is too long for a double click, and then one.
    bench.mouse ("click 1 sleep 0.6 click --repeat 2 --delay 60 1");
    EXPECT_TRUE (parameterBecomes (paramFilterFreq, 1.0f)); // its initial value
    hostSets (9, 0.25f);
    moveToControl (paramMasterP);
    bench.mouse ("keydown ctrl click 1 keyup ctrl");
    EXPECT_TRUE (parameterBecomes (paramMasterP, 0.5f));
}

TEST_F (EditorWindow, WheelTurnsKnobs)
{
    hostSets (18, 0.5f);
    moveToControl (paramFilterFreq);
    bench.mouse ("click 4 click 4 click 4 click 5");
    EXPECT_TRUE (parameterBecomes (paramFilterFreq, 0.54f));
    hostSets (22, 0.0f);
    moveToControl (paramLfoWave);
    bench.mouse ("click 4 click 4");
    EXPECT_TRUE (parameterBecomes (paramLfoWave, 0.4f)) << "two of the six positions on";
    bench.mouse ("click --repeat 9 --delay 30 5");
    EXPECT_TRUE (parameterBecomes (paramLfoWave, 0.0f));
    const std::string calls = bench.callsUntil ("end 22;");
    EXPECT_NE (calls.find ("begin 22;automate 22 0.2000;end 22;"), std::string::npos) << calls;
}

TEST_F (EditorWindow, ArrowKeysTurnWhatLiesUnderTheMouse)
{
    bench.moveTo (300, 300);
    bench.mouse ("click 1"); // the window gets the keys
    hostSets (18, 0.5f);
    moveToControl (paramFilterFreq);
    bench.keys ("Up Up Right Down");
    EXPECT_TRUE (parameterBecomes (paramFilterFreq, 0.54f));
    bench.keys ("shift+Left");
    EXPECT_TRUE (parameterBecomes (paramFilterFreq, 0.538f)) << "finely";
    hostSets (36, 0.0f);
    moveToControl (paramLfoBmpSync);
    bench.keys ("Up");
    EXPECT_TRUE (parameterBecomes (paramLfoBmpSync, 1.0f));
}

TEST_F (EditorWindow, ValuesCanBeTyped)
{
    const auto type = [this] (const std::string& text, const std::string& end)
    {
        const Picture before = bench.redrawnPicture ();
        bench.mouse ("keydown shift click --repeat 2 --delay 60 1 keyup shift");
        EXPECT_TRUE (menuIsOpen (before)) << "a field";
        bench.keys ("ctrl+a");
        bench.mouse ("type --delay 30 '" + text + "'");
        bench.keys (end);
    };
    hostSets (18, 0.25f);
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

// What lies between off and on sounds as on, so it looks like that and goes off with one click.
TEST_F (EditorWindow, ButtonsBetweenOffAndOnAreOn)
{
    for (const int tag : { paramSmothFilt, paramFilterKeyTrak, paramLfoBmpSync })
    {
        bench.say ("set " + std::to_string (tag) + " 0.3");
        EXPECT_TRUE (bench.shows (controlOf (tag).rect, controlOf (tag).bitmapId, 1)) << tag;
        moveToControl (tag);
        bench.mouse ("click 1");
        EXPECT_TRUE (parameterBecomes (tag, 0.0f)) << tag;
    }
    bench.say ("calls");
    bench.mouse ("click 1");
    EXPECT_EQ (bench.callsUntil ("end 36;"), "begin 36;automate 36 1.0000;end 36;");
}

TEST_F (EditorWindow, RateDisplayChangesWithTheSync)
{
    const panel::Rect place = { 222, 190, 25, 12 };
    const auto display = [&]
    { return bench.redrawnPicture ().part (place.x, place.y, place.width, place.height); };
    bench.say ("set 36 0");
    bench.say ("set 21 0.5");
    EXPECT_TRUE (standsAt (paramLfoRate, 0.5f)); // drawn together with its display
    const Picture hertz = display ();
    bench.say ("set 36 1");
    EXPECT_TRUE (Bench::eventually ([&] { return display () != hertz; }));
    bench.say ("set 36 0");
    EXPECT_TRUE (Bench::eventually ([&] { return display () == hertz; }));
}

TEST_F (EditorWindow, KeyboardPlaysNotes)
{
    bench.say ("set 36 0");
    const int x = 39 + 7 * 35 + 5; // middle C, note 60
    bench.moveTo (x, 400);
    bench.mouse ("mousedown 1");
    EXPECT_TRUE (Bench::eventually (
        [&]
        {
            return matches (bench.redrawnPicture (), { 39 + 7 * 35, 380, 35, 33 },
                            bitmapFile (panel::whiteKeyDownId), 64);
        }));
    EXPECT_GT (std::stof (bench.say ("render 40")), 0.01f);

    bench.mouse ("mousemove_relative 35 0"); // on to D
    EXPECT_TRUE (Bench::eventually (
        [&]
        {
            return matches (bench.redrawnPicture (), { 39 + 7 * 35, 380, 35, 33 },
                            bitmapFile (panel::whiteKeyUpId), 64);
        }))
        << "the key left behind comes up";

    bench.mouse ("mouseup 1");
    EXPECT_TRUE (Bench::eventually (
        [&]
        {
            return matches (bench.redrawnPicture (), { 39 + 8 * 35, 380, 35, 33 },
                            bitmapFile (panel::whiteKeyUpId), 64);
        }));
}

TEST_F (EditorWindow, ClosingEndsTheKeyUnderTheMouse)
{
    bench.moveTo (39 + 7 * 35 + 5, 400);
    bench.mouse ("mousedown 1");
    EXPECT_TRUE (Bench::eventually ([&] { return std::stof (bench.say ("render 10")) > 0.01f; }));
    bench.say ("close");
    EXPECT_TRUE (Bench::eventually ([&] { return std::stof (bench.say ("render 100")) < 1e-4f; }));
    bench.mouse ("mouseup 1");
}

TEST_F (EditorWindow, MenuSetsAParameter)
{
    bench.say ("set 34 0");
    openSubmenu (paramHighQuality);
    bench.keys ("Escape Right Down Return"); // Escape leaves the submenu alone
    EXPECT_TRUE (parameterBecomes (paramHighQuality, 1.0f)) << "its second entry is Off, which is 1";
    EXPECT_EQ (bench.callsUntil ("end 34;"), "begin 34;automate 34 1.0000;end 34;");
}

TEST_F (EditorWindow, RightClickOnEmptyPanelOpensTheMenu)
{
    bench.moveTo (300, 300);
    const Picture before = bench.redrawnPicture ();
    bench.mouse ("click 3");
    EXPECT_TRUE (menuIsOpen (before));
    bench.keys ("Escape");
    EXPECT_TRUE (pictureBecomes (before));
}

TEST_F (EditorWindow, AboutPageComesAndGoes)
{
    bench.moveTo (300, 300);
    const Picture before = bench.redrawnPicture ();
    for (const char* closing : { "click 1", "key Escape" })
    {
        clickMenuButton ();
        bench.keys ("Down Down Down Return");
        // The part of the page above its version line.
        const panel::Rect top = { panel::aboutRect.x, panel::aboutRect.y, panel::aboutRect.width, 40 };
        EXPECT_TRUE (bench.shows (top, panel::aboutBitmapId));
        bench.moveTo (300, 300);
        bench.mouse (closing);
        EXPECT_TRUE (pictureBecomes (before)) << closing;
    }
    EXPECT_EQ (bench.say ("calls"), "") << "the page is the editor's own";
}

TEST_F (EditorWindow, LearnsAndForgetsAController)
{
    moveToControl (paramFilterFreq);
    Picture before = bench.redrawnPicture ();
    bench.mouse ("click 3");
    EXPECT_TRUE (menuIsOpen (before));
    bench.keys ("Down Return");
    EXPECT_TRUE (learnMarkIs (paramFilterFreq, true)) << "it says that it waits";
    bench.say ("midi 176 74 32");
    EXPECT_TRUE (parameterBecomes (paramFilterFreq, 32.0f / 127.0f));
    EXPECT_TRUE (learnMarkIs (paramFilterFreq, false));
    EXPECT_TRUE (standsAt (paramFilterFreq, 32.0f / 127.0f));
    EXPECT_EQ (bench.say ("calls"), "") << "neither learning nor the controller is automation";

    before = bench.redrawnPicture ();
    bench.mouse ("click 3");
    EXPECT_TRUE (menuIsOpen (before));
    bench.keys ("Down Down Return"); // the second entry is there now: Forget CC 74
    EXPECT_TRUE (Bench::eventually (
        [&]
        {
            bench.say ("midi 176 74 100");
            bench.say ("set 18 0.25");
            bench.say ("midi 176 74 100");
            return std::abs (bench.parameter (paramFilterFreq) - 0.25f) < 1e-4f;
        }));
}

TEST_F (EditorWindow, ProgramsCanBeStepped)
{
    const panel::Rect& display = panel::programDisplayRect;
    const auto text = [&]
    { return bench.redrawnPicture ().part (display.x, display.y, display.width, display.height); };
    const Picture first = text ();
    bench.moveTo (panel::nextProgramRect.x + 10, panel::nextProgramRect.y + 10);
    bench.mouse ("click 1");
    EXPECT_TRUE (Bench::eventually ([&] { return bench.say ("program ?") == "1"; }));
    EXPECT_TRUE (Bench::eventually ([&] { return text () != first; }));
    EXPECT_EQ (bench.callsUntil ("display;"), "display;") << "the program is no parameter";
    EXPECT_TRUE (standsAt (paramFilterFreq, bench.parameter (paramFilterFreq))) << "the controls follow";

    bench.moveTo (display.x + 20, display.y + 10);
    bench.mouse ("click 5"); // down the list
    EXPECT_TRUE (Bench::eventually ([&] { return bench.say ("program ?") == "2"; }));
    bench.mouse ("click 4 click 4 click 4");
    EXPECT_TRUE (Bench::eventually ([&] { return bench.say ("program ?") == "127"; })) << "round to the end";
    bench.say ("program 0");
    bench.moveTo (300, 300);
    EXPECT_TRUE (Bench::eventually ([&] { return text () == first; })) << "the host's choice is shown too";
}

TEST_F (EditorWindow, HostRenamesTheProgram)
{
    const panel::Rect& display = panel::programDisplayRect;
    const auto text = [&]
    { return bench.redrawnPicture ().part (display.x, display.y, display.width, display.height); };
    const Picture before = text ();
    bench.say ("rename Renamed");
    EXPECT_TRUE (Bench::eventually ([&] { return text () != before; }));
}

TEST_F (EditorWindow, ProgramsCanBeRenamed)
{
    openMenuAt (commandRenameProgram);
    bench.keys ("Return ctrl+a");
    bench.mouse ("type --delay 30 'Mine'");
    bench.keys ("Return");
    EXPECT_TRUE (Bench::eventually ([&] { return bench.say ("name ?") == "Mine"; }));
    EXPECT_NE (bench.callsUntil ("display;").find ("display;"), std::string::npos);
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

TEST_F (EditorWindow, MenuTakesBack)
{
    hostSets (18, 0.5f);
    moveToControl (paramFilterFreq);
    bench.mouse ("click 4");
    EXPECT_TRUE (parameterBecomes (paramFilterFreq, 0.52f));
    bench.callsUntil ("end 18;"); // the wheel rests
    openMenuAt (commandUndo);
    bench.keys ("Return");
    EXPECT_TRUE (parameterBecomes (paramFilterFreq, 0.5f));
}

// The one place where the menu has no room below its button.
TEST_F (EditorWindow, MenuLeavesItsButtonFree)
{
    bench.say ("set 30 0");
    bench.callsUntil ("size");
    clickMenuButton ();
    const panel::Rect& button = panel::menuButtonRect;
    EXPECT_TRUE (Bench::isWine () || matches (bench.picture (), { button.x, button.y, 3, button.height },
                                              bitmapFile (panel::smallButtonBitmapId), button.height))
        << "no entry lies under the press";
    bench.keys ("Escape");
}

// Where two pictures differ.
panel::Rect difference (const Picture& one, const Picture& other)
{
    int left = one.width;
    int top = one.height;
    int right = 0;
    int bottom = 0;
    for (int y = 0; y < one.height; ++y)
    {
        for (int x = 0; x < one.width; ++x)
        {
            if (one.at (x, y) == other.at (x, y))
                continue;
            left = std::min (left, x);
            right = std::max (right, x + 1);
            top = std::min (top, y);
            bottom = std::max (bottom, y + 1);
        }
    }
    return { left, top, right - left, bottom - top };
}

// From the menu's place at the button, through the groups to a program far down the list, with the mouse
// alone.
TEST_F (EditorWindow, EveryProgramCanBeReachedWithTheMouse)
{
    if (Bench::isWine ())
        GTEST_SKIP () << "menus are the system's own there";
    const auto openedAfter = [this] (const std::string& actions)
    {
        const Picture before = bench.picture ();
        bench.mouse (actions);
        EXPECT_TRUE (menuIsOpen (before)) << actions;
        return difference (before, bench.picture ());
    };
    const panel::Rect& button = panel::menuButtonRect;
    bench.moveTo (button.x + 5, button.y + 5);
    const panel::Rect menu = openedAfter ("click 1");
    const int presets = button.bottom () + 1 + 5 * 18 + 7 + 18 + 9; // rows of 18 pixels, separators of 7
    const auto at = [] (int x, int y)
    { return "mousemove " + std::to_string (x) + " " + std::to_string (y) + " sleep 0.3 "; };
    const panel::Rect groups = openedAfter (at (menu.x + 40, presets) + "click 1");
    ASSERT_LT (groups.x, menu.x) << "they lie beside the menu";
    const panel::Rect pads = openedAfter (at (groups.x + 20, presets + 2 * 18) + "click 1");
    ASSERT_LT (pads.x, groups.x);
    bench.mouse (at (pads.x + 40, 200) + "click 5 click 5 " + "click 1");
    EXPECT_TRUE (Bench::eventually ([&] { return std::stoi (bench.say ("program ?")) > 54 + 12; }))
        << "two notches of the wheel are six programs";
}

TEST_F (EditorWindow, ProgramMenuChooses)
{
    const panel::Rect& display = panel::programDisplayRect;
    bench.moveTo (display.x + 20, display.y + 10);
    const Picture before = bench.redrawnPicture ();
    bench.mouse ("click 1");
    EXPECT_TRUE (menuIsOpen (before));
    bench.keys ("Down Down Right Down Return"); // the second group's second
    EXPECT_TRUE (Bench::eventually ([&] { return bench.say ("program ?") == "25"; })) << "the second lead";
}

TEST_F (EditorWindow, RandomSoundsByNumberKeys)
{
    bench.say ("set 20 0.9");
    bench.say ("key 1");
    EXPECT_NEAR (bench.parameter (paramFilterType), 0.9f, 1e-4f) << "not armed yet";
    openSubmenu (commandRandom);
    bench.keys ("Down Down Down Down Return"); // from its first entry to its last: Use Keys
    EXPECT_NEAR (bench.parameter (paramFilterType), 0.9f, 1e-4f) << "arming makes no sound itself";

    EXPECT_TRUE (Bench::eventually (
        [&]
        {
            EXPECT_EQ (bench.say ("key 1"), "1");
            return std::abs (bench.parameter (paramFilterType) - 0.1f) < 1e-4f;
        }))
        << "a bass";
    EXPECT_EQ (bench.say ("calls"), "");
    bench.say ("set 20 0.9");
    bench.moveTo (300, 300);
    bench.mouse ("click 1"); // the window gets the keys
    bench.keys ("1");
    EXPECT_TRUE (parameterBecomes (paramFilterType, 0.1f)) << "typed into the window";
}

TEST_F (EditorWindow, KeyboardCanBeHidden)
{
    bench.say ("set 30 0");
    EXPECT_EQ (bench.callsUntil ("size"), "size 612 295;");
    EXPECT_EQ (bench.say ("rect"), "612 295");
    bench.say ("set 30 1");
    EXPECT_EQ (bench.callsUntil ("size"), "size 612 433;");
    EXPECT_EQ (bench.say ("rect"), "612 433");
    EXPECT_TRUE (bench.shows ({ 39, 316, 24, 97 }, panel::whiteKeyUpId));
    bench.say ("set 30 0");
    bench.say ("close");
    EXPECT_EQ (bench.say ("rect"), "612 295");
    EXPECT_EQ (bench.say ("open").find ("error"), std::string::npos);
    EXPECT_TRUE (
        Bench::eventually ([&] { return bench.picture (612, 295).at (300, 290) == panel::caseColour; }));
}

// On controls, lamps, displays, keys and buttons.
TEST_F (EditorWindow, HoverHelpComesAndGoes)
{
    bench.moveTo (300, 300);
    const Picture before = bench.redrawnPicture ();
    for (const panel::Rect& place :
         { controlOf (paramFilterRez).rect, controlOf (39).rect, panel::Rect{ 222, 190, 25, 12 },
           controlOf (49).rect, panel::nextProgramRect, panel::menuButtonRect, panel::programDisplayRect })
    {
        bench.moveTo (place.x + 3, place.y + 3);
        EXPECT_TRUE (Bench::eventually ([&] { return bench.picture () != before; }))
            << place.x << " " << place.y;
        bench.moveTo (300, 300);
        EXPECT_TRUE (pictureBecomes (before)) << place.x << " " << place.y;
    }
}

TEST_F (EditorWindow, ClosedAndOpenedAgainShowsTheSame)
{
    bench.moveTo (300, 300);
    const Picture before = bench.redrawnPicture ();
    bench.say ("close");
    bench.say ("set 18 0.7"); // while nobody looks
    bench.open ();
    EXPECT_TRUE (standsAt (paramFilterFreq, 0.7f));
    bench.say ("program 0");
    bench.say ("set 18 0.7");
    EXPECT_TRUE (standsAt (paramFilterFreq, 0.7f));
}

TEST_F (EditorWindow, InstrumentCanGoWithAMenuOpen)
{
    if (Bench::isWine ())
        GTEST_SKIP () << "menus are modal there, so the host cannot act while one is open";
    openSubmenu (zoomMenuTag);
    EXPECT_EQ (bench.say ("remove"), "ok");
    EXPECT_EQ (bench.finish (), 0);
}

TEST_F (EditorWindow, AHundredOpeningsLeaveNothingBehind)
{
    bench.say ("close");
    ASSERT_EQ (bench.say ("cycle 20"), "ok");
    const long before = std::stol (bench.say ("memory"));
    for (int ten = 0; ten < 10; ++ten)
        ASSERT_EQ (bench.say ("cycle 10"), "ok");
    const long after = std::stol (bench.say ("memory"));
    // Kilobytes; one leaked picture of the panel a time would be a hundred thousand.
    EXPECT_LT (after - before, 4000) << before << " -> " << after;
    bench.open ();
    EXPECT_TRUE (standsAt (paramFilterFreq, bench.parameter (paramFilterFreq)));
}
}
