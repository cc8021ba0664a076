// Stands in for the panel where the library is built without one.
#include "formats/clap/Gui.h"

namespace clap
{
std::unique_ptr<Gui> makeGui (instrument::Instrument& /*instrument*/, Reporter& /*reporter*/,
                              const Host& /*host*/)
{
    return nullptr;
}

const char* windowApi ()
{
    return "";
}
}
