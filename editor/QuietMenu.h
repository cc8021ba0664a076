#pragma once

#include "editor/Toolkit.h"

namespace editor
{
// A menu that the toolkit does not tell the host of: it would take the menu's tag for a parameter that is
// being edited.
class QuietMenu : public VSTGUI::COptionMenu
{
public:
    using COptionMenu::COptionMenu;
    void beginEdit () override {}
    void endEdit () override {}
};
}
