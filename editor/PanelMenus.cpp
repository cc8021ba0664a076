// The pop-up menus, from the menu table.
#include "editor/Panel.h"

#include <cmath>

#include "editor/Colours.h"
#include "editor/MenuTable.h"
#include "editor/QuietMenu.h"
#include "platform/EditorWindow.h"

namespace editor
{
using namespace VSTGUI;

namespace
{
constexpr double menuFontSize = 12.0; // pixels

// In the one style whose check marks, also on submenus, show on both systems.
SharedPointer<COptionMenu> emptyMenu (std::int32_t tag)
{
    return makeOwned<QuietMenu> (CRect (), nullptr, tag, nullptr, nullptr, COptionMenu::kMultipleCheckStyle);
}
}

SharedPointer<COptionMenu> Panel::makeMenu (std::int32_t tag)
{
    auto menu = emptyMenu (tag);
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
    menu->addSeparator ();
    for (const CommandEntry& entry : commandEntries ())
    {
        auto* item = new CMenuItem (entry.title, entry.tag);
        item->setEnabled (isAvailable (entry.tag));
        item->setChecked (isOn (entry.tag));
        menu->addEntry (item);
    }
    return menu;
}

// Entries carry their program as tag, for the groups count from 0 each.
SharedPointer<COptionMenu> Panel::makeProgramMenu ()
{
    auto menu = emptyMenu (commandProgram);
    for (const ProgramGroup& group : programGroups ())
    {
        auto submenu = emptyMenu (commandProgram);
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
    if (tag == paramHighQuality) // its two ends alone mean something
        return static_cast<int> (std::lround (synth.parameterValue (tag)));
    return isParameter (tag) ? (synth.parameterValue (tag) != 0.0f ? 1 : 0) : -1;
}

// A menu of the system takes its reference back only while the frame lives, so it gets one of its own.
void Panel::popUp (const SharedPointer<COptionMenu>& menu, const CRect& anchor, const PopupMenu::Done& chosen)
{
    const auto whenDone =
        [this, chosen, owner = std::weak_ptr (alive)] (COptionMenu* from, std::int32_t entry)
    {
        if (owner.expired ())
            return;
        popup = nullptr;
        if (menuButton != nullptr)
            menuButton->release ();
        if (closed)
            return;
        hoverHelp->setSilent (false);
        chosen (from, entry);
    };
    const auto show = [this, menu, anchor, whenDone]
    {
        if (closed || popup != nullptr)
            return;
        hoverHelp->setSilent (true);
        if (!platform::hasMenusOfItsOwn ())
        {
            CRect area = frame->getViewSize ();
            frame->getTransform ().inverse ().transform (area);
            popup = makeOwned<PopupMenu> (area, toolkit->font (menuFontSize), menu, anchor, whenDone);
            addShared (popup);
            return;
        }
        menu->remember ();
        menu->popup (frame, anchor.getBottomLeft (),
                     [menu, whenDone] (COptionMenu*)
                     {
                         std::int32_t entry = -1;
                         COptionMenu* from = menu->getLastItemMenu (entry);
                         const bool left = from == nullptr || menu->getLastResult () < 0;
                         whenDone (left ? nullptr : from, left ? -1 : entry);
                         menu->forget ();
                     });
    };
    if (frame->inEventProcessing ())
        frame->doAfterEventProcessing (show);
    else
        show ();
}

void Panel::openMainMenu (const CRect& anchor)
{
    addOpenSteps (); // "Undo" is there for them
    popUp (makeMainMenu (), anchor,
           [this] (COptionMenu* menu, std::int32_t entry) { menuChosen (menu, entry); });
}

void Panel::openProgramMenu ()
{
    popUp (makeProgramMenu (), toRect (panel::programDisplayRect),
           [this] (COptionMenu* menu, std::int32_t entry) { menuChosen (menu, entry); });
}

// What is chosen travels under the tag of its (sub)menu with the entry's index as value; the program list's
// entries carry their program, and the panel's own commands theirs.
void Panel::menuChosen (COptionMenu* menu, std::int32_t entry)
{
    if (menu == nullptr)
        return;
    const std::int32_t tag = menu->getTag ();
    const std::int32_t entryTag = menu->getEntry (entry)->getTag ();
    if (tag == zoomMenuTag)
    {
        setZoomEntry (entry);
        return;
    }
    if (tag == commandMainMenu && entryTag >= commandUndo)
    {
        perform (entryTag);
        return;
    }
    if (tag == commandRandom)
        randomChoice = entry;
    const auto value = static_cast<float> (tag == commandProgram ? entryTag : entry);
    if (tag == commandMainMenu && entry == menuLoadFactoryBank)
    {
        replaceBank ([this, tag, value] { forward (tag, value); });
    }
    else
    {
        beginEdit (tag);
        forward (tag, value);
        if (!closed) // a question may have been asked meanwhile, and the host may have closed us
            endEdit (tag);
    }
    if (!closed)
        applyNews ();
}

bool Panel::isAvailable (std::int32_t command) const
{
    switch (command)
    {
    case commandUndo:
        return history.canUndo ();
    case commandRedo:
        return history.canRedo ();
    case commandLoadFile:
    case commandSaveProgram:
    case commandSaveBank:
        return !isAskingForFile ();
    default:
        return true;
    }
}

bool Panel::isOn (std::int32_t command) const
{
    const instrument::Additions on = synth.additions ();
    return (command == commandPedalAndWheel && on.pedalAndWheel) ||
           (command == commandSongLock && on.songLock);
}

void Panel::perform (std::int32_t command)
{
    instrument::Additions additions = synth.additions ();
    switch (command)
    {
    case commandUndo:
        undo ();
        break;
    case commandRedo:
        redo ();
        break;
    case commandRenameProgram:
        renameProgram ();
        break;
    case commandPedalAndWheel:
        additions.pedalAndWheel = !additions.pedalAndWheel;
        switchAdditions (additions);
        break;
    case commandSongLock:
        additions.songLock = !additions.songLock;
        switchAdditions (additions);
        break;
    case commandLoadFile:
        loadFile ();
        break;
    case commandSaveProgram:
        saveProgram ();
        break;
    case commandSaveBank:
        saveBank ();
        break;
    default:
        break;
    }
}

// The host hears of it, for they are kept with its song.
void Panel::switchAdditions (const instrument::Additions& wanted)
{
    synth.setAdditions (wanted);
    host.updateDisplay ();
}
}
