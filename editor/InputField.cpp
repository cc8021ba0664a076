#include "editor/InputField.h"

#include <utility>

#include "editor/Colours.h"

namespace editor
{
using namespace VSTGUI;

InputField::InputField (const CRect& size, CFontDesc* textFont, const std::string& line, Done whenDone)
    : CTextEdit (size, nullptr, -1, line.c_str ()),
      done (std::move (whenDone))
{
    setFont (textFont);
    setFontColor (toColour (panel::accentColour));
    setBackColor (toColour (panel::glassColour));
    setFrameColor (toColour (panel::accentColour));
    setHoriAlign (kLeftText);
    setTextInset (CPoint (3.0, 0.0));
}

void InputField::looseFocus ()
{
    CTextEdit::looseFocus ();
    if (const Done tell = std::exchange (done, nullptr))
    {
        const std::string line = getText ().getString ();
        tell (cancelled || (needsReturn && !bWasReturnPressed) ? nullptr : &line);
    }
}
}
