#pragma once

#include "plugin/VstSynth.h"

namespace editor
{
// The instrument that the panel belongs to. The one place that knows its type.
using Synth = VstSynth;
}
