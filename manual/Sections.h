#pragma once

#include <string>
#include <vector>

#include "resources/panel/PanelLayout.h"

namespace manual
{
// A section of the panel with the number that the manual's picture gives it.
struct Marked
{
    int number;
    std::string name;
    panel::Rect first, second; // as panel::Section; the keys have one
};

// From the top left; the keys, which lie on no plate, last.
std::vector<Marked> markedSections ();

// The plate that a control stands on; null for none.
const panel::Section* sectionOf (const panel::Control& control);
}
