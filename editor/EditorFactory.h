#pragma once

#include <memory>

#include "plugin/VstSynth.h"

namespace editor
{
// The instrument's graphical editor. Cheap: it makes no window and touches no display before it is opened.
std::unique_ptr<AEffEditor> createEditor (VstSynth& synth);
}
