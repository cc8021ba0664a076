#include "tests/support/TestSynth.h"

#include <algorithm>

VstIntPtr FakeHost::callback (AEffect* /*effect*/, VstInt32 opcode, VstInt32 index, VstIntPtr value,
                              void* /*ptr*/, float opt)
{
    auto& host = *static_cast<FakeHost*> (current);
    if (host.recordsCalls)
        host.calls.push_back ({ opcode, index, value, opt });
    if (opcode == audioMasterVersion)
        return host.version;
    return opcode == audioMasterGetTime && host.hasTime ? reinterpret_cast<VstIntPtr> (&host.time) : 0;
}

std::vector<FakeHost::Call> FakeHost::callsOf (VstInt32 opcode) const
{
    std::vector<Call> found;
    std::copy_if (calls.begin (), calls.end (), std::back_inserter (found),
                  [opcode] (const Call& call) { return call.opcode == opcode; });
    return found;
}

HostEventList::HostEventList (const std::vector<TimedMidi>& midi)
{
    for (const TimedMidi& row : midi)
    {
        VstMidiEvent event = {};
        event.type = row.type;
        event.byteSize = sizeof (VstMidiEvent) - 2 * sizeof (VstInt32);
        event.deltaFrames = row.offset;
        event.midiData[0] = static_cast<char> (row.status);
        event.midiData[1] = static_cast<char> (row.data1);
        event.midiData[2] = static_cast<char> (row.data2);
        events.push_back (event);
    }
    constexpr std::size_t header = offsetof (VstEvents, events) / sizeof (VstIntPtr);
    storage.resize (header + std::max<std::size_t> (events.size (), 2));
    get ()->numEvents = static_cast<VstInt32> (events.size ());
    for (std::size_t n = 0; n < events.size (); ++n)
        storage[header + n] = reinterpret_cast<VstIntPtr> (&events[n]);
}

std::vector<float> render (VstSynth& synth, int frames, int blockSize, const std::vector<TimedMidi>& midi)
{
    std::vector<float> left (static_cast<std::size_t> (frames));
    std::vector<float> right (left.size ());
    for (int done = 0; done < frames; done += blockSize)
    {
        const int size = std::min (blockSize, frames - done);
        std::vector<TimedMidi> due;
        for (TimedMidi row : midi)
        {
            if (row.offset < done || row.offset >= done + size)
                continue;
            row.offset -= done;
            due.push_back (row);
        }
        HostEventList list (due);
        synth.processEvents (list.get ());
        float* outputs[] = { left.data () + done, right.data () + done };
        synth.processReplacing (nullptr, outputs, size);
    }
    return left;
}
