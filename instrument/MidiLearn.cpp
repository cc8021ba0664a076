#include "instrument/MidiLearn.h"

namespace instrument
{
using namespace parameters;

void MidiLearn::arm (std::int32_t index)
{
    if (isParameter (index))
        target = index;
}

void MidiLearn::forget (std::int32_t index)
{
    if (isParameter (index))
        store.setMidiController (index, 0);
}

void MidiLearn::forgetAll ()
{
    for (std::int32_t index = 0; index < parameterCount; ++index)
        store.setMidiController (index, 0);
}

bool MidiLearn::complete (std::uint32_t controller)
{
    // Channel mode messages: a host's "all notes off" at stop must not become a knob.
    constexpr std::uint32_t firstChannelMode = 120;
    if (controller >= firstChannelMode)
        return false;
    const std::int32_t index = target.exchange (-1);
    if (index == -1)
        return false;
    store.setMidiController (index, controller);
    return true;
}
}
