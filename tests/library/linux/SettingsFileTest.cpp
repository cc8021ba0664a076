// The settings file in all the trouble that a disk, an editor and other processes can make.
#include "platform/AtomicFile.h"
#include "platform/SettingsStore.h"
#include "tests/host/TemporaryFolder.h"
#include "tests/library/linux/Screen.h"

#include <cerrno>
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
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

namespace
{
int lockFailure = 0; // what locking ends with instead, as on some file systems; 0: it works
int lockCalls = 0;
}

// Takes the place of the system's own.
extern "C" int flock (int file, int operation)
{
    ++lockCalls;
    errno = lockFailure;
    return lockFailure == 0 ? static_cast<int> (::syscall (SYS_flock, file, operation)) : -1;
}

namespace
{
const std::string header = "# Settings of Corvanex instruments: number, tab, group\\name\n";

std::string contentOf (const std::filesystem::path& path)
{
    std::ifstream file (path, std::ios::binary);
    return { std::istreambuf_iterator<char> (file), {} };
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
    std::set<std::string> files () const
    {
        std::set<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator (settings.parent_path ()))
            names.insert (entry.path ().filename ());
        names.erase ("settings.lock");
        return names;
    }

    TemporaryFolder folder;
    const std::filesystem::path settings = folder / "corvanex" / "settings";
    const std::set<std::string> itself = { "settings" };

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
    EXPECT_EQ (store->read ("Other", "Voices    "), 5u);
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

    // No home at all: nothing is stored, and that is said once.
    ::unsetenv ("HOME");
    EXPECT_EQ (stored ("One"), 0u);
    const auto store = platform::makeSettingsStore ();
    EXPECT_TRUE (store->write ("Brimvale", "One", 1));
    EXPECT_FALSE (store->commit ());
    EXPECT_TRUE (store->commit ()) << "nothing is left to store";
    ::setenv ("HOME", folder.folder ().c_str (), 1);
}

TEST_F (SettingsFile, MayHaveBeenEdited)
{
    for (const char* edited :
         { "1\tBrimvale\\One\n2\tBrimvale\\Two", "1\tBrimvale\\One\r\n\r\n2\tBrimvale\\Two\r\n",
           "# mine\r\n1\tBrimvale\\One\n2\tBrimvale\\Two\r" })
    {
        SCOPED_TRACE (edited);
        edit (edited);
        EXPECT_EQ (stored ("One"), 1u);
        EXPECT_EQ (stored ("Two"), 2u);
        EXPECT_TRUE (store ("Three", 3));
        EXPECT_EQ (contentOf (settings), header + "1\tBrimvale\\One\n3\tBrimvale\\Three\n2\tBrimvale\\Two\n");
        EXPECT_EQ (files (), itself);
    }
}

TEST_F (SettingsFile, DamagedCountsAsNothingAndIsSetAside)
{
    const std::string good = "1\tBrimvale\\One\n";
    for (const std::string& content : { good + "x", good + "2\n", good + "2\t\n", good + "\t2\n",
                                        good + "2 Two\n", good + "4294967296\tBrimvale\\Two\n",
                                        good + "-1\tBrimvale\\Two\n", good + "2\tBrimvale\\Two\r\r\n",
                                        std::string (100, '\0'), good + std::string (2000000, '#') + "\n" })
    {
        SCOPED_TRACE (content.substr (0, 60));
        edit (content);
        EXPECT_EQ (stored ("One"), 0u);
        EXPECT_EQ (contentOf (settings), content) << "reading changes nothing";
        EXPECT_TRUE (store ("Two", 2));
        EXPECT_EQ (stored ("Two"), 2u);
        EXPECT_EQ (stored ("One"), 0u);
        EXPECT_EQ (contentOf (beside (".damaged")), content);
        std::filesystem::remove (beside (".damaged"));
        EXPECT_EQ (files (), itself);
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
    std::filesystem::rename (beside (".damaged"), real);
    std::filesystem::remove (settings);
    ::chmod (real.c_str (), 0640);
    std::filesystem::create_symlink (real, settings);
    EXPECT_TRUE (store ("Two", 2));
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
        EXPECT_EQ (files (), itself);
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

    for (const int failure : { ENOLCK, EOPNOTSUPP, ENOSYS, EINVAL, EBADF })
    {
        lockFailure = failure;
        lockCalls = 0;
        EXPECT_TRUE (store ("One", static_cast<std::uint32_t> (failure))) << "without locks";
        EXPECT_EQ (stored ("One"), static_cast<std::uint32_t> (failure));
        EXPECT_EQ (lockCalls, 1) << "asked again, which takes its time";
    }
    lockFailure = 0;

    std::filesystem::remove (beside (".lock"));
    std::filesystem::create_directory (beside (".lock")); // cannot be opened
    EXPECT_TRUE (store ("One", 3));
    EXPECT_EQ (stored ("One"), 3u);
}

// Two processes with 44 numbers each, all of one value; somebody reads all the time.
TEST_F (SettingsFile, TwoProcessesLeaveOneOfTwoStatesWhole)
{
    constexpr int rounds = 100;
    constexpr std::size_t numbers = 44;
    const auto storeAll = [] (std::uint32_t number)
    {
        const auto store = platform::makeSettingsStore ();
        for (std::size_t n = 0; n < numbers; ++n)
            store->write ("Brimvale", "Number " + std::to_string (n), number);
        return store->commit ();
    };
    EXPECT_TRUE (store ("Zoom", 150));
    EXPECT_TRUE (storeAll (1));
    for (const std::uint32_t number : { 11u, 22u })
    {
        if (::fork () != 0)
            continue;
        bool good = true;
        for (int n = 0; n < rounds; ++n)
            good = storeAll (number) && good;
        ::_exit (good ? 0 : 1);
    }
    for (int running = 2; running > 0;)
    {
        std::ifstream file (settings);
        std::multiset<std::string> values;
        for (std::string line; std::getline (file, line);)
            values.insert (line.substr (0, line.find ('\t')));
        EXPECT_EQ (values.size (), numbers + 2) << "with the comment and the zoom";
        EXPECT_EQ (values.count ("150"), 1u);
        EXPECT_TRUE (values.count ("1") == numbers || values.count ("11") == numbers ||
                     values.count ("22") == numbers)
            << "two states mixed";
        int status = 0;
        if (::waitpid (-1, &status, WNOHANG) > 0)
        {
            EXPECT_EQ (status, 0);
            --running;
        }
    }
    EXPECT_EQ (files (), itself);
}
}
