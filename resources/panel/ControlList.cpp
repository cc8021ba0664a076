#include "resources/panel/ControlList.h"

#include <sstream>

#include "parameters/Parameters.h"
#include "resources/panel/PanelLayout.h"

namespace
{
const char* nameOf (panel::ControlKind kind)
{
    switch (kind)
    {
    case panel::ControlKind::knob:
        return "knob";
    case panel::ControlKind::slider:
        return "slider";
    case panel::ControlKind::onOffButton:
        return "switch";
    case panel::ControlKind::lamp:
        return "lamp";
    case panel::ControlKind::keyboard:
        return "keyboard";
    case panel::ControlKind::valueDisplay:
        return "display";
    }
    return "";
}

// The parameter's name without the blanks behind it; a dash for what belongs to the panel alone.
std::string parameterOf (const panel::Control& control)
{
    if (!parameters::isParameter (control.tag))
        return "–";
    std::string name = parameters::paramTable[static_cast<std::size_t> (control.tag)].name;
    name.erase (name.find_last_not_of (' ') + 1);
    return "`" + name + "`";
}

std::string printedLabel (const panel::Control& control)
{
    std::string text = control.label != nullptr ? control.label : "";
    if (control.secondLabel != nullptr)
        text += std::string (" ") + control.secondLabel;
    return text;
}
}

namespace panel
{
std::string controlList ()
{
    std::ostringstream page;
    page << "# The controls\n\n"
            "Written by `makePanel --controls docs/controls.md` from the panel's table. \"At\" is the place "
            "in pixels from\n"
            "the panel's top left; a label that stands beside its control is not repeated here.\n\n"
            "| At | Kind | Label | Parameter | What it does |\n|---|---|---|---|---|\n";
    for (const panel::Control& control : panel::controls ())
    {
        page << "| " << control.rect.x << ", " << control.rect.y << " | " << nameOf (control.kind) << " | "
             << printedLabel (control) << " | " << parameterOf (control) << " | "
             << (control.help != nullptr ? control.help : "") << " |\n";
    }
    return page.str ();
}
}
