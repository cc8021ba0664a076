// The programs of an instrument, as a user names them.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace host
{
class ProgramList
{
public:
    explicit ProgramList (std::vector<std::string> names);

    // A name (exactly, else without regard to case) or a number, which counts from 1 as hosts and the
    // editor show it. Answers the index from 0, or nothing.
    std::optional<int> find (std::string_view wanted) const;

    // "003 Bass One"
    std::string title (int index) const;
    int size () const { return static_cast<int> (names.size ()); }

private:
    std::vector<std::string> names;
};
}
