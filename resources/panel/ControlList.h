#pragma once

#include <string>

namespace panel
{
// docs/controls.md: every control of the panel with its parameter and its hover help, from the panel's own
// table.
std::string controlList ();
}
