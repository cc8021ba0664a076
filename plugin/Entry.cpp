// What a host calls first: three names for one entry point.
#include <new>

#include "plugin/EditorFactory.h"
#include "plugin/VstSynth.h"

namespace
{
// Set for the life of the library once an editor could not be made: every later load is refused, too.
bool editorCreationFailed = false;

// Makes one instance; null when the host does not tell its version, memory ran out or the editor failed.
AudioEffect* createEffectInstance (AudioMasterCallback host)
{
    if (host (nullptr, audioMasterVersion, 0, 0, nullptr, 0.0f) == 0)
        return nullptr;
    auto synth = std::unique_ptr<VstSynth> (new (std::nothrow) VstSynth (
        host, instrument::systemServices (instrument::BankPlaces::besideLibraryAndPerUser),
        editorFactory ()));
    if (synth == nullptr)
        return nullptr;
    editorCreationFailed = editorCreationFailed || !synth->editorWasMade ();
    if (editorCreationFailed)
        return nullptr;
    return synth.release ();
}
}

extern "C"
{
    AEffect* VSTPluginMain (AudioMasterCallback host);
    AEffect* MAIN (AudioMasterCallback host);

    // C++ keeps the name `main` for itself, so the function is named at the assembler's level.
    AEffect* oldEntryPoint (AudioMasterCallback host) asm("main");

    AEffect* VSTPluginMain (AudioMasterCallback host)
    {
        if (host == nullptr || host (nullptr, audioMasterVersion, 0, 0, nullptr, 0.0f) == 0)
            return nullptr;
        AudioEffect* effect = createEffectInstance (host);
        return effect != nullptr ? effect->getAeffect () : nullptr;
    }

    AEffect* MAIN (AudioMasterCallback host)
    {
        return VSTPluginMain (host);
    }

    AEffect* oldEntryPoint (AudioMasterCallback host)
    {
        return VSTPluginMain (host);
    }
}
