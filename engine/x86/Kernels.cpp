#include "engine/VoiceKernel.h"

namespace engine
{
RenderLanes renderLanesSse2;
RenderLanes renderLanesAvx2;
RenderLanes renderLanesAvx512;

namespace
{
// Sixteen lanes at once help where they are mostly filled.
void renderLanesWidest (VoiceLanes& lanes, float* out, int samples)
{
    if (lanes.used > 8)
        renderLanesAvx512 (lanes, out, samples);
    else
        renderLanesAvx2 (lanes, out, samples);
}
}

std::span<const VoiceKernel> voiceKernels ()
{
    static const VoiceKernel kernels[] = {
        { "sse2", true, renderLanesSse2 },
        { "avx2", __builtin_cpu_supports ("avx2") != 0, renderLanesAvx2 },
        { "avx512",
          __builtin_cpu_supports ("avx512f") != 0 && __builtin_cpu_supports ("avx512vl") != 0 &&
              __builtin_cpu_supports ("avx512dq") != 0,
          renderLanesWidest },
    };
    return kernels;
}
}
