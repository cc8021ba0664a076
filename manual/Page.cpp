#include "manual/Page.h"

#include <algorithm>
#include <stdexcept>

namespace manual
{
namespace
{
constexpr std::string_view blockStart = "<!-- table: ";
constexpr std::string_view markEnd = " -->";
constexpr std::string_view blockEnd = "<!-- end -->";
}

std::string withTables (const std::string& page, const Programs& programs)
{
    std::vector<std::string> missing = tableNames ();
    std::string result;
    std::size_t done = 0;
    for (;;)
    {
        const std::size_t start = page.find (blockStart, done);
        if (start == std::string::npos)
            break;
        const std::size_t nameStart = start + blockStart.size ();
        const std::size_t nameEnd = std::min (page.find (markEnd, nameStart), page.find ('\n', nameStart));
        const std::size_t end = page.find (blockEnd, nameStart);
        const std::size_t next = page.find (blockStart, nameStart);
        const std::string name = page.substr (nameStart, nameEnd - nameStart);
        if (end == std::string::npos || next < end)
            throw std::runtime_error ("the table \"" + name + "\" is not closed");
        const std::string made = table (name, programs);
        if (std::erase (missing, name) == 0)
            throw std::runtime_error ("the table \"" + name + "\" is there twice");
        result.append (page, done, nameStart - done).append (name).append (markEnd);
        result += "\n\n" + made + "\n";
        result += blockEnd;
        done = end + blockEnd.size ();
    }
    if (!missing.empty ())
        throw std::runtime_error ("the table \"" + missing.front () + "\" is missing");
    return result.append (page, done);
}
}
