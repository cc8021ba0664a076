#pragma once

#include <array>

#include "host/BlockEvents.h"
#include "plugin/VstSynth.h"
#include "tests/support/FakeSystem.h"

// A host of the VST 2.4 interface and its system, and what the plug-in asked of it.
class FakeHost : public FakeSystem
{
public:
    static VstIntPtr callback (AEffect* effect, VstInt32 opcode, VstInt32 index, VstIntPtr value, void* ptr,
                               float opt);

    struct Call
    {
        VstInt32 opcode;
        VstInt32 index;
        VstIntPtr value;
        float opt;
    };

    VstIntPtr version = kVstVersion;
    bool hasTime = false;
    VstTimeInfo time = {};
    bool recordsCalls = true; // off while a test counts allocations
    std::vector<Call> calls;

    std::vector<Call> callsOf (VstInt32 opcode) const;
    int countCalls (VstInt32 opcode) const { return static_cast<int> (callsOf (opcode).size ()); }
};

// One instance as a host holds it: through its record alone.
class HostedSynth
{
public:
    explicit HostedSynth (const EditorFactory& makeEditor = {})
        : effect ((new VstSynth (FakeHost::callback, host.services (), makeEditor))->getAeffect ())
    {
    }
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

    // Renders a block, with a note at its beginning or without one; the left channel.
    std::vector<float> play (int frames, bool note = true);
    VstSynth& object () { return *static_cast<VstSynth*> (static_cast<AudioEffect*> (effect->object)); }

    FakeHost host;
    AEffect* effect;
};
