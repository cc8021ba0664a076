#pragma once

#include <filesystem>
#include <stdexcept>

#include "instrument/Bank.h"
#include "platform/SharedLibrary.h"
#include "plugin/vst2.h"

using namespace instrument;

// One instance made by a library file through its entry point, as a host makes it.
class LoadedSynth
{
public:
    explicit LoadedSynth (const std::filesystem::path& libraryFile) : library (libraryFile)
    {
        using EntryPoint = AEffect* (*)(AudioMasterCallback);
        const auto entry = reinterpret_cast<EntryPoint> (library.symbol ("VSTPluginMain"));
        effect = entry != nullptr ? entry (&answer) : nullptr;
        if (effect == nullptr)
            throw std::runtime_error ("no instance");
        call (effOpen);
        call (effMainsChanged, 0, 1);
    }
    ~LoadedSynth () { call (effClose); }
    LoadedSynth (const LoadedSynth&) = delete;
    LoadedSynth& operator= (const LoadedSynth&) = delete;

    VstIntPtr call (VstInt32 opcode, VstInt32 index = 0, VstIntPtr value = 0, void* ptr = nullptr,
                    float opt = 0.0f)
    {
        return effect->dispatcher (effect, opcode, index, value, ptr, opt);
    }
    void setParameter (VstInt32 index, float value) { effect->setParameter (effect, index, value); }
    float getParameter (VstInt32 index) { return effect->getParameter (effect, index); }

    const BankImage& bank ()
    {
        void* data = nullptr;
        if (call (effGetChunk, 0, 0, &data) != sizeof (BankImage))
            throw std::runtime_error ("a bank of another size");
        return *static_cast<const BankImage*> (data);
    }
    void setBank (BankImage image) { call (effSetChunk, 0, sizeof image, &image); }

    // Renders one block into the bin, with one controller message at its start unless the number is 0.
    void renderBlock (int controller = 0, int value = 0)
    {
        VstMidiEvent event = {};
        event.type = kVstMidiType;
        event.byteSize = sizeof event;
        event.midiData[0] = static_cast<char> (0xB0);
        event.midiData[1] = static_cast<char> (controller);
        event.midiData[2] = static_cast<char> (value);
        VstEvents events = {};
        events.numEvents = controller != 0 ? 1 : 0;
        events.events[0] = reinterpret_cast<VstEvent*> (&event);
        call (effProcessEvents, 0, 0, &events);
        float left[blockSize];
        float right[blockSize];
        float* outputs[] = { left, right };
        effect->processReplacing (effect, nullptr, outputs, blockSize);
    }

private:
    static constexpr VstInt32 blockSize = 64;

    static VstIntPtr answer (AEffect*, VstInt32 opcode, VstInt32, VstIntPtr, void*, float)
    {
        return opcode == audioMasterVersion ? kVstVersion : 0;
    }

    platform::SharedLibrary library; // outlives the instance
    AEffect* effect = nullptr;
};
