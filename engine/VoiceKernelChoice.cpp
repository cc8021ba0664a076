#include <cstdlib>

#include "engine/VoiceKernel.h"

namespace engine
{
const VoiceKernel& preferredKernel ()
{
    const char* const wanted = std::getenv ("BRIMVALE_KERNEL");
    const VoiceKernel* widest = &voiceKernels ().front ();
    for (const VoiceKernel& kernel : voiceKernels ())
    {
        if (!kernel.isSupported)
            continue;
        widest = &kernel;
        if (wanted != nullptr && kernel.name == wanted)
            break;
    }
    return *widest;
}
}
