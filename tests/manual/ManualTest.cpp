// The committed manual is what its generator makes, whole and without a dead link.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <regex>
#include <set>

#include "manual/Page.h"
#include "manual/Pictures.h"
#include "picture/Png.h"
#include "tests/resources/Files.h"

namespace
{
const std::filesystem::path docs = SOURCE_FOLDER "/docs";

std::string page ()
{
    return bytesOf ("docs/manual.md");
}

// What a pattern's brackets enclose, wherever it is found.
std::set<std::string> matches (const std::string& text, const char* pattern)
{
    const std::regex expression (pattern, std::regex::multiline);
    return { std::sregex_token_iterator (text.begin (), text.end (), expression, 1), {} };
}

TEST (Manual, tablesAndPicturesAreWhatTheInstrumentSays)
{
    EXPECT_EQ (page (), manual::withTables (page (), factoryPrograms ())) << "renew it: makeManual .";
    for (const manual::Drawing& drawing : manual::drawings ())
        EXPECT_TRUE (picture::readPng (docs / "manual" / drawing.file) == drawing.draw (factoryPrograms ()))
            << drawing.file << " differs; renew it: makeManual .";
}

// It travels alone, so what it points at is in it or a picture.
TEST (Manual, linksLeadToItsHeadingsAndPictures)
{
    const std::string text = page ();
    std::set<std::string> targets;
    for (std::string heading : matches (text, "^#+ (.+)$"))
    {
        heading = std::regex_replace (heading, std::regex ("[^A-Za-z0-9 ]"), "");
        std::ranges::transform (heading, heading.begin (),
                                [] (char c)
                                { return c == ' ' ? '-' : static_cast<char> (std::tolower (c)); });
        targets.insert ("#" + heading);
    }
    const std::set<std::string> links = matches (text, "\\]\\(([^)]*)\\)");
    EXPECT_GT (links.size (), 10u);
    for (const std::string& link : links)
        EXPECT_TRUE (targets.contains (link) ||
                     (link.ends_with (".png") && std::filesystem::exists (docs / link)))
            << link;
}

TEST (Manual, aBlockThatCannotBeFilledIsNamed)
{
    const std::string whole = page ();
    const std::string sync = "<!-- table: sync -->";
    const auto with = [&whole] (const std::string& part, const std::string& instead)
    { return std::string (whole).replace (whole.find (part), part.size (), instead); };
    for (const auto& [text, sentence] :
         { std::pair{ with (sync, ""), "the table \"sync\" is missing" },
           { with (sync, "<!-- table: tides -->"), "there is no table called \"tides\"" },
           { whole + sync + "\n<!-- end -->\n", "the table \"sync\" is there twice" },
           { with ("<!-- end -->", ""), "the table \"sections\" is not closed" } })
        EXPECT_EQ (
            errorOf<std::runtime_error> ([&text = text] { manual::withTables (text, factoryPrograms ()); }),
            sentence);
}
}
