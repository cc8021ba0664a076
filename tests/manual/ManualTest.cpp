// The committed manual is what its generator makes, whole and without a dead link.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <regex>
#include <set>

#include "manual/Page.h"
#include "manual/Pictures.h"
#include "picture/Png.h"

namespace
{
const std::filesystem::path docs = SOURCE_FOLDER "/docs";

std::string page ()
{
    std::ifstream file (docs / "manual.md", std::ios::binary);
    return { std::istreambuf_iterator<char> (file), {} };
}

manual::Programs programs ()
{
    std::ifstream source (SOURCE_FOLDER "/resources/bank/factorybank.txt");
    return bank::readBankSource (source);
}

TEST (Manual, tablesAndPicturesAreWhatTheInstrumentSays)
{
    EXPECT_EQ (page (), manual::withTables (page (), programs ())) << "renew it: makeManual .";
    for (const manual::Drawing& drawing : manual::drawings ())
    {
        EXPECT_TRUE (picture::readPng (docs / "manual" / drawing.file) == drawing.draw (programs ()))
            << drawing.file << " differs; renew it: makeManual .";
    }
}

// It travels alone, so what it points at is in it or a picture.
TEST (Manual, linksLeadToItsHeadingsAndPictures)
{
    const std::string text = page ();
    const auto matches = [&text] (const char* pattern)
    {
        const std::regex expression (pattern, std::regex::multiline);
        std::set<std::string> found;
        for (std::sregex_iterator match (text.begin (), text.end (), expression), end; match != end; ++match)
            found.insert ((*match)[1]);
        return found;
    };
    std::set<std::string> anchors;
    for (const std::string& heading : matches ("^#+ (.+)$"))
    {
        std::string anchor;
        for (const char c : heading)
        {
            if (std::isalnum (static_cast<unsigned char> (c)) != 0)
                anchor += static_cast<char> (std::tolower (static_cast<unsigned char> (c)));
            else if (c == ' ')
                anchor += '-';
        }
        anchors.insert (anchor);
    }
    const std::set<std::string> links = matches ("\\]\\(([^)]*)\\)");
    EXPECT_GT (links.size (), 10u);
    for (const std::string& link : links)
    {
        const bool isAnchor = link.starts_with ("#");
        EXPECT_TRUE (isAnchor ? anchors.contains (link.substr (1))
                              : link.ends_with (".png") && std::filesystem::exists (docs / link))
            << link;
    }
}

TEST (Manual, aBlockThatCannotBeFilledIsNamed)
{
    const std::string whole = page ();
    const auto failureOf = [] (const std::string& text) -> std::string
    {
        try
        {
            manual::withTables (text, programs ());
        }
        catch (const std::runtime_error& error)
        {
            return error.what ();
        }
        return {};
    };
    const auto without = [&whole] (const std::string& part, const std::string& instead)
    { return std::string (whole).replace (whole.find (part), part.size (), instead); };
    EXPECT_EQ (failureOf (without ("<!-- table: sync -->", "")), "the table \"sync\" is missing");
    EXPECT_EQ (failureOf (without ("<!-- table: sync -->", "<!-- table: tides -->")),
               "there is no table called \"tides\"");
    EXPECT_EQ (failureOf (whole + "<!-- table: sync -->\n<!-- end -->\n"),
               "the table \"sync\" is there twice");
    EXPECT_EQ (failureOf (without ("<!-- end -->", "")), "the table \"sections\" is not closed");
}
}
