// For builds without an editor, which need no display.
#include "platform/MessageBox.h"

#include "platform/linux/MessageLine.h"

namespace platform
{
Answer showMessage (const char* text, const char* title, Buttons buttons)
{
    return writeMessage (text, title, buttons);
}
}
