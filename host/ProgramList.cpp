#include "host/ProgramList.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <charconv>
#include <cstdio>
#include <numeric>

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

// Fewest characters to insert, remove or replace (Levenshtein).
std::size_t editDistance (std::string_view a, std::string_view b)
{
    std::vector<std::size_t> row (b.size () + 1);
    std::iota (row.begin (), row.end (), std::size_t{ 0 });
    for (std::size_t i = 0; i < a.size (); ++i)
    {
        std::size_t diagonal = row[0];
        row[0] = i + 1;
        for (std::size_t j = 0; j < b.size (); ++j)
        {
            const std::size_t replaced = diagonal + (a[i] == b[j] ? 0 : 1);
            diagonal = row[j + 1];
            row[j + 1] = std::min ({ row[j] + 1, row[j + 1] + 1, replaced });
        }
    }
    return row[b.size ()];
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

// A name that holds the text is as good as one that differs in a single character.
std::vector<std::string> ProgramList::similar (std::string_view wanted) const
{
    constexpr std::size_t mostNames = 3;
    const std::string text = lowerCase (wanted);
    const std::size_t farthest = std::max<std::size_t> (2, text.size () / 2);
    std::vector<std::pair<std::size_t, std::string>> near;
    for (const std::string& name : names)
    {
        const bool holds = text.size () > 1 && lowerCase (name).find (text) != std::string::npos;
        const std::size_t distance = holds ? 1 : editDistance (lowerCase (name), text);
        if (distance <= farthest)
            near.emplace_back (distance, name);
    }
    std::stable_sort (near.begin (), near.end (),
                      [] (const auto& a, const auto& b) { return a.first < b.first; });

    std::vector<std::string> best;
    for (const auto& [distance, name] : near)
    {
        if (best.size () < mostNames && std::find (best.begin (), best.end (), name) == best.end ())
            best.push_back (name);
    }
    return best;
}

std::string ProgramList::title (int index) const
{
    std::array<char, 16> number = {};
    std::snprintf (number.data (), number.size (), "%03d ", index + 1);
    return number.data () + names[static_cast<std::size_t> (index)];
}
}
