// The message boxes on a display, with keys and mouse, and without one.
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

constexpr char question[] = "Save Actual Values as Defaults?";

struct Shown
{
    Answer answer = Answer::none;
    std::string title;
    std::string text;
};

// Shows a box and lets a user act on it once it has the keyboard.
Shown show (const char* text, Buttons buttons, const std::function<void (Screen&, xcb_window_t)>& act)
{
    auto answer =
        std::async (std::launch::async, [&] { return platform::showMessage (text, "Warning!", buttons); });
    Shown shown;
    Screen screen;
    const auto deadline = std::chrono::steady_clock::now () + std::chrono::seconds (30);
    xcb_window_t box = 0;
    while ((box = screen.box ()) == 0 && std::chrono::steady_clock::now () < deadline)
        std::this_thread::sleep_for (std::chrono::milliseconds (2));
    if (box == 0)
    {
        ADD_FAILURE () << "no box was shown";
        std::abort (); // nobody would ever answer it
    }
    shown.title = screen.title (box);
    shown.text = screen.text (box);
    act (screen, box);
    if (answer.wait_for (std::chrono::seconds (30)) != std::future_status::ready)
    {
        ADD_FAILURE () << "the box did not answer";
        screen.close (box);
    }
    shown.answer = answer.get ();
    return shown;
}

std::string at (Screen& screen, xcb_window_t box, int fromRight)
{
    const auto place = screen.geometry (box);
    return "mousemove " + std::to_string (place.x + place.width - fromRight) + " " +
           std::to_string (place.y + place.height - 28);
}

TEST (MessageBox, EveryKeyAndButtonAnswers)
{
    constexpr int lastButton = 60; // pixels from the right edge
    constexpr int firstOfTwo = 162;
    constexpr int beside = 300;
    using Action = std::function<void (Screen&, xcb_window_t)>;
    const auto keys = [] (const std::string& names)
    { return [names] (Screen&, xcb_window_t) { userDoes ("key " + names); }; };
    const auto click = [] (int fromRight)
    {
        return [fromRight] (Screen& screen, xcb_window_t box)
        { userDoes (at (screen, box, fromRight) + " click 1"); };
    };
    const auto slide = [] (int from, int to)
    {
        return [from, to] (Screen& screen, xcb_window_t box) {
            userDoes (at (screen, box, from) + " mousedown 1 " + at (screen, box, to) +
                      " mouseup 1 key Return");
        };
    };
    const Action close = [] (Screen& screen, xcb_window_t box) { screen.close (box); };
    struct Case
    {
        const char* what;
        Buttons buttons;
        Action act;
        Answer answer;
    };
    const Case cases[] = {
        { "Enter", Buttons::ok, keys ("Return"), Answer::ok },
        { "Escape", Buttons::ok, keys ("Escape"), Answer::ok },
        { "close", Buttons::ok, close, Answer::ok },
        { "click", Buttons::ok, click (lastButton), Answer::ok },
        { "Enter", Buttons::okCancel, keys ("Return"), Answer::ok },
        { "number pad", Buttons::okCancel, keys ("KP_Enter"), Answer::ok },
        { "space", Buttons::okCancel, keys ("space"), Answer::ok },
        { "Escape", Buttons::okCancel, keys ("Escape"), Answer::cancel },
        { "Tab", Buttons::okCancel, keys ("Tab Return"), Answer::cancel },
        { "Tab twice", Buttons::okCancel, keys ("Tab Tab Return"), Answer::ok },
        { "back", Buttons::okCancel, keys ("shift+Tab Return"), Answer::cancel },
        { "arrows", Buttons::okCancel, keys ("Right Right Left Return"), Answer::ok },
        { "other keys", Buttons::okCancel, keys ("a F1 Right Return"), Answer::cancel },
        { "close", Buttons::okCancel, close, Answer::cancel },
        { "left", Buttons::okCancel, click (firstOfTwo), Answer::ok },
        { "right", Buttons::okCancel, click (lastButton), Answer::cancel },
        { "slid off", Buttons::okCancel, slide (lastButton, beside), Answer::cancel },
        { "slid over", Buttons::okCancel, slide (beside, lastButton), Answer::ok },
        { "Enter", Buttons::yesNo, keys ("Return"), Answer::yes },
        { "Tab", Buttons::yesNo, keys ("Tab space"), Answer::no },
        { "Escape", Buttons::yesNo, keys ("Escape"), Answer::no },
        { "close", Buttons::yesNo, close, Answer::no },
        { "left", Buttons::yesNo, click (firstOfTwo), Answer::yes },
        { "right", Buttons::yesNo, click (lastButton), Answer::no },
    };
    for (const Case& c : cases)
    {
        const Shown shown = show (question, c.buttons, c.act);
        EXPECT_EQ (shown.answer, c.answer) << c.what << " with buttons " << static_cast<int> (c.buttons);
        EXPECT_EQ (shown.title, "Warning!");
        EXPECT_EQ (shown.text, question);
    }
}

TEST (MessageBox, StandsInTheMiddleAndShowsItsText)
{
    constexpr int textLeft = 72;
    constexpr int textTop = 28;
    constexpr int textHeight = 24;
    std::vector<std::vector<std::uint32_t>> pictures;
    std::vector<int> widths;
    for (const char* text : { question, "Reload from User-Default bank? (No = Loads Factory Bank)" })
    {
        show (text, Buttons::yesNo,
              [&] (Screen& screen, xcb_window_t box)
              {
                  const auto place = screen.geometry (box);
                  EXPECT_NEAR (2 * place.x + place.width, screen.size ().width_in_pixels, 2);
                  EXPECT_NEAR (2 * place.y + place.height, screen.size ().height_in_pixels, 2);
                  widths.push_back (place.width);

                  // The text's dark pixels come with the first drawing.
                  const auto isDark = [] (std::uint32_t pixel) { return (pixel & 0xFF) < 0x60; };
                  const auto deadline = std::chrono::steady_clock::now () + std::chrono::seconds (30);
                  long dark = 0;
                  while (dark == 0 && std::chrono::steady_clock::now () < deadline)
                  {
                      pictures.push_back (
                          screen.picture (box, textLeft, textTop, place.width - textLeft, textHeight));
                      dark = std::count_if (pictures.back ().begin (), pictures.back ().end (), isDark);
                  }
                  EXPECT_GT (dark, 200);
                  // Clear of the right edge: the whole text has room.
                  const auto edge = screen.picture (box, place.width - 12, textTop, 12, textHeight);
                  EXPECT_EQ (std::count_if (edge.begin (), edge.end (), isDark), 0);
                  userDoes ("key Return");
              });
    }
    EXPECT_GT (widths[1], widths[0]) << "a longer text has a wider box";
}

TEST (MessageBox, WithoutADisplayOneLineTellsAndTheAnswerComesAtOnce)
{
    const std::string display = std::getenv ("DISPLAY");
    for (const char* none : { "", ":99999", "no such host!:0" })
    {
        ::setenv ("DISPLAY", none, 1);
        testing::internal::CaptureStderr ();
        const Answer answers[] = { platform::showMessage ("Default Values Saved!", "Ok!", Buttons::ok),
                                   platform::showMessage (question, "Warning!", Buttons::okCancel),
                                   platform::showMessage ("Which?", "Warning!", Buttons::yesNo) };
        EXPECT_EQ (testing::internal::GetCapturedStderr (),
                   "Brimvale: Ok! Default Values Saved!\n"
                   "Brimvale: Warning! Save Actual Values as Defaults?\n"
                   "Brimvale: Warning! Which?\n");
        EXPECT_EQ (answers[0], Answer::ok);
        EXPECT_EQ (answers[1], Answer::ok);
        EXPECT_EQ (answers[2], Answer::no);
    }
    ::setenv ("DISPLAY", display.c_str (), 1);
}
}
