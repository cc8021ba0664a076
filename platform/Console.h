// What a command line program needs to know about its surroundings.
#pragma once

#include <string>
#include <vector>

namespace platform
{
// The program's arguments in UTF-8, its own name first. The arguments of main() are taken where the
// system delivers them in UTF-8 anyway.
std::vector<std::string> utf8Arguments (int argc, const char* const* argv);

// True when standard error is a terminal that somebody watches.
bool errorStreamIsTerminal ();

// Text leaves the program as it was written, with plain line ends, on every system.
void keepLineEnds ();
}
