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

    const BankImage& bank ()
    {
        void* data = nullptr;
        if (call (effGetChunk, 0, 0, &data) != sizeof (BankImage))
            throw std::runtime_error ("a bank of another size");
        return *static_cast<const BankImage*> (data);
    }
    void setBank (BankImage image) { call (effSetChunk, 0, sizeof image, &image); }

private:
    static VstIntPtr answer (AEffect*, VstInt32 opcode, VstInt32, VstIntPtr, void*, float)
    {
        return opcode == audioMasterVersion ? kVstVersion : 0;
    }

    platform::SharedLibrary library; // outlives the instance
    AEffect* effect = nullptr;
};
