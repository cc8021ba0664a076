#pragma once

#include <memory>

#include "instrument/SynthEditor.h"

namespace editor
{
// The instrument's graphical editor. Cheap: it makes no window and touches no display before it is opened.
std::unique_ptr<SynthEditor> createEditor (VstSynth& synth);
}
