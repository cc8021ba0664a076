// The user's steps, which can be taken back, and what is typed.
#include <algorithm>

#include "editor/Colours.h"
#include "editor/Panel.h"
#include "instrument/ValueText.h"

namespace editor
{
using namespace VSTGUI;

namespace
{
constexpr double fieldFontSize = 12.0; // pixels, all of these
constexpr double fieldWidth = 110.0;
constexpr double fieldGap = 4.0; // from the control

bool isOfProgram (const History::Change& change)
{
    return paramTable[static_cast<std::size_t> (change.index)].scope == Scope::program;
}
}

void Panel::startStep (std::int32_t index)
{
    const float value = synth.getParameter (index);
    edits.push_back ({ synth.getProgram (), { index, value, value } });
}

void Panel::noteStep (std::int32_t index)
{
    for (Edit& edit : edits)
    {
        if (edit.change.index == index)
            edit.change.after = synth.getParameter (index);
    }
}

void Panel::finishStep (std::int32_t index)
{
    const auto edit = std::ranges::find_if (edits, [=] (const Edit& e) { return e.change.index == index; });
    if (edit == edits.end ())
        return;
    addStep (*edit);
    edits.erase (edit);
}

void Panel::addStep (const Edit& edit)
{
    History::Step step;
    step.program = edit.program;
    step.changes = { edit.change };
    step.recorded = true;
    history.add (std::move (step));
}

// The wheel and the arrow keys keep an edit open for half a second, for the host's sake. What they did until
// now can be taken back at once; what follows is another step.
void Panel::addOpenSteps ()
{
    for (Edit& edit : edits)
    {
        addStep (edit);
        edit.change.before = edit.change.after;
    }
}

void Panel::replaceBank (const std::function<void ()>& load)
{
    History::Step step;
    step.program = synth.getProgram ();
    step.before = currentBank ();
    load ();
    step.after = currentBank ();
    step.programAfter = synth.getProgram ();
    history.add (std::move (step));
}

History::Bank Panel::currentBank ()
{
    const auto image = synth.getChunk (false);
    return { image.begin (), image.end () };
}

void Panel::undo ()
{
    addOpenSteps ();
    if (history.canUndo ())
        apply (history.undo (), false);
}

void Panel::redo ()
{
    addOpenSteps ();
    if (history.canRedo ())
        apply (history.redo (), true);
}

// In the program that the step was made in, which is selected for it.
void Panel::apply (const History::Step& step, bool again)
{
    if (step.changes.empty ())
    {
        const History::Bank& bank = again ? step.after : step.before;
        const instrument::Additions on = synth.additions (); // are no sounds, and stay
        synth.setChunk (bank.data (), static_cast<std::int64_t> (bank.size ()), false);
        synth.setAdditions (on);
        synth.setProgram (again ? step.programAfter : step.program);
        host.updateDisplay ();
    }
    else if (synth.getProgram () != step.program && std::ranges::any_of (step.changes, isOfProgram))
    {
        synth.setProgram (step.program);
        host.updateDisplay ();
    }
    for (const History::Change& change : step.changes)
    {
        const float value = again ? change.after : change.before;
        if (!step.recorded)
        {
            synth.setParameter (change.index, value);
            continue;
        }
        const bool isOpen =
            std::ranges::any_of (edits, [&] (const Edit& e) { return e.change.index == change.index; });
        if (!isOpen) // which the host was told, and will be told the end of
            host.beginEdit (change.index);
        host.setParameterAutomated (change.index, value);
        if (!isOpen)
            host.endEdit (change.index);
    }
    for (Edit& edit : edits) // goes on from here
    {
        const float value = synth.getParameter (edit.change.index);
        edit = { synth.getProgram (), { edit.change.index, value, value } };
    }
    applyNews ();
    if (!closed)
        hoverHelp->refresh ();
}

void Panel::openField (const CRect& place, const std::string& text,
                       const std::function<void (const std::string&)>& typed, bool needsReturn)
{
    const auto whenDone = [this, typed, owner = std::weak_ptr (alive)] (const std::string* entered)
    {
        if (owner.expired () || closed)
            return;
        const auto finish =
            [this, typed, taken = entered != nullptr, line = entered != nullptr ? *entered : ""]
        {
            if (closed || field == nullptr)
                return;
            frame->removeView (field);
            field = nullptr;
            hoverHelp->setSilent (false);
            if (taken)
                typed (line);
        };
        if (frame->inEventProcessing ())
            frame->doAfterEventProcessing (finish);
        else
            finish ();
    };
    const auto open = [this, place, text, whenDone, needsReturn]
    {
        if (closed || field != nullptr)
            return;
        hoverHelp->setSilent (true);
        field = makeOwned<InputField> (place, toolkit->font (fieldFontSize), text, whenDone);
        if (needsReturn)
            field->waitForReturn ();
        addShared (field);
        frame->setFocusView (field);
    };
    if (frame->inEventProcessing ())
        frame->doAfterEventProcessing (open);
    else
        open ();
}

void Panel::typeValue (std::int32_t parameter)
{
    const CRect control = slot (parameter).control->getViewSize ();
    CRect place (0, 0, fieldWidth, InputField::usualHeight);
    place.offset (
        std::clamp (control.getCenter ().x - fieldWidth / 2.0, 0.0, panel::panelRect.width - fieldWidth),
        control.bottom + fieldGap);
    place.makeIntegral ();
    openField (place, valueOf (parameter),
               [this, parameter] (const std::string& text)
               {
                   const auto value = instrument::valueFromText (parameter, text, valueContext ());
                   if (!value)
                       return;
                   beginEdit (parameter);
                   forward (parameter, *value);
                   endEdit (parameter);
                   applyNews ();
               });
}

void Panel::renameProgram ()
{
    openField (toRect (panel::programDisplayRect), synth.programName (synth.getProgram ()),
               [this] (const std::string& name)
               {
                   if (name.find_first_not_of (' ') == std::string::npos)
                       return;
                   synth.setProgramName (name);
                   host.updateDisplay ();
                   updateProgramDisplay ();
               });
}

CView* Panel::hoveredControl () const
{
    const auto where = hoverHelp->mouse ();
    if (!where)
        return nullptr;
    for (const ControlSlot& entry : slots)
    {
        if (entry.rightMenu != nullptr && entry.rightMenu->getViewSize ().pointInside (*where))
            return entry.control;
    }
    return programDisplay->getViewSize ().pointInside (*where) ? programDisplay : nullptr;
}

// The arrow keys turn what lies under the mouse as the wheel does.
bool Panel::turnHovered (const KeyboardEvent& event)
{
    const bool up = event.virt == VirtualKey::Up || event.virt == VirtualKey::Right;
    const bool down = event.virt == VirtualKey::Down || event.virt == VirtualKey::Left;
    CView* control = up || down ? hoveredControl () : nullptr;
    if (control == nullptr)
        return false;
    MouseWheelEvent wheel;
    wheel.mousePosition = *hoverHelp->mouse ();
    wheel.modifiers = event.modifiers;
    wheel.deltaY = up ? 1.0 : -1.0;
    control->dispatchEvent (wheel);
    return true;
}
}
