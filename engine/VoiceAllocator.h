#pragma once

#include <array>
#include <cstdint>

namespace engine
{
// Which voice plays which note. With several voices it is a table of slots, one per voice, of which a note
// takes the idle or the stolen one; with one voice (mono) it is the stack of held notes, newest on top.
// A note of 0 marks a free slot, so MIDI note 0 cannot be told from one. Audio thread.
class VoiceAllocator
{
public:
    static constexpr int noSlot = -1;

    // A change forgets all notes. At least 1, which is mono.
    void setVoiceLimit (std::int32_t voices);
    std::int32_t voiceLimit () const { return limit; }

    // Forgets all notes, keeps the limit.
    void reset ();

    // A key goes down. `idle (slot)` tells whether a voice has ended. Answers the slot to start; in mono 0
    // for a note with no other held, else noSlot: the sounding voice goes on with the new pitch.
    template <typename IsIdle>
    int allocate (std::uint32_t note, std::uint32_t velocity, IsIdle idle)
    {
        if (limit == 1)
            return push (note, velocity);
        if (const int held = slotOf (note); held != noSlot)
            return held;
        activeNotes = activeNotes < limit ? activeNotes + 1 : limit;
        for (int slot = 0; slot < limit; ++slot)
        {
            if (idle (slot))
                return take (slot, note, velocity);
        }
        return take (slotToSteal (), note, velocity);
    }

    // A key goes up. Answers the slot to release; noSlot while other mono notes are held.
    int release (std::uint32_t note);

    bool contains (std::uint32_t note) const;

    // Velocity (0..127) that the slot was first taken with; a key struck again while held keeps it.
    std::uint32_t velocityOf (int slot) const { return entries[static_cast<std::size_t> (slot)].velocity; }

    // Mono: the newest note still held, else the last one that was.
    std::uint32_t currentNote () const;

private:
    static constexpr int capacity = 128;

    struct Entry
    {
        std::uint32_t startStamp = 0;
        std::uint32_t note = 0;
        std::uint32_t velocity = 0;
    };

    int push (std::uint32_t note, std::uint32_t velocity);
    int pop (std::uint32_t note);
    int take (int slot, std::uint32_t note, std::uint32_t velocity);
    int slotOf (std::uint32_t note) const;
    int slotToSteal () const;
    int searchEnd () const;
    Entry& at (int slot) { return entries[static_cast<std::size_t> (slot)]; }
    const Entry& at (int slot) const { return entries[static_cast<std::size_t> (slot)]; }

    std::array<Entry, capacity> entries = {};
    std::int32_t noteCounter = -1; // next start stamp; in mono the top of the stack, -1 when empty
    std::int32_t activeNotes = 0;  // 0..limit
    std::int32_t limit = 1;
};
}
