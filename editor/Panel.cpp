#include "editor/Panel.h"

#include <algorithm>
#include <chrono>
#include <utility>

#include "editor/Colours.h"
#include "editor/MenuTable.h"
#include "instrument/ValueText.h"
#include "platform/EditorWindow.h"
#include "platform/MessageBox.h"
#include <vstgui/lib/platform/iplatformframe.h>

namespace editor
{
using namespace VSTGUI;

namespace
{
// The zoom lies beside the synth's stored settings, in percent.
constexpr std::string_view settingsKey = "Brimvale";
constexpr std::string_view zoomName = "EditorZoom";

std::uint32_t clockSeed ()
{
    return static_cast<std::uint32_t> (std::chrono::system_clock::now ().time_since_epoch ().count ());
}

// A light that tells whether a parameter is at its special place.
struct Lamp
{
    std::int32_t tag;
    std::int32_t parameter;
    bool (*isLit) (float value);
};
bool isNotAbove0 (float value)
{
    return !(value > 0.0f);
}
bool isOffCentre (float value)
{
    return value != 0.5f;
}
constexpr Lamp lamps[] = { { 39, param1Sustain, isNotAbove0 },
                           { 40, param2Delay, isNotAbove0 },
                           { 41, paramLfoFilter, isOffCentre },
                           { 42, param2ToFilter, isOffCentre } };

// Category of a number key, or -1.
std::int32_t categoryOfKey (std::int32_t character)
{
    return character >= '1' && character <= '4' ? character - '1' : -1;
}
}

std::unique_ptr<HostedPanel> createPanel (Synth& synth, PanelHost& host)
{
    return std::make_unique<Panel> (synth, host);
}

Panel::Panel (Synth& owner, PanelHost& surroundings)
    : synth (owner),
      host (surroundings),
      randomSound (clockSeed ())
{
}

Panel::~Panel ()
{
    Panel::close ();
}

Panel::Size Panel::size ()
{
    if (closed)
        updateRect ();
    return shownSize;
}

bool Panel::setHostScale (double scale)
{
    if (!closed || synth.settings ().read (settingsKey, zoomName) != 0)
        return false;
    zoomChoice = std::max (0, zoomEntryFitting (scale));
    return true;
}

bool Panel::open (void* parentWindow)
{
    close ();
    if (parentWindow == nullptr)
        return false;
    if (toolkit == nullptr)
        toolkit = Toolkit::use ();
    background = panelBitmap (panel::panelBitmapId);
    aboutPicture = panelBitmap (panel::aboutBitmapId);

    updateRect ();
    mailbox.open (); // before anything is read, so that no change falls between
    frame = new CFrame (CRect (0, 0, panel::panelRect.width, panelHeight ()), this);
    frame->setBackgroundColor (toColour (panel::caseColour)); // for the rest of a pixel beside the panel
    frame->setFocusColor (toColour (panel::plateColour));     // behind marked letters
    knobMode = kLinearMode;
    buildPanel ();
    makeAboutPage ();
    frame->setZoom (zoomPercents[zoomChoice] / 100.0);
    if (!platform::openFrame (*frame, parentWindow))
    {
        close ();
        return false;
    }
    closed = false;
    copyLearnBindings ();
    return true;
}

void Panel::close ()
{
    if (keyboard != nullptr)
        keyboard->release (); // while it still reaches the instrument
    closed = true;
    mailbox.shut ();
    if (frame == nullptr)
        return;
    for (const ControlSlot& entry : slots)
    {
        while (entry.control != nullptr && entry.control->isEditing ())
            entry.control->endEdit ();
    }
    hoverHelp.reset ();
    popup = nullptr;
    field = nullptr;
    fileDialog.reset ();
    edits.clear ();
    frame->unregisterKeyboardHook (this);
    platform::closeFrame (*frame);
    frame = nullptr;
    background = nullptr;
    aboutPicture = nullptr;
    toolkit->releaseBitmaps ();

    slots = {};
    topView = nullptr;
    keyboard = nullptr;
    keyboardShown = false;
    shownNotes = {};
    programDisplay = nullptr;
    menuButton = nullptr;
    aboutPage = nullptr;
    aboutShown = false;
}

void* Panel::window ()
{
    return closed ? nullptr : frame->getPlatformFrame ()->getPlatformRepresentation ();
}

void Panel::idle ()
{
    if (closed)
        return;
    platform::handleWindowEvents ();
    if (closed) // a window event can lead to anything, also to that
        return;
    applyNews ();
    hoverHelp->idle ();
    if (popup != nullptr)
        popup->idle ();
    if (!platform::windowsKeepTheirPicture () && topView->drewPart ())
        frame->invalid ();
    if (std::exchange (mayBeDirty, false))
        frame->idle (); // looks at every view, which an idle panel does not pay for
    pollFileDialog ();  // last, for it can ask a question, during which the host may end this panel
}

bool Panel::onKeyDown (std::int32_t character)
{
    if (!closed && aboutShown && character == escapeCharacter)
        removeAboutPage ();
    if (!closed && randomChoice == useNumberKeysEntry)
        makeRandomSound (categoryOfKey (character));
    return true;
}

bool Panel::wantsKey (KeyGroup group)
{
    if (closed)
        return false;
    if (popup != nullptr || field != nullptr)
        return true;
    return (group == KeyGroup::number && randomChoice == useNumberKeysEntry) ||
           (group == KeyGroup::arrow && hoveredControl () != nullptr);
}

bool Panel::onWheel (float distance)
{
    MouseWheelEvent event;
    if (closed || !frame->getCurrentMouseLocation (event.mousePosition))
        return false;
    event.deltaY = static_cast<double> (distance);
    frame->dispatchEvent (event);
    return event.consumed;
}

bool Panel::setKnobMode (std::int32_t mode)
{
    if (mode < kCircularMode || mode > kLinearMode)
        return false;
    knobMode = mode;
    return true;
}

void Panel::onKeyboardEvent (KeyboardEvent& event, CFrame* /*owner*/)
{
    if (popup != nullptr)
    {
        popup->onKey (event);
        return;
    }
    if (event.type != EventType::KeyDown)
        return;
    if (field != nullptr)
    {
        if (event.virt == VirtualKey::Escape)
            field->cancel ();
        return;
    }
    const std::int32_t category = categoryOfKey (static_cast<std::int32_t> (event.character));
    const bool control = event.modifiers.has (ModifierKey::Control);
    if (randomChoice == useNumberKeysEntry && category >= 0)
        makeRandomSound (category);
    else if (aboutShown && event.virt == VirtualKey::Escape)
        removeAboutPage ();
    else if (control && (event.character == 'z' || event.character == 'Z'))
        event.modifiers.has (ModifierKey::Shift) ? redo () : undo ();
    else if (control && (event.character == 'y' || event.character == 'Y'))
        redo ();
    else if (!turnHovered (event))
        return;
    event.consumed = true;
}

void Panel::beginEdit (std::int32_t index)
{
    if (!isParameter (index))
        return;
    startStep (index);
    host.beginEdit (index);
}

void Panel::endEdit (std::int32_t index)
{
    if (!isParameter (index))
        return;
    host.endEdit (index);
    finishStep (index);
}

bool Panel::beforeSizeChange (const CRect& newSize, const CRect& /*oldSize*/)
{
    return closed ||
           host.resize (static_cast<int> (newSize.getWidth ()), static_cast<int> (newSize.getHeight ()));
}

// Any thread.
void Panel::setParameter (std::int32_t index, float value)
{
    mailbox.post (index, value);
}

void Panel::valueChanged (CControl* control)
{
    if (closed)
        return;
    const auto guard =
        shared (control); // what follows can show a message box, and meanwhile the host can close us
    if (const auto* rightMenu = dynamic_cast<VstGraph::CRightMenu*> (control))
        synth.setParameter (commandLearn, rightMenu->getValue ());
    else
        forward (control->getTag (), control->getValue ());
    if (closed)
        return;
    if (control != keyboard) // which has marked the keys that changed
        control->setDirty ();
    mayBeDirty = true;
    applyNews ();
    if (!closed)
        hoverHelp->tellNow ();
}

void Panel::forward (std::int32_t tag, float value)
{
    if (tag == commandRemoveAbout)
        setParameter (tag, value);
    else if (isParameter (tag))
    {
        host.setParameterAutomated (tag, value);
        noteStep (tag);
    }
    else
        synth.setParameter (tag, value);
}

void Panel::applyNews ()
{
    if (applying)
        return;
    applying = true;
    // What is applied can make news of its own (a program change moves every parameter).
    for (Mailbox::News news = mailbox.take (); news.any () && !closed; news = mailbox.take ())
    {
        mayBeDirty = true;
        for (std::int32_t index = 0; index < Mailbox::indexCount && !closed; ++index)
        {
            // What two threads set at once is told in any order; the instrument knows what holds.
            if (news.has (index))
                applyValue (index, isParameter (index) ? synth.parameterValue (index) : news.value (index));
        }
        if (closed)
            break;
        applyNotes (news);
        if (news.learnMenus ())
            copyLearnBindings ();
        if (news.programs ())
            updateProgramDisplay ();
    }
    applying = false;
}

void Panel::applyValue (std::int32_t index, float value)
{
    switch (index)
    {
    case commandProgram:
        synth.setProgram (truncateToInt (value));
        host.updateDisplay ();
        return;
    case commandMainMenu:
        if (value == static_cast<float> (menuAbout))
            showAboutPage ();
        return;
    case commandRemoveAbout:
        removeAboutPage ();
        return;
    case commandLearn:
        updateLearning ();
        return;
    case commandRandom:
        makeRandomSound (truncateToInt (value));
        return;
    default:
        break;
    }
    if (index >= slotCount)
        return;

    const ControlSlot& entry = slot (index);
    if (entry.active && entry.display != nullptr)
    {
        const float shown = entry.integerDisplay ? static_cast<float> (truncateToInt (value)) : value;
        entry.display->setValue (shown * entry.displayScale + entry.displayOffset);
    }
    if (entry.active && entry.control != nullptr)
        entry.control->setValue (value);

    if (index == paramShowKeys)
        setKeyboardShown (value != 0.0f);
    else if (index == paramLfoRate || index == paramLfoBmpSync)
        updateRateDisplay ();
    else
        updateLamps ();
}

void Panel::applyNotes (const Mailbox::News& news)
{
    if (news.has (commandVoiceMode))
    {
        keyboard->allKeysOff ();
        shownNotes = {};
    }
    for (int note = 0; note < Mailbox::noteCount; ++note)
    {
        const bool down = Mailbox::contains (news.notesDown (), note);
        if (down == Mailbox::contains (shownNotes, note))
            continue;
        if (down)
            keyboard->setKeyOn (note);
        else
            keyboard->setKeyOff (note);
    }
    shownNotes = news.notesDown ();
}

// The lamps say what a knob at its special place does.
void Panel::updateLamps ()
{
    for (const Lamp& lamp : lamps)
    {
        if (slot (lamp.tag).control != nullptr)
            slot (lamp.tag).control->setValue (lamp.isLit (synth.getParameter (lamp.parameter)) ? 1.0f
                                                                                                : 0.0f);
    }
}

void Panel::updateRateDisplay ()
{
    CControl* display = slot (paramLfoRate).display;
    const std::string before = rateText;
    instrument::lfoRateText (synth.parameterValue (paramLfoRate),
                             synth.parameterValue (paramLfoBmpSync) != 0.0f, rateText);
    if (display != nullptr && rateText != before)
        display->setDirty ();
}

void Panel::updateProgramDisplay ()
{
    if (programDisplay != nullptr)
        programDisplay->setText (programEntry (synth.getProgram (), synth.programName (synth.getProgram ())));
}

void Panel::copyLearnBindings ()
{
    for (std::int32_t index = 0; index < parameterCount; ++index)
    {
        if (slot (index).rightMenu != nullptr)
            slot (index).rightMenu->setController (synth.midiController (index));
    }
    updateLearning ();
}

// The control that waits for a controller says so.
void Panel::updateLearning ()
{
    learning = synth.learnTarget ();
    std::optional<CPoint> where;
    for (std::int32_t index = 0; index < parameterCount; ++index)
    {
        VstGraph::CRightMenu* menu = slot (index).rightMenu;
        if (menu == nullptr)
            continue;
        menu->setLearning (index == learning);
        if (index == learning)
            where = menu->getViewSize ().getCenter ();
    }
    hoverHelp->pin (where);
}

void Panel::stepProgram (std::int32_t step)
{
    const std::int32_t next =
        (synth.getProgram () + step + instrument::programCount) % instrument::programCount;
    forward (commandProgram, static_cast<float> (next));
    applyNews ();
}

void Panel::makeRandomSound (std::int32_t category)
{
    History::Step step;
    step.program = synth.getProgram ();
    randomSound.generate (category,
                          [&] (std::int32_t index, float value)
                          {
                              const float before = synth.getParameter (index);
                              synth.setParameter (index, value);
                              step.changes.push_back ({ index, before, synth.getParameter (index) });
                          });
    history.add (std::move (step));
    applyNews ();
}

void Panel::showAboutPage ()
{
    if (aboutShown)
        return;
    aboutShown = true;
    addShared (aboutPage);
}

void Panel::removeAboutPage ()
{
    if (!aboutShown)
        return;
    aboutShown = false;
    const auto remove = [this]
    {
        if (!closed && !aboutShown)
            frame->removeView (aboutPage);
    };
    // Not while the toolkit is still handing the click round that ended the page: it walks the list of views.
    if (frame->inEventProcessing ())
        frame->doAfterEventProcessing (remove);
    else
        remove ();
}

int Panel::panelHeight () const
{
    return synth.getParameter (paramShowKeys) != 0.0f ? panel::panelRect.height : panel::heightWithoutKeys;
}

void Panel::updateRect ()
{
    if (zoomChoice < 0)
        zoomChoice = zoomEntryOf (synth.settings ().read (settingsKey, zoomName));
    const int percent = zoomPercents[zoomChoice];
    shownSize = { panel::panelRect.width * percent / 100, panelHeight () * percent / 100 };
}

void Panel::setKeyboardShown (bool shown)
{
    if (shown == keyboardShown)
        return;
    keyboardShown = shown;
    if (shown)
        addShared (keyboard);
    else
        frame->removeView (keyboard);
    updateRect (); // first, for the host may ask while it resizes
    frame->setSize (panel::panelRect.width * frame->getZoom (), panelHeight () * frame->getZoom ());
    frame->invalid ();
}

void Panel::setZoomEntry (int entry)
{
    const int before = zoomChoice;
    zoomChoice = entry;
    updateRect ();
    if (!frame->setZoom (zoomPercents[entry] / 100.0))
    {
        zoomChoice = before;
        updateRect ();
        platform::showMessage ("This host keeps the size of its windows.", "Warning!", platform::Buttons::ok);
        return;
    }
    synth.settings ().write (settingsKey, zoomName, static_cast<std::uint32_t> (zoomPercents[entry]));
    synth.settings ().commit ();
}
}
