#pragma once

#include "platform/MessageBox.h"

namespace platform
{
// Where no box can be shown: writes the message to standard error as one line and answers OK, or No.
Answer writeMessage (const char* text, const char* title, Buttons buttons);
}
