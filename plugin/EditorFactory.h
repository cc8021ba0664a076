#pragma once

#include "instrument/SynthEditor.h"

// What makes the editor of a synth; null where the library is built without one.
EditorFactory editorFactory ();
