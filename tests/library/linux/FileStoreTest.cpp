// The settings file and replaced files in all the trouble that a disk can make.
#include "platform/AtomicFile.h"
#include "platform/SettingsStore.h"
#include "tests/host/TemporaryFolder.h"
#include "tests/library/Surroundings.h"

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <fstream>
#include <functional>
#include <gtest/gtest.h>
#include <set>
#include <sys/file.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace
{
std::string contentOf (const std::filesystem::path& path)
{
    std::ifstream file (path, std::ios::binary);
    return { std::istreambuf_iterator<char> (file), {} };
}

void write (const std::filesystem::path& path, const std::string& content)
{
    std::ofstream (path, std::ios::binary) << content;
}

// Runs in a process of its own, which may lose rights or be limited; true when it answered true.
bool inChild (const std::function<bool ()>& run)
{
    const pid_t child = ::fork ();
    if (child == 0)
        ::_exit (run () ? 0 : 1);
    int status = -1;
    ::waitpid (child, &status, 0);
    return WIFEXITED (status) && WEXITSTATUS (status) == 0;
}

// Root may write everywhere, so a test of rights first becomes somebody else.
bool becomeNobody ()
{
    constexpr uid_t nobody = 65534;
    return ::geteuid () != 0 || (::setgid (nobody) == 0 && ::setuid (nobody) == 0);
}

class FileStore : public testing::Test
{
protected:
    void SetUp () override { useFolder (folder.folder ()); }
    void useFolder (const std::filesystem::path& config)
    {
        ::setenv ("XDG_CONFIG_HOME", config.c_str (), 1);
        settings = config / "corvanex" / "settings";
    }
    void TearDown () override { ::setenv ("XDG_CONFIG_HOME", before.c_str (), 1); }

    static bool store (const std::string& name, std::uint32_t number)
    {
        const auto store = platform::makeSettingsStore ();
        return store->write ("Brimvale", name, number) && store->commit ();
    }
    static std::uint32_t stored (const std::string& name)
    {
        return platform::makeSettingsStore ()->read ("Brimvale", name);
    }
    std::vector<std::string> filesBesideSettings () const
    {
        std::vector<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator (settings.parent_path ()))
        {
            if (entry.path ().extension () != ".lock")
                names.push_back (entry.path ().filename ());
        }
        std::sort (names.begin (), names.end ());
        return names;
    }

    TemporaryFolder folder;
    std::filesystem::path settings;

private:
    std::string before = std::getenv ("XDG_CONFIG_HOME");
};

using Names = std::vector<std::string>;

TEST_F (FileStore, HoldsOneNumberPerLine)
{
    EXPECT_EQ (stored ("Voices    "), 0u);
    EXPECT_FALSE (std::filesystem::exists (settings)) << "reading writes nothing";
    const auto store = platform::makeSettingsStore ();
    EXPECT_TRUE (store->write ("Brimvale", "Voices    ", 10001));
    EXPECT_TRUE (store->write ("Brimvale", "MidiCC-NonUsed  ", 4294967295u));
    EXPECT_TRUE (store->write ("Other", "Voices    ", 5));
    EXPECT_FALSE (std::filesystem::exists (settings)) << "nothing is stored before the commit";
    EXPECT_TRUE (store->commit ());
    EXPECT_EQ (contentOf (settings), "# Settings of Corvanex instruments: number, tab, group\\name\n"
                                     "4294967295\tBrimvale\\MidiCC-NonUsed  \n"
                                     "10001\tBrimvale\\Voices    \n"
                                     "5\tOther\\Voices    \n");
    EXPECT_EQ (stored ("Voices    "), 10001u);
    EXPECT_EQ (stored ("Voices"), 0u) << "the blanks belong to the name";
    EXPECT_EQ (store->read ("Other", "Voices    "), 5u);
}

TEST_F (FileStore, NamesThatWouldBreakALineAreRefused)
{
    for (const char* name : { "a\nb", "a\tb", "a\rb", "\x01" })
        EXPECT_FALSE (platform::makeSettingsStore ()->write ("Brimvale", name, 1));
}

TEST_F (FileStore, NumbersOfOthersStay)
{
    EXPECT_TRUE (store ("One", 1));
    EXPECT_TRUE (store ("Two", 2));
    EXPECT_TRUE (store ("One", 3));
    EXPECT_EQ (stored ("One"), 3u);
    EXPECT_EQ (stored ("Two"), 2u);
}

TEST_F (FileStore, LiesInTheUsersConfiguration)
{
    ::setenv ("HOME", folder.folder ().c_str (), 1);
    const auto expected = folder / ".config" / "corvanex" / "settings";
    for (const char* config : { "", "relative/path" })
    {
        ::setenv ("XDG_CONFIG_HOME", config, 1);
        std::filesystem::remove_all (folder / ".config");
        EXPECT_TRUE (store ("One", 1)) << config;
        EXPECT_TRUE (std::filesystem::exists (expected)) << config;
    }
    ::unsetenv ("XDG_CONFIG_HOME");
    EXPECT_EQ (stored ("One"), 1u);

    // No home at all: nothing is stored, and that is said once.
    ::unsetenv ("HOME");
    EXPECT_EQ (stored ("One"), 0u);
    const auto store = platform::makeSettingsStore ();
    EXPECT_TRUE (store->write ("Brimvale", "One", 1));
    EXPECT_FALSE (store->commit ());
    EXPECT_TRUE (store->commit ()) << "nothing is left to store";
    ::setenv ("HOME", folder.folder ().c_str (), 1);
}

TEST_F (FileStore, DamagedFilesCountAsNothingAndAreSetAside)
{
    const std::string good = "1\tBrimvale\\One\n";
    const std::string damaged[] = {
        good + "x",
        good + "x\n",
        good + "2\n",
        good + "2\t\n",
        good + "\t2\n",
        good + "2 Two\n",
        good + "4294967296\tBrimvale\\Two\n",
        good + "-1\tBrimvale\\Two\n",
        good + "2\tBrimvale\\Two", // the end is missing
        std::string (100, '\0'),
        good + std::string (2000000, '#') + "\n",
        "1\tBrimvale\\One\r\n",
    };
    std::filesystem::create_directories (settings.parent_path ());
    for (const std::string& content : damaged)
    {
        SCOPED_TRACE (content.substr (0, 60));
        write (settings, content);
        EXPECT_EQ (stored ("One"), 0u);
        EXPECT_EQ (contentOf (settings), content) << "reading changes nothing";
        EXPECT_TRUE (store ("Two", 2));
        EXPECT_EQ (stored ("Two"), 2u);
        EXPECT_EQ (stored ("One"), 0u);
        const auto backup = settings.parent_path () / "settings.damaged";
        EXPECT_EQ (contentOf (backup), content);
        EXPECT_EQ (filesBesideSettings (), (Names{ "settings", "settings.damaged" }));
        std::filesystem::remove (backup);
    }
}

TEST_F (FileStore, NoBackupReplacesAnEarlierOne)
{
    std::filesystem::create_directories (settings.parent_path ());
    for (const char* content : { "first", "second", "third" })
    {
        write (settings, content);
        EXPECT_TRUE (store ("One", 1));
    }
    EXPECT_EQ (contentOf (settings.string () + ".damaged"), "first");
    EXPECT_EQ (contentOf (settings.string () + ".damaged2"), "second");
    EXPECT_EQ (contentOf (settings.string () + ".damaged3"), "third");
}

TEST_F (FileStore, WhatIsNoFileKeepsNobodyWaiting)
{
    std::filesystem::create_directories (settings.parent_path ());
    ASSERT_EQ (::mkfifo (settings.c_str (), 0600), 0);
    EXPECT_EQ (stored ("One"), 0u);
    EXPECT_TRUE (store ("One", 1));
    EXPECT_EQ (stored ("One"), 1u);
    EXPECT_TRUE (std::filesystem::is_fifo (settings.string () + ".damaged"));

    useFolder (folder / "second");
    std::filesystem::create_directories (settings / "inner");
    EXPECT_EQ (stored ("One"), 0u);
    EXPECT_TRUE (store ("One", 1));
    EXPECT_TRUE (std::filesystem::exists (settings.string () + ".damaged/inner"));
}

TEST_F (FileStore, UnreadableFilesAreSetAside)
{
    std::filesystem::create_directories (settings.parent_path ());
    write (settings, "1\tBrimvale\\One\n");
    ::chmod (settings.c_str (), 0);
    ::chmod (settings.parent_path ().c_str (), 0777);
    EXPECT_TRUE (inChild (
        [] { return becomeNobody () && stored ("One") == 0 && store ("Two", 2) && stored ("Two") == 2; }));
    ::chmod ((settings.string () + ".damaged").c_str (), 0600);
    EXPECT_EQ (contentOf (settings.string () + ".damaged"), "1\tBrimvale\\One\n");
}

TEST_F (FileStore, AFolderWithoutTheRightToWriteKeepsItsFiles)
{
    EXPECT_TRUE (store ("One", 1));
    const std::string content = contentOf (settings);
    const auto damaged = folder / "damaged";
    write (damaged, "damaged");
    ::chmod (settings.parent_path ().c_str (), 0555);
    ::chmod (folder.folder ().c_str (), 0555);
    EXPECT_TRUE (inChild ([] { return becomeNobody () && stored ("One") == 1 && !store ("One", 2); }));
    const std::string news = "news";
    EXPECT_TRUE (inChild (
        [&]
        { return becomeNobody () && !platform::replaceFile (damaged, std::as_bytes (std::span (news))); }));
    ::chmod (folder.folder ().c_str (), 0755);
    ::chmod (settings.parent_path ().c_str (), 0755);
    EXPECT_EQ (contentOf (settings), content);
    EXPECT_EQ (contentOf (damaged), "damaged");
}

// The limit on a file's size fails a write half-way, as a full disk does.
TEST_F (FileStore, AFullDiskLeavesTheOldFileWhole)
{
    const auto limitFiles = []
    {
        const rlimit most = { 1000, 1000 }; // bytes
        return std::signal (SIGXFSZ, SIG_IGN) != SIG_ERR && ::setrlimit (RLIMIT_FSIZE, &most) == 0;
    };
    EXPECT_TRUE (store ("One", 1));
    const std::string content = contentOf (settings);
    EXPECT_TRUE (inChild ([&] { return limitFiles () && !store (std::string (2000, 'n'), 2); }));
    EXPECT_EQ (contentOf (settings), content);
    EXPECT_EQ (filesBesideSettings (), Names{ "settings" });

    write (settings, "damaged");
    EXPECT_TRUE (inChild ([&] { return limitFiles () && !store (std::string (2000, 'n'), 2); }));
    EXPECT_EQ (contentOf (settings), "damaged") << "back in its place";
    EXPECT_EQ (filesBesideSettings (), Names{ "settings" });

    const auto bank = folder / "Brimvale.bnk";
    write (bank, "older");
    const std::string newer (23896, 'n');
    EXPECT_TRUE (inChild (
        [&] { return limitFiles () && !platform::replaceFile (bank, std::as_bytes (std::span (newer))); }));
    EXPECT_EQ (contentOf (bank), "older");
    EXPECT_TRUE (platform::replaceFile (bank, std::as_bytes (std::span (newer))));
    EXPECT_EQ (contentOf (bank), newer);
}

TEST_F (FileStore, LinksAndRightsStay)
{
    const auto real = folder / "real";
    write (real, "1\tBrimvale\\One\n");
    ::chmod (real.c_str (), 0640);
    std::filesystem::create_directories (settings.parent_path ());
    std::filesystem::create_symlink (real, settings);
    EXPECT_TRUE (store ("Two", 2));
    EXPECT_TRUE (std::filesystem::is_symlink (settings));
    struct stat status = {};
    EXPECT_EQ (::stat (real.c_str (), &status), 0);
    EXPECT_EQ (status.st_mode & 0777u, 0640u);
    EXPECT_EQ (stored ("One"), 1u);
    EXPECT_EQ (stored ("Two"), 2u);
}

TEST_F (FileStore, ALockThatNobodyReleasesIsGivenUp)
{
    EXPECT_TRUE (store ("One", 1));
    const int lock = ::open ((settings.string () + ".lock").c_str (), O_RDWR | O_CLOEXEC);
    ASSERT_EQ (::flock (lock, LOCK_EX), 0);
    EXPECT_FALSE (store ("One", 2));
    EXPECT_EQ (stored ("One"), 1u);
    ::close (lock);
    EXPECT_TRUE (store ("One", 2));
}

// Two processes with 44 numbers each, all of one value; somebody reads all the time.
TEST_F (FileStore, TwoProcessesLeaveOneOfTwoStatesWhole)
{
    constexpr int rounds = 100;
    const auto storeAll = [] (std::uint32_t number)
    {
        const auto store = platform::makeSettingsStore ();
        for (int n = 0; n < 44; ++n)
            store->write ("Brimvale", "Number " + std::to_string (n), number);
        return store->commit ();
    };
    EXPECT_TRUE (store ("Zoom", 150));
    EXPECT_TRUE (storeAll (1));
    std::vector<pid_t> children;
    for (const std::uint32_t number : { 11u, 22u })
    {
        const pid_t child = ::fork ();
        if (child == 0)
        {
            bool good = true;
            for (int n = 0; n < rounds; ++n)
                good = storeAll (number) && good;
            ::_exit (good ? 0 : 1);
        }
        children.push_back (child);
    }
    std::set<std::uint32_t> statesSeen;
    const auto look = [&]
    {
        const auto numbers = storedNumbers (); // by one reading of the file
        ASSERT_EQ (numbers.size (), 45u);
        EXPECT_EQ (numbers.at ("Zoom"), 150u);
        std::set<std::uint32_t> values;
        for (const auto& [name, number] : numbers)
        {
            if (name != "Zoom")
                values.insert (number);
        }
        EXPECT_EQ (values.size (), 1u) << "two states mixed";
        statesSeen.merge (values);
    };
    int running = 2;
    while (running > 0)
    {
        look ();
        int status = 0;
        if (::waitpid (-1, &status, WNOHANG) > 0)
        {
            EXPECT_EQ (status, 0);
            --running;
        }
    }
    look ();
    EXPECT_TRUE (statesSeen.contains (11) || statesSeen.contains (22));
    EXPECT_EQ (filesBesideSettings (), Names{ "settings" });
}
}
