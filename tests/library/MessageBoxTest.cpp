// The message boxes and their buttons, on both systems.
#include "platform/MessageBox.h"
#include "tests/library/Surroundings.h"

#include <gtest/gtest.h>

namespace
{
TEST (MessageBox, EveryButtonAnswers)
{
    using platform::Answer;
    using platform::Buttons;
    const struct
    {
        Buttons buttons;
        Press press;
        Answer answer;
    } cases[] = {
        { Buttons::ok, Press::firstButton, Answer::ok },
        { Buttons::okCancel, Press::firstButton, Answer::ok },
        { Buttons::okCancel, Press::lastButton, Answer::cancel },
        { Buttons::okCancel, Press::close, Answer::cancel },
        { Buttons::yesNo, Press::firstButton, Answer::yes },
        { Buttons::yesNo, Press::lastButton, Answer::no },
    };
    for (const auto& [buttons, press, answer] : cases)
    {
        BoxWatcher watcher (press);
        EXPECT_EQ (platform::showMessage ("Which one?", "Warning!", buttons), answer);
        EXPECT_EQ (watcher.boxes (), (std::vector<Box>{ { "Warning!", "Which one?" } }));
    }
}
}
