// The pop-up menus, from the menu table.
#include <cmath>

#include "editor/Colours.h"
#include "editor/Panel.h"

#include "editor/MenuTable.h"
#include "platform/EditorWindow.h"
#include <cmath>
#include <vstgui/lib/platform/common/genericoptionmenu.h>
#include <vstgui/lib/platform/iplatformframe.h>

namespace editor
{
using namespace VSTGUI;

namespace
{
constexpr double menuFontSize = 12.0; // pixels

// In the one style whose check marks, also on submenus, show on both systems.
SharedPointer<COptionMenu> emptyMenu (IControlListener* listener, std::int32_t tag)
{
    return makeOwned<COptionMenu> (CRect (), listener, tag, nullptr, nullptr,
                                   COptionMenu::kMultipleCheckStyle);
}
}

SharedPointer<COptionMenu> Panel::makeMenu (std::int32_t tag)
{
    auto menu = emptyMenu (this, tag);
    for (const char* entry : menuTable (tag).entries)
    {
        if (entry == menuSeparator)
            menu->addSeparator ();
        else
            menu->addEntry (entry);
    }
    menu->checkEntry (currentEntry (tag), true);
    if (tag == zoomMenuTag)
    {
        if (auto* fitting = menu->getEntry (zoomEntryFitting (platform::screenScale (*frame))))
            fitting->setTitle (fitting->getTitle () + fittingZoomMark);
    }
    return menu;
}

SharedPointer<COptionMenu> Panel::makeMainMenu ()
{
    auto menu = makeMenu (commandMainMenu);
    menu->addSeparator ();
    for (const MenuTable& table : menuTables ())
    {
        if (table.title == nullptr)
            continue;
        const auto submenu = table.tag == commandProgram ? makeProgramMenu () : makeMenu (table.tag);
        menu->addEntry (submenu, table.title);
    }
    return menu;
}

// Entries carry their program as tag, for the groups count from 0 each.
SharedPointer<COptionMenu> Panel::makeProgramMenu ()
{
    auto menu = emptyMenu (this, commandProgram);
    for (const ProgramGroup& group : programGroups ())
    {
        auto submenu = emptyMenu (this, commandProgram);
        bool holdsCurrent = false;
        for (const std::int32_t program : group.programs)
        {
            auto* item =
                new CMenuItem (programEntry (program, synth.programName (program)).c_str (), program);
            const bool current = program == synth.getProgram ();
            item->setChecked (current);
            holdsCurrent = holdsCurrent || current;
            submenu->addEntry (item);
        }
        menu->addEntry (submenu, group.title)->setChecked (holdsCurrent);
    }
    return menu;
}

// -1 where no entry is a state.
int Panel::currentEntry (std::int32_t tag) const
{
    if (tag == commandRandom)
        return randomChoice == useNumberKeysEntry ? randomChoice : -1;
    if (tag == zoomMenuTag)
        return zoomChoice;
    return isParameter (tag) ? static_cast<int> (std::lround (synth.parameterValue (tag))) : -1;
}

// The toolkit takes its reference back only while the frame lives, so it gets one of its own.
void Panel::popUp (const SharedPointer<COptionMenu>& menu, const CPoint& where)
{
    const auto show = [this, menu, where]
    {
        if (closed)
            return;
        menu->remember ();
        menu->popup (frame, where,
                     [this, menu, owner = std::weak_ptr (alive)] (COptionMenu*)
                     {
                         menu->forget ();
                         if (!owner.expired () && menuButton != nullptr)
                             menuButton->release ();
                     });
    };
    hoverHelp->hide ();
    if (frame->inEventProcessing ())
        frame->doAfterEventProcessing (show);
    else
        show ();
}

void Panel::openMainMenu (const CPoint& where)
{
    popUp (makeMainMenu (), where);
}

void Panel::openProgramMenu ()
{
    popUp (makeProgramMenu (), toRect (panel::programDisplayRect).getBottomLeft ());
}

void Panel::menuChosen (COptionMenu& menu)
{
    std::int32_t index = -1;
    COptionMenu* chosen = menu.getLastItemMenu (index);
    if (chosen == nullptr || menu.getLastResult () < 0) // Escape leaves a menu but no entry
        return;
    const std::int32_t tag = chosen->getTag ();
    if (tag == zoomMenuTag)
    {
        setZoomEntry (index);
        return;
    }
    if (tag == commandRandom)
        randomChoice = index;
    const bool isProgram = tag == commandProgram;
    const std::int32_t value = isProgram ? chosen->getEntry (index)->getTag () : index;
    beginEdit (tag);
    forward (tag, static_cast<float> (value));
    if (!closed)
        endEdit (tag);
}

void Panel::styleMenus ()
{
    if (platform::hasMenusOfItsOwn ())
        return;
    GenericOptionMenuTheme theme;
    theme.font = toolkit->font (menuFontSize);
    theme.backgroundColor = toColour (panel::caseColour);
    theme.backgroundColor.alpha = 254; // the toolkit leaves a fully opaque one out
    theme.textColor = toColour (panel::letterColour);
    theme.selectedBackgroundColor = toColour (panel::accentColour);
    theme.selectedTextColor = toColour (panel::glassColour);
    theme.separatorColor = toColour (panel::scaleColour);
    theme.titleTextColor = toColour (panel::scaleColour);
    theme.menuAnimationTime = 60; // ms
    frame->getPlatformFrame ()->setupGenericOptionMenu (true, &theme);
}
}
