// The instrument of a library file, as a host holds it.
#pragma once

#include "host/Plugin.h"
#include "instrument/Bank.h"

#include <filesystem>
#include <stdexcept>

using namespace instrument;

class LoadedSynth
{
public:
    explicit LoadedSynth (const std::filesystem::path& libraryFile) : plugin (libraryFile)
    {
        plugin.start (44100, blockSize);
    }

    VstIntPtr call (VstInt32 opcode, VstInt32 index = 0, VstIntPtr value = 0, void* ptr = nullptr)
    {
        return plugin.call (opcode, index, value, ptr);
    }
    void setParameter (VstInt32 index, float value) { plugin.setParameter (index, value); }

    const BankImage& bank ()
    {
        void* data = nullptr;
        if (call (effGetChunk, 0, 0, &data) != sizeof (BankImage))
            throw std::runtime_error ("a bank of another size");
        return *static_cast<const BankImage*> (data);
    }
    void setBank (BankImage image) { call (effSetChunk, 0, sizeof image, &image); }

private:
    static constexpr int blockSize = 64;

    host::Plugin plugin;
};
