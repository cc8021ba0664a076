// The toolkit's editor binding looks for the dispatch layer under this name.
#pragma once

#include "plugin/AudioEffectX.h"
