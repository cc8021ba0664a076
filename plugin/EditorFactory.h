#pragma once

#include "plugin/VstSynth.h"

// What makes the editor of a synth; null where the library is built without one.
EditorFactory editorFactory ();
