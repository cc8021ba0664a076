#include "platform/Console.h"

#include <unistd.h>

namespace platform
{
std::vector<std::string> utf8Arguments (int argc, const char* const* argv)
{
    return { argv, argv + argc };
}

bool errorStreamIsTerminal ()
{
    return isatty (STDERR_FILENO) != 0;
}

void keepLineEnds () {}
}
