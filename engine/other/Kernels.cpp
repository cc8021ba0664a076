#include "engine/VoiceKernel.h"

namespace engine
{
RenderLanes renderLanesPlain;

// What every machine of the kind has.
std::span<const VoiceKernel> voiceKernels ()
{
    static const VoiceKernel kernels[] = { { "plain", true, renderLanesPlain } };
    return kernels;
}
}
