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

std::vector<float> HostedSynth::play (int frames, bool note)
{
    std::vector<float> left (static_cast<std::size_t> (frames)), right = left;
    host::BlockEvents events;
    if (note)
        events.add (0, { 0x90, 60, 100 });
    call (effProcessEvents, 0, 0, &events.record ());
    float* outputs[] = { left.data (), right.data () };
    effect->processReplacing (effect, nullptr, outputs, frames);
    return left;
}
