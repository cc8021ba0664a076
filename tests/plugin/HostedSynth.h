#pragma once

#include <array>
#include <limits>

#include "tests/support/TestSynth.h"

using namespace engine;
using namespace instrument;
using namespace parameters;

// One instance as a host holds it: through its record alone.
class HostedSynth
{
public:
    HostedSynth () : effect ((new VstSynth (FakeHost::callback, host.services ()))->getAeffect ()) {}
    ~HostedSynth () { call (effClose); }
    HostedSynth (const HostedSynth&) = delete;
    HostedSynth& operator= (const HostedSynth&) = delete;

    VstIntPtr call (VstInt32 opcode, VstInt32 index = 0, VstIntPtr value = 0, void* ptr = nullptr,
                    float opt = 0.0f)
    {
        return effect->dispatcher (effect, opcode, index, value, ptr, opt);
    }
    std::string text (VstInt32 opcode, VstInt32 index = 0, VstIntPtr value = 0)
    {
        std::array<char, 256> buffer;
        buffer.fill ('#');
        call (opcode, index, value, buffer.data ());
        return buffer.data ();
    }
    void set (VstInt32 index, float value) { effect->setParameter (effect, index, value); }
    float get (VstInt32 index) { return effect->getParameter (effect, index); }
    std::string name () { return text (effGetProgramName); }

    // A block with one note in it; the left channel.
    std::vector<float> play (int frames = 400)
    {
        EventList list ({ { 0, 0x90, 60, 100 } });
        call (effProcessEvents, 0, 0, list.get ());
        std::vector<float> left (static_cast<std::size_t> (frames));
        std::vector<float> right (left);
        float* outputs[] = { left.data (), right.data () };
        effect->processReplacing (effect, nullptr, outputs, frames);
        return left;
    }

    VstSynth& object () { return *static_cast<VstSynth*> (static_cast<AudioEffect*> (effect->object)); }

    FakeHost host;
    AEffect* effect;
};
