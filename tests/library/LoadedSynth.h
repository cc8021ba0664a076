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
    float getParameter (VstInt32 index) { return plugin.parameter (index); }

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
        host::BlockEvents events;
        if (controller != 0)
            events.add (0,
                        { 0xB0, static_cast<std::uint8_t> (controller), static_cast<std::uint8_t> (value) });
        plugin.sendEvents (events);
        plugin.process (blockSize);
    }

private:
    static constexpr int blockSize = 64;

    host::Plugin plugin;
};
