#include "platform/MessageBox.h"

#include <windows.h>

namespace platform
{
Answer showMessage (const char* text, const char* title, Buttons buttons)
{
    constexpr UINT types[] = { MB_OK, MB_OKCANCEL, MB_YESNO };
    switch (MessageBoxA (nullptr, text, title, types[static_cast<int> (buttons)] | MB_TASKMODAL))
    {
    case IDOK:
        return Answer::ok;
    case IDCANCEL:
        return Answer::cancel;
    case IDYES:
        return Answer::yes;
    case IDNO:
        return Answer::no;
    default:
        return Answer::none;
    }
}
}
