#include "host/BlockEvents.h"

#include <algorithm>
#include <cstring>

namespace host
{
void BlockEvents::add (VstInt32 offset, const std::array<std::uint8_t, 3>& bytes, VstInt32 type)
{
    VstMidiEvent event = {};
    event.type = type;
    event.byteSize = sizeof event;
    event.deltaFrames = offset;
    std::memcpy (event.midiData, bytes.data (), bytes.size ());
    events.push_back (event);
}

VstEvents& BlockEvents::record ()
{
    constexpr std::size_t headWords = offsetof (VstEvents, events) / sizeof (VstIntPtr);
    constexpr std::size_t fewest = sizeof (VstEvents) / sizeof (VstIntPtr);
    words.assign (std::max (headWords + events.size (), fewest), 0);
    for (std::size_t i = 0; i < events.size (); ++i)
        words[headWords + i] = reinterpret_cast<VstIntPtr> (&events[i]);
    auto& list = *reinterpret_cast<VstEvents*> (words.data ());
    list.numEvents = static_cast<VstInt32> (events.size ());
    return list;
}
}
