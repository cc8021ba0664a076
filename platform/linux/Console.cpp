#include "platform/Console.h"

#include <fcntl.h>
#include <unistd.h>

#include <cstdio>

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

bool attachConsole ()
{
    return true;
}

QuietErrors::QuietErrors () : kept (fcntl (STDERR_FILENO, F_DUPFD_CLOEXEC, 0))
{
    std::fflush (stderr);
    const int nowhere = open ("/dev/null", O_WRONLY | O_CLOEXEC);
    if (nowhere < 0)
        return;
    dup2 (nowhere, STDERR_FILENO);
    close (nowhere);
}

QuietErrors::~QuietErrors ()
{
    std::fflush (stderr);
    if (kept < 0)
        return;
    dup2 (kept, STDERR_FILENO);
    close (kept);
}
}
