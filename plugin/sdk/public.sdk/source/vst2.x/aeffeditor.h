// The toolkit's editor binding looks for the dispatch layer under this name.
#pragma once

#include "plugin/AEffEditor.h"

// Keys, wheel and begin/end edit are part of the layer.
#define VST_2_1_EXTENSIONS 1
