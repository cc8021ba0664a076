#include "engine/VoiceAllocator.h"

#include <algorithm>

namespace engine
{
void VoiceAllocator::setVoiceLimit (std::int32_t voices)
{
    if (voices == limit)
        return;
    reset ();
    limit = std::clamp (voices, 1, capacity);
}

void VoiceAllocator::reset ()
{
    entries = {};
    noteCounter = -1;
    activeNotes = 0;
}

int VoiceAllocator::take (int slot, std::uint32_t note, std::uint32_t velocity)
{
    // Stamps are unsigned: the first one after a reset is the largest there is.
    at (slot) = { static_cast<std::uint32_t> (noteCounter), note, velocity };
    ++noteCounter;
    return slot;
}

// The candidate begins as slot 0's stamp, not its number, and is compared with stamps
// and replaced by slot numbers alike. Which voice is stolen in a full chord depends on it.
int VoiceAllocator::slotToSteal () const
{
    std::uint32_t candidate = at (0).startStamp;
    for (int slot = 0; slot < limit; ++slot)
    {
        const bool better = activeNotes < limit ? at (slot).note == 0 : at (slot).startStamp < candidate;
        if (better)
            candidate = static_cast<std::uint32_t> (slot);
    }
    return candidate < static_cast<std::uint32_t> (limit) ? static_cast<int> (candidate) : 0;
}

int VoiceAllocator::slotOf (std::uint32_t note) const
{
    for (int slot = 0; slot < searchEnd (); ++slot)
    {
        if (at (slot).note == note)
            return slot;
    }
    return noSlot;
}

// One past the last entry that is searched; in mono one entry above the stack is looked at too.
int VoiceAllocator::searchEnd () const
{
    return limit == 1 ? std::min (noteCounter + 2, capacity) : limit;
}

bool VoiceAllocator::contains (std::uint32_t note) const
{
    return slotOf (note) != noSlot;
}

int VoiceAllocator::release (std::uint32_t note)
{
    if (limit == 1)
        return pop (note);
    const int slot = slotOf (note);
    if (slot == noSlot)
        return noSlot;
    at (slot).note = 0;
    activeNotes = std::max (activeNotes - 1, 0);
    return slot;
}

int VoiceAllocator::push (std::uint32_t note, std::uint32_t velocity)
{
    const int top = std::min (noteCounter + 1, capacity - 1);
    noteCounter = top;
    at (top).note = note;
    at (top).velocity = velocity;
    return top == 0 ? 0 : noSlot;
}

int VoiceAllocator::pop (std::uint32_t note)
{
    const int top = std::clamp (noteCounter - 1, -1, capacity - 2);
    noteCounter = top;
    if (top < 0)
    {
        // Entry 0 keeps its note: the releasing voice stays at its pitch.
        at (1).note = 0;
        return 0;
    }
    const auto end = entries.begin () + top + 2;
    const auto released =
        std::find_if (entries.begin (), end, [note] (const Entry& entry) { return entry.note == note; });
    if (released != end)
        std::move (released + 1, end, released);
    at (top + 1) = {};
    return noSlot;
}

std::uint32_t VoiceAllocator::currentNote () const
{
    return at (std::clamp (noteCounter, 0, capacity - 1)).note;
}
}
