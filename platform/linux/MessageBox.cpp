#include "platform/MessageBox.h"

#include "platform/linux/Dialog.h"
#include "platform/linux/MessageLine.h"

namespace
{
struct Choice
{
    const char* label;
    platform::Answer answer;
};

std::vector<Choice> choicesOf (platform::Buttons buttons)
{
    using platform::Answer;
    switch (buttons)
    {
    case platform::Buttons::okCancel:
        return { { "OK", Answer::ok }, { "Cancel", Answer::cancel } };
    case platform::Buttons::yesNo:
        return { { "Yes", Answer::yes }, { "No", Answer::no } };
    default:
        return { { "OK", Answer::ok } };
    }
}
}

namespace platform
{
Answer showMessage (const char* text, const char* title, Buttons buttons)
{
    const std::vector<Choice> choices = choicesOf (buttons);
    std::vector<std::string> labels;
    labels.reserve (choices.size ());
    for (const Choice& choice : choices)
        labels.emplace_back (choice.label);
    Dialog dialog (text, title, labels);
    if (dialog.isConnected ())
        return choices[static_cast<std::size_t> (dialog.run ())].answer;
    return writeMessage (text, title, buttons);
}
}
