#include "host/Plugin.h"

#include <algorithm>
#include <array>
#include <stdexcept>
#include <string_view>

namespace host
{
namespace
{
using EntryPoint = AEffect* (*)(AudioMasterCallback);

constexpr VstIntPtr offlineProcessLevel = 4;
constexpr VstIntPtr english = 1;
constexpr VstIntPtr hostVersion = 1000;

EntryPoint entryPoint (const platform::SharedLibrary& library)
{
    void* entry = library.symbol ("VSTPluginMain");
    if (entry == nullptr)
        entry = library.symbol ("main"); // the older name
    if (entry == nullptr)
        throw std::runtime_error ("it is no VST 2.4 library: it exports neither VSTPluginMain nor main");
    return reinterpret_cast<EntryPoint> (entry);
}

bool hostCanDo (std::string_view text)
{
    constexpr std::array<std::string_view, 3> abilities = { "sendVstEvents", "sendVstMidiEvent",
                                                            "sendVstTimeInfo" };
    return std::ranges::find (abilities, text) != abilities.end ();
}

// The interface promises room for 64 characters.
VstIntPtr copyText (void* target, std::string_view text)
{
    auto* characters = static_cast<char*> (target);
    std::copy (text.begin (), text.end (), characters);
    characters[text.size ()] = '\0';
    return 1;
}
}

Plugin::Plugin (const std::filesystem::path& library, Listener newListener)
    : file (library),
      listener (std::move (newListener))
{
    effect = entryPoint (file) (&Plugin::answer);
    if (effect == nullptr)
        throw std::runtime_error ("its entry point gave no instrument");
    if (effect->magic != kEffectMagic)
        throw std::runtime_error ("its entry point gave something that is no VST 2.4 instrument");
    effect->user = this;
    if ((effect->flags & effFlagsCanReplacing) == 0 || effect->numOutputs < 1)
    {
        call (effClose);
        throw std::runtime_error ("it gives no audio");
    }
    call (effOpen);
}

Plugin::~Plugin ()
{
    stop ();
    call (effClose);
}

VstIntPtr Plugin::call (VstInt32 opcode, VstInt32 index, VstIntPtr value, void* ptr, float opt)
{
    return effect->dispatcher (effect, opcode, index, value, ptr, opt);
}

int Plugin::currentProgram ()
{
    return static_cast<int> (call (effGetProgram));
}

std::string Plugin::programName (int program)
{
    std::array<char, 256> text = {}; // far above the interface's 24, for libraries that do not keep to it
    call (effGetProgramNameIndexed, program, -1, text.data ());
    text.back () = '\0';
    std::string name = text.data ();
    name.erase (name.find_last_not_of (' ') + 1);
    name.erase (0, name.find_first_not_of (' '));
    return name;
}

void Plugin::selectProgram (int program)
{
    call (effSetProgram, 0, program);
}

void Plugin::setProgramName (std::string name)
{
    name.resize (std::min<std::size_t> (name.size (), kVstMaxProgNameLen));
    call (effSetProgramName, 0, 0, name.data ());
}

void Plugin::start (int sampleRate, int blockSize)
{
    rate = sampleRate;
    blockFrames = blockSize;
    const auto inputCount = static_cast<std::size_t> (effect->numInputs);
    const std::size_t channels = inputCount + static_cast<std::size_t> (effect->numOutputs);
    const auto frames = static_cast<std::size_t> (blockSize);
    samples.assign (channels * frames, 0.0f);
    inputs.clear ();
    outputs.clear ();
    for (std::size_t channel = 0; channel < channels; ++channel)
    {
        auto& list = channel < inputCount ? inputs : outputs;
        list.push_back (samples.data () + channel * frames);
    }

    call (effSetSampleRate, 0, 0, nullptr, static_cast<float> (sampleRate));
    call (effSetBlockSize, 0, blockSize);
    call (effMainsChanged, 0, 1);
    call (effStartProcess);
    running = true;
}

void Plugin::stop ()
{
    if (!running)
        return;
    call (effStopProcess);
    call (effMainsChanged, 0, 0);
    running = false;
}

void Plugin::process (int frames)
{
    effect->processReplacing (effect, inputs.data (), outputs.data (), frames);
}

// While the entry point runs there is no record yet, and so no object to ask: only what needs none is
// answered.
VstIntPtr Plugin::answer (AEffect* effect, VstInt32 opcode, VstInt32 index, VstIntPtr value, void* ptr,
                          float opt)
{
    if (opcode == audioMasterVersion)
        return kVstVersion;
    if (effect == nullptr || effect->user == nullptr)
        return 0;
    return static_cast<Plugin*> (effect->user)->answer (opcode, index, value, ptr, opt);
}

VstIntPtr Plugin::answer (VstInt32 opcode, VstInt32 index, VstIntPtr value, void* ptr, float opt)
{
    switch (opcode)
    {
    case audioMasterWantMidi:
        return 1;
    case audioMasterGetTime:
        return time ? reinterpret_cast<VstIntPtr> (&*time) : 0;
    case audioMasterGetSampleRate:
        return rate;
    case audioMasterGetBlockSize:
        return blockFrames;
    case audioMasterGetCurrentProcessLevel:
        return offlineProcessLevel;
    case audioMasterGetLanguage:
        return english;
    case audioMasterGetVendorVersion:
        return hostVersion;
    case audioMasterGetVendorString:
        return ptr != nullptr ? copyText (ptr, "corvanex.com") : 0;
    case audioMasterGetProductString:
        return ptr != nullptr ? copyText (ptr, "Brimvale host") : 0;
    case audioMasterCanDo:
        if (ptr != nullptr && hostCanDo (static_cast<const char*> (ptr)))
            return 1;
        break;
    default:
        break;
    }
    return listener ? listener (opcode, index, value, ptr, opt) : 0;
}
}
