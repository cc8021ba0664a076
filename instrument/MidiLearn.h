#pragma once

#include <atomic>
#include <cstdint>

#include "instrument/BankStore.h"

namespace instrument
{
// Binds MIDI controllers to parameters. A binding is the controller number in the parameter's slot; 0 means
// none, so controller 0 cannot be bound, and learning it unbinds. Any thread.
class MidiLearn
{
public:
    explicit MidiLearn (BankStore& bankStore) : store (bankStore) {}

    // Binds the next controller that arrives to this parameter. Numbers that are no parameter are ignored.
    void arm (std::int32_t index);
    void forget (std::int32_t index);
    void forgetAll ();

    // A controller arrived: completes an armed learn, unless it is a channel mode message (120 to 127). True
    // when the bindings changed by that.
    bool complete (std::uint32_t controller);

    // The parameter that waits for a controller, -1: none.
    std::int32_t armed () const { return target; }

    bool isBound (std::int32_t index, std::uint32_t controller) const
    {
        return controller != 0 && store.midiController (index) == controller;
    }

private:
    BankStore& store;
    std::atomic<std::int32_t> target = -1; // parameter waiting for a controller, -1: none
};
}
