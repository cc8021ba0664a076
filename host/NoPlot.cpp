// For builds without what draws pictures.
#include "host/Plot.h"

namespace host
{
bool canPlot ()
{
    return false;
}

std::unique_ptr<Plot> Plot::make (const std::filesystem::path& /*file*/, int /*sampleRate*/)
{
    return nullptr;
}
}
