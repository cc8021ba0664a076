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
    using Row = std::tuple<Buttons, Press, Answer>;
    for (const auto& [buttons, press, answer] : { Row{ Buttons::ok, Press::firstButton, Answer::ok },
                                                  Row{ Buttons::okCancel, Press::firstButton, Answer::ok },
                                                  Row{ Buttons::okCancel, Press::lastButton, Answer::cancel },
                                                  Row{ Buttons::okCancel, Press::close, Answer::cancel },
                                                  Row{ Buttons::yesNo, Press::firstButton, Answer::yes },
                                                  Row{ Buttons::yesNo, Press::lastButton, Answer::no } })
    {
        Answer given = Answer::none;
        const auto boxes = boxesDuring (press, [&, b = buttons]
                                        { given = platform::showMessage ("Which one?", "Warning!", b); });
        EXPECT_EQ (boxes, std::vector<std::string>{ "Warning! Which one?" });
        EXPECT_EQ (given, answer);
    }
}
}
