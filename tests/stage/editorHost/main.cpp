// brimvale-editor-host LIBRARY: shows the library's editor and obeys lines on standard input, one answer
// each; "quit" or the end of the input ends it.
#include <chrono>
#include <condition_variable>
#include <deque>
#include <iostream>
#include <mutex>
#include <optional>
#include <thread>

#include "tests/stage/editorHost/EditorHost.h"

namespace
{
// Lines come from a thread of their own, for reading blocks and the editor must go on idling.
class LineReader
{
public:
    LineReader () : thread ([this] { read (); }) {}
    ~LineReader () { thread.join (); }

    // The next line; nothing when none arrived within `patience`.
    std::optional<std::string> next (std::chrono::milliseconds patience)
    {
        std::unique_lock lock (mutex);
        arrived.wait_for (lock, patience, [this] { return !lines.empty (); });
        if (lines.empty ())
            return std::nullopt;
        std::string line = lines.front ();
        lines.pop_front ();
        return line;
    }

private:
    void read ()
    {
        for (std::string line = "?"; line != "quit";)
        {
            if (!std::getline (std::cin, line))
                line = "quit";
            if (line.ends_with ('\r'))
                line.pop_back ();
            const std::lock_guard lock (mutex);
            lines.push_back (line);
            arrived.notify_one ();
        }
    }

    std::mutex mutex;
    std::condition_variable arrived;
    std::deque<std::string> lines;
    std::thread thread; // last, for it uses the others
};
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
        LineReader input;
        for (;;)
        {
            const auto line = input.next (idlePeriod);
            if (line == "quit")
                break;
            if (line)
                std::cout << host.obey (*line) << std::endl;
            host.idle ();
        }
    }
    catch (const std::exception& problem)
    {
        std::cerr << "brimvale-editor-host: " << problem.what () << '\n';
        return 1;
    }
    return 0;
}
