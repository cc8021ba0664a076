#include "host/ProgramList.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <charconv>
#include <cstdio>

namespace host
{
namespace
{
std::string lowerCase (std::string_view text)
{
    std::string lower (text);
    std::transform (lower.begin (), lower.end (), lower.begin (),
                    [] (unsigned char c) { return static_cast<char> (std::tolower (c)); });
    return lower;
}
}

ProgramList::ProgramList (std::vector<std::string> newNames) : names (std::move (newNames)) {}

std::optional<int> ProgramList::find (std::string_view wanted) const
{
    auto found = std::find (names.begin (), names.end (), wanted);
    if (found == names.end ())
        found =
            std::find_if (names.begin (), names.end (),
                          [&] (const std::string& name) { return lowerCase (name) == lowerCase (wanted); });
    if (found != names.end ())
        return static_cast<int> (found - names.begin ());

    int number = 0;
    const char* end = wanted.data () + wanted.size ();
    const auto [stop, error] = std::from_chars (wanted.data (), end, number);
    if (error == std::errc () && stop == end && number >= 1 && number <= size ())
        return number - 1;
    return std::nullopt;
}

std::string ProgramList::title (int index) const
{
    std::array<char, 16> number = {};
    std::snprintf (number.data (), number.size (), "%03d ", index + 1);
    return number.data () + names[static_cast<std::size_t> (index)];
}
}
