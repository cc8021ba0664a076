#include "platform/linux/MessageLine.h"

#include <cstdio>

namespace platform
{
Answer writeMessage (const char* text, const char* title, Buttons buttons)
{
    std::fprintf (stderr, "Brimvale: %s %s\n", title, text);
    return buttons == Buttons::yesNo ? Answer::no : Answer::ok;
}
}
