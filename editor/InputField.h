#pragma once

#include <functional>
#include <string>

#include "editor/Toolkit.h"

namespace editor
{
// A line to type into. Return, or a click elsewhere, takes what was typed; Escape does not. Its owner removes
// it afterwards.
class InputField : public VSTGUI::CTextEdit
{
public:
    // `typed` is null when the field was left with Escape.
    using Done = std::function<void (const std::string* typed)>;

    InputField (const VSTGUI::CRect& size, VSTGUI::CFontDesc* textFont, const std::string& line,
                Done whenDone);

    void cancel () { cancelled = true; } // what is typed no longer counts
    void looseFocus () override;

    CLASS_METHODS (InputField, CTextEdit)

private:
    Done done;
    bool cancelled = false;
};
}
