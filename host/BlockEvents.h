// The MIDI events of one block in the form in which a VST 2.4 instrument takes them.
#pragma once

#include "plugin/vst2.h"

#include <array>
#include <cstdint>
#include <vector>

namespace host
{
class BlockEvents
{
public:
    void clear () { events.clear (); }

    // `offset` is the event's place in its block in samples; instruments expect ascending ones. A type other
    // than kVstMidiType makes an event that is none of MIDI.
    void add (VstInt32 offset, const std::array<std::uint8_t, 3>& bytes, VstInt32 type = kVstMidiType);

    // What effProcessEvents hands over, also with no event in it. Lives until the list is changed.
    VstEvents& record ();

private:
    std::vector<VstMidiEvent> events;
    std::vector<VstIntPtr> words; // a VstEvents with as many pointers as there are events
};
}
