// brimvale-editor-host LIBRARY: shows the library's editor and obeys lines on standard input, one answer
// each; "quit" or the end of the input ends it.
#include <chrono>
#include <future>
#include <iostream>

#include "tests/stage/editorHost/EditorHost.h"

namespace
{
// On a thread of its own, for reading blocks and the editor must go on idling.
std::future<std::string> nextLine ()
{
    return std::async (std::launch::async,
                       []
                       {
                           std::string line;
                           if (!std::getline (std::cin, line))
                               line = "quit";
                           if (line.ends_with ('\r'))
                               line.pop_back ();
                           return line;
                       });
}
}

int main (int count, char** arguments)
{
    constexpr auto idlePeriod = std::chrono::milliseconds (10);
    if (count != 2)
    {
        std::cerr << "usage: brimvale-editor-host LIBRARY\n";
        return 2;
    }
    try
    {
        EditorHost host (arguments[1]);
        for (auto line = nextLine ();;)
        {
            if (line.wait_for (idlePeriod) == std::future_status::ready)
            {
                const std::string command = line.get ();
                if (command == "quit")
                    return 0;
                line = nextLine ();
                std::cout << host.obey (command) << std::endl;
            }
            host.idle ();
        }
    }
    catch (const std::exception& problem)
    {
        std::cerr << "brimvale-editor-host: " << problem.what () << '\n';
        return 1;
    }
}
