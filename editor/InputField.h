#pragma once

#include <functional>
#include <string>

#include "editor/Toolkit.h"

namespace editor
{
// A line to type into. Return takes what was typed, and a click elsewhere does unless the field waits for
// Return; Escape does not. Its owner removes it afterwards.
class InputField : public VSTGUI::CTextEdit
{
public:
    static constexpr double usualHeight = 18.0; // pixels

    // `typed` is null when nothing was taken.
    using Done = std::function<void (const std::string* typed)>;

    InputField (const VSTGUI::CRect& size, VSTGUI::CFontDesc* textFont, const std::string& line,
                Done whenDone);

    void waitForReturn () { needsReturn = true; }
    void cancel () { cancelled = true; } // what is typed no longer counts
    void looseFocus () override;

    CLASS_METHODS (InputField, CTextEdit)

private:
    Done done;
    bool needsReturn = false;
    bool cancelled = false;
};
}
