#pragma once

#include "instrument/Services.h"

namespace formats
{
// The system's services, with one user default bank for all formats but VST 2.4: those lie in folders of
// their own, some of them inside bundles. User-interface thread.
instrument::Services surroundings ();
}
