// One instrument of a VST 2.4 library, loaded through the library's exported entry point.
#pragma once

#include "host/BlockEvents.h"
#include "platform/SharedLibrary.h"
#include "plugin/vst2.h"

#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace host
{
class Plugin
{
public:
    // Hears what the instrument asks or tells its host beyond what is answered here (version, time, rate,
    // block size, names), on the thread that the instrument calls from; its answer goes back.
    using Listener =
        std::function<VstIntPtr (VstInt32 opcode, VstInt32 index, VstIntPtr value, void* ptr, float opt)>;

    // Loads the library and opens the instrument. Throws std::runtime_error, as one sentence, when the
    // file is no such library or the library refuses.
    explicit Plugin (const std::filesystem::path& library, Listener newListener = {});
    ~Plugin ();
    Plugin (const Plugin&) = delete;
    Plugin& operator= (const Plugin&) = delete;

    std::int32_t identifier () const { return effect->uniqueID; }
    std::int32_t version () const { return effect->version; }
    bool keepsChunks () const { return (effect->flags & effFlagsProgramChunks) != 0; } // else plain values

    int programCount () const { return effect->numPrograms; }
    int currentProgram ();
    std::string programName (int program); // 0 .. programCount() - 1, without blanks at its ends
    void selectProgram (int program);
    void
    setProgramName (std::string name); // of the current one; as many characters count as the interface knows

    int parameterCount () const { return effect->numParams; }
    void setParameter (int index, float value) { effect->setParameter (effect, index, value); }
    float parameter (int index) { return effect->getParameter (effect, index); }

    // Any other call of the interface.
    VstIntPtr call (VstInt32 opcode, VstInt32 index = 0, VstIntPtr value = 0, void* ptr = nullptr,
                    float opt = 0.0f);

    // Between start() and stop() the instrument takes events and gives audio.
    void start (int sampleRate, int blockSize); // Hz, frames
    void stop ();

    // What the instrument is told when it asks for the time; set before each block. Before the first one it
    // is told that there is none.
    void setTime (const VstTimeInfo& now) { time = now; }

    // Events of the next block; must live until that block is rendered.
    void sendEvents (BlockEvents& events) { call (effProcessEvents, 0, 0, &events.record ()); }

    // Renders one block, at most the started block size. left() and right() then hold it.
    void process (int frames);
    const float* left () const { return outputs.front (); }
    const float* right () const { return outputs[outputs.size () > 1 ? 1 : 0]; }

private:
    static VstIntPtr answer (AEffect* effect, VstInt32 opcode, VstInt32 index, VstIntPtr value, void* ptr,
                             float opt);
    VstIntPtr answer (VstInt32 opcode, VstInt32 index, VstIntPtr value, void* ptr, float opt);

    platform::SharedLibrary file; // outlives the instrument that it made
    Listener listener;
    AEffect* effect = nullptr;
    std::optional<VstTimeInfo> time;
    int rate = 44100;
    int blockFrames = 512;
    bool running = false;
    std::vector<float> samples; // all channels, one after the other
    std::vector<float*> inputs;
    std::vector<float*> outputs;
};
}
