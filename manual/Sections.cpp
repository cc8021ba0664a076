#include "manual/Sections.h"

#include <algorithm>

namespace manual
{
std::vector<Marked> markedSections ()
{
    std::vector<Marked> marked;
    const auto nextNumber = [&marked] { return static_cast<int> (marked.size ()) + 1; };
    for (const panel::Section& section : panel::sections ())
    {
        if (section.name != nullptr)
            marked.push_back ({ nextNumber (), section.name, section.first, section.second });
    }
    const auto controls = panel::controls ();
    const auto keys = std::ranges::find (controls, panel::ControlKind::keyboard, &panel::Control::kind);
    marked.push_back ({ nextNumber (), "Keyboard", keys->rect, {} });
    return marked;
}

const panel::Section* sectionOf (const panel::Control& control)
{
    const auto sections = panel::sections ();
    const auto found =
        std::ranges::find_if (sections, [&control] (const panel::Section& section)
                              { return section.contains (control.centreX (), control.centreY ()); });
    return found == sections.end () ? nullptr : &*found;
}
}
