#include "host/Options.h"

#include "host/ProgramList.h"

#include <gtest/gtest.h>

namespace
{
using namespace host;

std::optional<Ending> parse (std::vector<std::string> arguments, Options& options, bool terminal = false)
{
    arguments.insert (arguments.begin (), "brimvale-host");
    return parseOptions (arguments, terminal, options);
}

TEST (Options, TakesEverythingThatHelpShows)
{
    Options options;
    const auto ending = parse ({ "/lib/x.dll", "/songs/a b.mid", "-o", "c.wav", "--program", "Bass One",
                                 "--rate", "48000", "--block", "256", "--format", "float", "--tail", "2.5" },
                               options);
    ASSERT_FALSE (ending) << ending->text;
    EXPECT_EQ (options.library, "/lib/x.dll"); // not an option, also where options may start with a slash
    EXPECT_EQ (options.song, "/songs/a b.mid");
    EXPECT_EQ (options.output, "c.wav");
    EXPECT_EQ (options.program, "Bass One");
    EXPECT_EQ (options.sampleRate, 48000);
    EXPECT_EQ (options.blockSize, 256);
    EXPECT_EQ (options.format, SampleFormat::float32);
    EXPECT_DOUBLE_EQ (options.tailLimit, 2.5);
}

TEST (Options, NamesTheOutputAfterTheSong)
{
    Options options;
    ASSERT_FALSE (parse ({ "lib", "folder/song.one.mid" }, options));
    EXPECT_EQ (options.output, "song.one.wav");
}

TEST (Options, ShowsTheProgressBarOnATerminalOrOnRequest)
{
    const auto shown = [] (const std::string& when, bool terminal)
    {
        Options options;
        EXPECT_FALSE (parse ({ "lib", "song", "--progress", when }, options, terminal));
        return options.progress;
    };
    EXPECT_TRUE (shown ("auto", true));
    EXPECT_FALSE (shown ("auto", false));
    EXPECT_TRUE (shown ("always", false));
    EXPECT_FALSE (shown ("never", true));
}

TEST (Options, RefusesWithOneSentenceThatNamesTheOption)
{
    const std::vector<std::pair<std::vector<std::string>, std::string>> cases = {
        { {}, "LIBRARY" },
        { { "lib" }, "SONG" },
        { { "lib", "song", "more" }, "more" },
        { { "lib", "song", "--rate", "7999" }, "--rate" },
        { { "lib", "song", "--rate", "384001" }, "--rate" },
        { { "lib", "song", "--rate", "fast" }, "--rate" },
        { { "lib", "song", "--block", "0" }, "--block" },
        { { "lib", "song", "--block", "65537" }, "--block" },
        { { "lib", "song", "--format", "8" }, "--format" },
        { { "lib", "song", "--tail", "-1" }, "--tail" },
        { { "lib", "song", "-o" }, "--output" },
        { { "lib", "song", "--loud" }, "--loud" },
    };
    for (const auto& [arguments, part] : cases)
    {
        Options options;
        const auto ending = parse (arguments, options);
        ASSERT_TRUE (ending) << part;
        EXPECT_EQ (ending->status, 2) << part;
        EXPECT_NE (ending->text.find (part), std::string::npos) << ending->text;
        EXPECT_EQ (ending->text.find ('\n'), std::string::npos) << ending->text;
    }
}

TEST (Options, EdgesOfTheRangesAreAllowed)
{
    for (const char* rate : { "8000", "384000" })
    {
        for (const char* block : { "1", "65536" })
        {
            Options options;
            EXPECT_FALSE (parse ({ "lib", "song", "--rate", rate, "--block", block }, options));
        }
    }
}

TEST (Options, ListingProgramsNeedsNoSong)
{
    Options options;
    ASSERT_FALSE (parse ({ "lib", "--list-programs" }, options));
    EXPECT_TRUE (options.listPrograms);
}

TEST (ProgramList, FindsByNameThenByNumberFromOne)
{
    const ProgramList programs ({ "Bass One", "bass two", "BASS TWO", "2", "Lead" });
    EXPECT_EQ (programs.find ("Bass One"), 0);
    EXPECT_EQ (programs.find ("bass one"), 0);
    EXPECT_EQ (programs.find ("BASS TWO"), 2) << "the exact name wins";
    EXPECT_EQ (programs.find ("2"), 3) << "a name wins over a number";
    EXPECT_EQ (programs.find ("1"), 0);
    EXPECT_EQ (programs.find ("5"), 4);
    for (const char* none : { "0", "6", "-1", "", " 1", "1x", "Bass", "99999999999999999999" })
        EXPECT_EQ (programs.find (none), std::nullopt) << none;
    EXPECT_EQ (programs.title (4), "005 Lead");
}

TEST (ProgramList, SuggestsWhatMayHaveBeenMeant)
{
    const ProgramList programs (
        { "Bass One", "Bass Two", "Pad", "Warm Strings", "Bass One" }); // as in a bank with copies
    EXPECT_EQ (programs.similar ("Bass Onr").front (), "Bass One");
    EXPECT_EQ (programs.similar ("string"), std::vector<std::string> ({ "Warm Strings" }));
    EXPECT_EQ (programs.similar ("bass"), (std::vector<std::string>{ "Bass One", "Bass Two" }));
    EXPECT_TRUE (programs.similar ("Quadrophonic").empty ());
}
}
