// Binding MIDI controllers to parameters. The bindings themselves are the slots' midiController fields.
#include "plugin/VstSynth.h"

namespace
{
constexpr float forgetFrom = 999.0f;    // command values from here on forget a binding
constexpr float forgetOffset = 1000.0f; // plus the parameter's index
}

std::uint32_t VstSynth::midiController (VstInt32 index) const
{
    return isParameter (index) ? bank.slots[static_cast<std::size_t> (index)].midiController : 0;
}

// Numbers that are no parameter are ignored.
void VstSynth::armOrForget (float value)
{
    const bool forgets = value >= forgetFrom;
    const std::int32_t index = truncateToInt (forgets ? value - forgetOffset : value);
    if (!isParameter (index))
        return;
    if (!forgets)
    {
        midiLearnTarget = index;
        return;
    }
    bank.slots[static_cast<std::size_t> (index)].midiController = 0;
    refreshLearnMenus ();
}

void VstSynth::forgetAllControllers ()
{
    for (ParameterSlot& slot : bank.slots)
        slot.midiController = 0;
    refreshLearnMenus ();
}

void VstSynth::refreshLearnMenus ()
{
    if (synthEditor != nullptr)
        synthEditor->refreshLearnMenus ();
}

// Audio thread. The message that completes a learn sets the parameter at once. Controller 0 means "none", so
// learning it unbinds.
void VstSynth::controllerReceived (std::uint32_t controller, float value)
{
    if (const std::int32_t target = midiLearnTarget.exchange (-1); target != -1)
    {
        bank.slots[static_cast<std::size_t> (target)].midiController = controller;
        refreshLearnMenus ();
    }
    for (VstInt32 index = 0; index < parameterCount; ++index)
    {
        const std::uint32_t bound = midiController (index);
        if (bound != 0 && bound == controller)
            setParameter (index, value);
    }
}
