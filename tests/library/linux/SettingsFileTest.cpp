// The settings file in all the trouble that a disk, an editor and other processes can make.
#include "platform/SettingsStore.h"
#include "tests/host/TemporaryFolder.h"
#include "tests/library/linux/Screen.h"

#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <functional>
#include <gtest/gtest.h>
#include <map>
#include <set>
#include <sys/file.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

static bool canLock = true; // false on some network file systems

// Takes the place of the system's own.
extern "C" int flock (int file, int operation)
{
    errno = ENOLCK;
    return canLock ? static_cast<int> (::syscall (SYS_flock, file, operation)) : -1;
}

namespace
{
const std::string header = "# Settings of Corvanex instruments: number, tab, group\\name\n";

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

bool store (const std::string& name, std::uint32_t number)
{
    const auto store = platform::makeSettingsStore ();
    return store->write ("Brimvale", name, number) && store->commit ();
}

std::uint32_t stored (const std::string& name)
{
    return platform::makeSettingsStore ()->read ("Brimvale", name);
}

class SettingsFile : public testing::Test
{
protected:
    void SetUp () override
    {
        ::setenv ("XDG_CONFIG_HOME", folder.folder ().c_str (), 1);
        std::filesystem::create_directories (settings.parent_path ());
    }
    void TearDown () override { ::setenv ("XDG_CONFIG_HOME", before.c_str (), 1); }

    void edit (const std::string& content) const { std::ofstream (settings, std::ios::binary) << content; }
    std::string beside (const char* end) const { return settings.string () + end; }
    void expectNothingElse () const
    {
        auto names = filesIn (settings.parent_path ());
        names.erase ("settings.lock");
        EXPECT_EQ (names, std::set<std::string>{ "settings" });
    }

    TemporaryFolder folder;
    const std::filesystem::path settings = folder / "corvanex" / "settings";

private:
    const std::string before = environment ("XDG_CONFIG_HOME");
};

TEST_F (SettingsFile, HoldsOneNumberPerLine)
{
    EXPECT_EQ (stored ("Voices    "), 0u);
    const auto store = platform::makeSettingsStore ();
    EXPECT_TRUE (store->write ("Brimvale", "Voices    ", 10001));
    EXPECT_TRUE (store->write ("Brimvale", "MidiCC-NonUsed  ", 4294967295u));
    EXPECT_TRUE (store->write ("Other", "Voices    ", 5));
    for (const char* name : { "a\nb", "a\tb", "a\rb", "\x01" })
        EXPECT_FALSE (store->write ("Brimvale", name, 1)) << "it would break a line";
    EXPECT_FALSE (std::filesystem::exists (settings)) << "before the commit";
    EXPECT_TRUE (store->commit ());
    EXPECT_EQ (contentOf (settings), header + "4294967295\tBrimvale\\MidiCC-NonUsed  \n"
                                              "10001\tBrimvale\\Voices    \n"
                                              "5\tOther\\Voices    \n");
    EXPECT_EQ (stored ("Voices    "), 10001u);
    EXPECT_EQ (stored ("Voices"), 0u) << "the blanks belong to the name";
}

TEST_F (SettingsFile, LiesInTheUsersConfiguration)
{
    ::setenv ("HOME", folder.folder ().c_str (), 1);
    for (const char* config : { "", "relative/path" })
    {
        ::setenv ("XDG_CONFIG_HOME", config, 1);
        std::filesystem::remove_all (folder / ".config");
        EXPECT_TRUE (store ("One", 1)) << config;
        EXPECT_TRUE (std::filesystem::exists (folder / ".config" / "corvanex" / "settings")) << config;
    }
    ::unsetenv ("XDG_CONFIG_HOME");
    EXPECT_EQ (stored ("One"), 1u);

    ::unsetenv ("HOME"); // nothing is stored, and that is said once
    EXPECT_EQ (stored ("One"), 0u);
    const auto store = platform::makeSettingsStore ();
    EXPECT_TRUE (store->write ("Brimvale", "One", 1));
    EXPECT_FALSE (store->commit ());
    EXPECT_TRUE (store->commit ()) << "nothing is left to store";
    ::setenv ("HOME", folder.folder ().c_str (), 1);
}

TEST_F (SettingsFile, EditedCountsAndDamagedIsSetAside)
{
    const std::string good = "1\tBrimvale\\One\n";
    using Row = std::pair<bool, std::string>; // can be read?
    for (const auto& [readable, content] :
         { Row{ true, good + "2\tBrimvale\\Two" },
           Row{ true, "1\tBrimvale\\One\r\n\r\n2\tBrimvale\\Two\r\n" },
           Row{ true, "# mine\r\n" + good + "2\tBrimvale\\Two\r" }, Row{ false, good + "x" },
           Row{ false, good + "2\n" }, Row{ false, good + "2\t\n" }, Row{ false, good + "\t2\n" },
           Row{ false, good + "2 Two\n" }, Row{ false, good + "4294967296\tBrimvale\\Two\n" },
           Row{ false, good + "-1\tBrimvale\\Two\n" }, Row{ false, good + "2\tBrimvale\\Two\r\r\n" },
           Row{ false, std::string (100, '\0') }, Row{ false, good + std::string (2000000, '#') + "\n" } })
    {
        SCOPED_TRACE (content.substr (0, 60));
        edit (content);
        EXPECT_EQ (stored ("Two"), readable ? 2u : 0u);
        EXPECT_EQ (stored ("One"), readable ? 1u : 0u);
        EXPECT_EQ (contentOf (settings), content) << "reading changes nothing";
        EXPECT_TRUE (store ("Zoom", 3));
        EXPECT_EQ (contentOf (settings),
                   header + (readable ? good + "2\tBrimvale\\Two\n" : "") + "3\tBrimvale\\Zoom\n");
        EXPECT_EQ (contentOf (beside (".damaged")), readable ? "" : content);
        std::filesystem::remove (beside (".damaged"));
        expectNothingElse ();
    }
    for (const char* content : { "first", "second" })
    {
        edit (content);
        EXPECT_TRUE (store ("One", 1));
    }
    EXPECT_EQ (contentOf (beside (".damaged")), "first") << "no backup replaces an earlier one";
    EXPECT_EQ (contentOf (beside (".damaged2")), "second");

    std::filesystem::remove (settings);
    ASSERT_EQ (::mkfifo (settings.c_str (), 0600), 0); // reading would wait for its other end
    EXPECT_EQ (stored ("One"), 0u);
    EXPECT_TRUE (store ("One", 1));
    EXPECT_TRUE (std::filesystem::is_fifo (beside (".damaged3")));
}

// An instance reads the file only when it has changed, and must not miss that it has: another file as old and
// as long in its place, an edit, one more within the same tick of the clock, its removal.
TEST_F (SettingsFile, AChangeIsSeenByWhoHasReadBefore)
{
    const auto mine = platform::makeSettingsStore ();
    const auto number = [&mine] { return mine->read ("Brimvale", "A"); };
    const auto old = std::filesystem::file_time_type::clock::now () - std::chrono::hours (1);
    edit (header + "1\tBrimvale\\A\n");
    std::filesystem::last_write_time (settings, old);
    EXPECT_EQ (number (), 1u);
    EXPECT_EQ (number (), 1u);

    ASSERT_TRUE (store ("A", 2));
    std::filesystem::last_write_time (settings, old);
    EXPECT_EQ (number (), 2u);
    for (const char digit : { '3', '4', '5' })
    {
        edit (header + digit + "\tBrimvale\\A\n");
        EXPECT_EQ (number (), static_cast<std::uint32_t> (digit - '0'));
    }
    std::filesystem::remove (settings);
    EXPECT_EQ (number (), 0u);
}

TEST_F (SettingsFile, RightsAreKeptAndMissingOnesLoseNothing)
{
    EXPECT_TRUE (store ("One", 1));
    const std::string content = contentOf (settings);
    ::chmod (settings.parent_path ().c_str (), 0555);
    EXPECT_TRUE (inChild ([] { return becomeNobody () && stored ("One") == 1 && !store ("One", 2); }));
    EXPECT_EQ (contentOf (settings), content) << "a folder without the right to write";

    ::chmod (settings.parent_path ().c_str (), 0777);
    ::chmod (settings.c_str (), 0);
    EXPECT_TRUE (inChild (
        [] { return becomeNobody () && stored ("One") == 0 && store ("Two", 2) && stored ("Two") == 2; }));
    EXPECT_EQ (contentOf (beside (".damaged")), content) << "a file that cannot be read";

    // A link stays one, and the file behind it keeps its rights.
    const auto real = folder / "real";
    std::filesystem::rename (settings, real);
    ::chmod (real.c_str (), 0640);
    std::filesystem::create_symlink (real, settings);
    EXPECT_TRUE (store ("One", 1));
    EXPECT_TRUE (std::filesystem::is_symlink (settings));
    EXPECT_EQ (std::filesystem::status (real).permissions (), std::filesystem::perms (0640));
    EXPECT_EQ (contentOf (real), header + "1\tBrimvale\\One\n2\tBrimvale\\Two\n");
}

// The limit on a file's size fails a write half-way, as a full disk does.
TEST_F (SettingsFile, AFullDiskLeavesTheOldFileWhole)
{
    for (const char* content : { "1\tBrimvale\\One\n", "damaged" })
    {
        edit (content);
        EXPECT_TRUE (inChild (
            []
            {
                const rlimit most = { 1000, 1000 }; // bytes
                return std::signal (SIGXFSZ, SIG_IGN) != SIG_ERR && ::setrlimit (RLIMIT_FSIZE, &most) == 0 &&
                       !store (std::string (2000, 'n'), 2);
            }));
        EXPECT_EQ (contentOf (settings), content);
        expectNothingElse ();
    }
}

TEST_F (SettingsFile, WaitsForALockOnlyWhereSomebodyHoldsOne)
{
    EXPECT_TRUE (store ("One", 1));
    const int lock = ::open (beside (".lock").c_str (), O_RDWR | O_CLOEXEC);
    ASSERT_EQ (::flock (lock, LOCK_EX), 0);
    EXPECT_FALSE (store ("One", 2)) << "nobody releases it";
    EXPECT_EQ (stored ("One"), 1u);
    ::close (lock);
    EXPECT_TRUE (store ("One", 2));
    canLock = false;
    EXPECT_TRUE (store ("One", 3)) << "without locks";
    canLock = true;
    std::filesystem::remove (beside (".lock"));
    std::filesystem::create_directory (beside (".lock")); // cannot be opened
    EXPECT_TRUE (store ("One", 4));
    EXPECT_EQ (stored ("One"), 4u);
}

// Two processes with 44 numbers each, all of one value; somebody reads all the time.
TEST_F (SettingsFile, TwoProcessesLeaveOneOfTwoStatesWhole)
{
    constexpr std::size_t numbers = 44;
    const auto storeAll = [] (std::uint32_t number)
    {
        const auto store = platform::makeSettingsStore ();
        for (std::size_t n = 0; n < numbers; ++n)
            store->write ("Brimvale", "Number " + std::to_string (n), number);
        return store->commit ();
    };
    EXPECT_TRUE (store ("Zoom", 150) && storeAll (1));
    for (const std::uint32_t number : { 11u, 22u })
    {
        int left = ::fork () == 0 ? 100 : -1; // rounds of the child
        while (left > 0 && storeAll (number))
            --left;
        if (left >= 0)
            ::_exit (left);
    }
    for (int running = 2; running > 0;)
    {
        std::ifstream file (settings);
        std::map<std::string, std::size_t> counts; // of each value
        for (std::string line; std::getline (file, line);)
            ++counts[line.substr (0, line.find ('\t'))];
        ASSERT_EQ (counts.size (), 3u) << "two states mixed"; // with the comment and the zoom
        EXPECT_EQ (counts["1"] + counts["11"] + counts["22"], numbers);
        int status = 0;
        if (::waitpid (-1, &status, WNOHANG) > 0)
        {
            EXPECT_EQ (status, 0);
            --running;
        }
    }
    expectNothingElse ();
}
}
