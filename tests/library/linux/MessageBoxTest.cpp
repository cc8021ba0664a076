// What only the boxes of our own drawing have to show: keys, the mouse, their picture, and no display.
#include "platform/MessageBox.h"
#include "tests/library/linux/Screen.h"

#include <algorithm>
#include <cstdlib>
#include <functional>
#include <future>
#include <gtest/gtest.h>
#include <thread>

namespace
{
using platform::Answer;
using platform::Buttons;

// Shows a box and lets a user act on it once it has the keyboard.
Answer show (const char* text, Buttons buttons, const std::function<void (Screen&, xcb_window_t)>& act)
{
    auto answer =
        std::async (std::launch::async, [&] { return platform::showMessage (text, "Warning!", buttons); });
    Screen screen;
    xcb_window_t box = 0;
    while ((box = screen.box ()) == 0)
        std::this_thread::sleep_for (std::chrono::milliseconds (2));
    act (screen, box);
    return answer.get ();
}

TEST (MessageBox, KeysAndMouseMoveTheMarkAndPress)
{
    // In the middle of a screen of 1024 x 768 pixels.
    const std::string first = "mousemove 510 424 ";
    const std::string last = "mousemove 612 424 ";
    const std::string beside = "mousemove 372 424 ";
    const std::tuple<Buttons, std::string, Answer> cases[] = {
        { Buttons::ok, "key Escape", Answer::ok },
        { Buttons::okCancel, "key KP_Enter", Answer::ok },
        { Buttons::okCancel, "key space", Answer::ok },
        { Buttons::okCancel, "key Escape", Answer::cancel },
        { Buttons::okCancel, "key Tab Return", Answer::cancel },
        { Buttons::okCancel, "key Tab Tab Return", Answer::ok },
        { Buttons::okCancel, "key shift+Tab Return", Answer::cancel },
        { Buttons::okCancel, "key Right Right Left Return", Answer::ok },
        { Buttons::okCancel, "key a F1 Right Return", Answer::cancel },
        { Buttons::okCancel, first + "click 3 " + last + "click 1", Answer::cancel },
        { Buttons::okCancel, last + "mousedown 1 " + beside + "mouseup 1 key Return", Answer::cancel },
        { Buttons::okCancel, beside + "mousedown 1 " + last + "mouseup 1 key Return", Answer::ok },
        { Buttons::yesNo, "key Tab space", Answer::no },
        { Buttons::yesNo, "key Escape", Answer::no },
    };
    for (const auto& [buttons, actions, answer] : cases)
        EXPECT_EQ (show ("Which?", buttons, [&a = actions] (Screen&, xcb_window_t) { userDoes (a); }), answer)
            << actions << " with buttons " << static_cast<int> (buttons);
}

TEST (MessageBox, StandsInTheMiddleAndHasRoomForItsText)
{
    const auto look = [] (Screen& screen, xcb_window_t box)
    {
        const auto dark = [&] (int left, int width) // in the text's line
        {
            const auto picture = screen.picture (box, left, 28, width, 24);
            return std::ranges::count_if (picture, [] (auto pixel) { return (pixel & 0xFF) < 0x60; });
        };
        const auto area = screen.geometry (box);
        EXPECT_NEAR (2 * area.x + area.width, 1024, 2);
        EXPECT_NEAR (2 * area.y + area.height, 768, 2);
        while (dark (72, area.width - 72) < 50) // they come with the first drawing
            std::this_thread::yield ();
        EXPECT_EQ (dark (area.width - 12, 12), 0);
        userDoes ("key Return");
    };
    for (const char* text : { "Short", "Reload from User-Default bank? (No = Loads Factory Bank)" })
        EXPECT_EQ (show (text, Buttons::yesNo, look), Answer::yes);
}

TEST (MessageBox, WithoutADisplayOneLineTellsAndTheAnswerComesAtOnce)
{
    const std::string display = environment ("DISPLAY");
    for (const char* none : { "", ":99999", "no such host!:0" })
    {
        ::setenv ("DISPLAY", none, 1);
        testing::internal::CaptureStderr ();
        EXPECT_EQ (platform::showMessage ("Saved!", "Ok!", Buttons::ok), Answer::ok);
        EXPECT_EQ (platform::showMessage ("Save?", "Warning!", Buttons::okCancel), Answer::ok);
        EXPECT_EQ (platform::showMessage ("Which?", "Warning!", Buttons::yesNo), Answer::no);
        EXPECT_EQ (testing::internal::GetCapturedStderr (),
                   "Brimvale: Ok! Saved!\nBrimvale: Warning! Save?\nBrimvale: Warning! Which?\n");
    }
    ::setenv ("DISPLAY", display.c_str (), 1);
}
}
