#pragma once

namespace platform
{
enum class Buttons
{
    ok,
    okCancel,
    yesNo
};

// What the user pressed; `none` when no box could be shown at all.
enum class Answer
{
    none,
    ok,
    cancel,
    yes,
    no
};

// Shows a modal box and waits for its answer. Texts are ASCII. User-interface thread only. Where there is no
// display it writes the text to stderr and answers at once (ok, or no for a yes/no question).
Answer showMessage (const char* text, const char* title, Buttons buttons);
}
