// The toolkit's editor binding looks for the dispatch layer under this name.
#pragma once

#include "plugin/AEffEditor.h"

// Keys, wheel and begin/end edit are part of the layer.
#define VST_2_1_EXTENSIONS 1

// Tells the toolkit that the key code record is declared already.
#define __aeffectx__ // NOLINT(bugprone-reserved-identifier): the name that it asks for
