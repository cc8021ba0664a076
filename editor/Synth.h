#pragma once

#include "instrument/Instrument.h"

namespace editor
{
// The instrument that the panel belongs to.
using Synth = instrument::Instrument;
}
