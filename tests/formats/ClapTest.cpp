// The CLAP library as its hosts see it.
#include <gtest/gtest.h>

#include "tests/formats/ClapHost.h"
#include "tests/support/Signals.h"

TEST (Clap, SoundsLikeVst24)
{
    expectTheSameSound ([] { return std::make_unique<ClapInstance> (); });
}
