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

// For programs with windows: connects standard output and error with the console that the program was started
// from, if there is one. False when nobody would see what is written there.
bool attachConsole ();

// While one lives nothing that is written to standard error is seen: libraries of the system tell their own
// troubles there. Any thread's.
class QuietErrors
{
public:
    QuietErrors ();
    ~QuietErrors ();
    QuietErrors (const QuietErrors&) = delete;
    QuietErrors& operator= (const QuietErrors&) = delete;

private:
    int kept = -1; // where standard error went before
};
}
