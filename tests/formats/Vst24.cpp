#include "tests/formats/Vst24Host.h"

std::unique_ptr<FormatHost> makeHost ()
{
    return std::make_unique<Vst24Host> ();
}
