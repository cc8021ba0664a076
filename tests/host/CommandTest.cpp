// The host and ./run as a user meets them: exit statuses, sentences, files.
#include "midi/Writer.h"
#include "tests/host/TemporaryFolder.h"

#include <array>
#include <cstdio>
#include <fstream>
#include <gtest/gtest.h>
#include <set>
#include <sndfile.hh>
#include <sys/wait.h>

namespace
{
struct Outcome
{
    int status = -1;
    std::string output; // both streams, unless the command sends one elsewhere
};

class Command : public testing::Test
{
protected:
    void SetUp () override
    {
        midi::Song song;
        song.ticksPerQuarter = 96;
        song.messages = { { 0, { 0xC0, 0 }, 2 },  { 0, { 0x90, 60, 64 }, 3 },   { 96, { 0x80, 60, 0 }, 3 },
                          { 96, { 0xC0, 2 }, 2 }, { 96, { 0x90, 62, 127 }, 3 }, { 192, { 0x80, 62, 0 }, 3 } };
        song.endTick = 192; // 1 s
        write ("song.mid", song);
        std::ofstream (temporary / "text.so") << "no library";
        std::filesystem::copy_file (PROBE_LIBRARY, temporary / "probe.so");
    }

    void write (const std::string& name, const midi::Song& song)
    {
        const auto bytes = midi::fileBytes (song);
        std::ofstream out (temporary / name, std::ios::binary);
        out.write (reinterpret_cast<const char*> (bytes.data ()),
                   static_cast<std::streamsize> (bytes.size ()));
    }

    // Runs in the test's folder.
    Outcome shell (const std::string& command)
    {
        Outcome outcome;
        const std::string folder = temporary.folder ().string ();
        FILE* pipe = popen (("exec 2>&1 < /dev/null; cd '" + folder + "'; " + command).c_str (), "r");
        std::array<char, 4096> part = {};
        for (std::size_t count = 0; (count = std::fread (part.data (), 1, part.size (), pipe)) > 0;)
            outcome.output.append (part.data (), count);
        const int state = pclose (pipe);
        outcome.status = WIFEXITED (state) ? WEXITSTATUS (state) : -1;
        return outcome;
    }
    Outcome host (const std::string& arguments) { return shell (HOST_PROGRAM " " + arguments); }

    std::set<std::string> files () const
    {
        std::set<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator (temporary.folder ()))
            names.insert (entry.path ().filename ().string ());
        return names;
    }
    std::string content (const std::string& name) const
    {
        std::ifstream file (temporary / name, std::ios::binary);
        return { std::istreambuf_iterator<char> (file), {} };
    }

    // One sentence that says this, a status other than 0, and every file as it was.
    void expectRefusal (const std::string& arguments, const std::string& sentence)
    {
        const auto before = files ();
        const Outcome outcome = host (arguments);
        EXPECT_NE (outcome.status, 0) << arguments;
        EXPECT_TRUE (outcome.output.starts_with ("brimvale-host: ")) << outcome.output;
        EXPECT_NE (outcome.output.find (sentence), std::string::npos)
            << outcome.output << "expected: " << sentence;
        EXPECT_EQ (outcome.output.find ('\n'), outcome.output.size () - 1) << outcome.output;
        EXPECT_EQ (files (), before) << arguments;
    }

    TemporaryFolder temporary;
};

TEST_F (Command, RendersASongAndTellsItsFigures)
{
    const Outcome outcome =
        host ("probe.so song.mid -o out.wav --rate 48000 --block 256 --tail 1 --format 16");
    ASSERT_EQ (outcome.status, 0) << outcome.output;
    for (const char* part : { "Program:   001 Clicks\n", "Program:   003 Tempo\n",
                              "Length:    2.00 s (song 1.00 s)\n", "Peak:      -0.07 dBFS\n", "Loudness:  ",
                              "Speed:     ", " times faster than real time\n", "Written:   out.wav\n" })
        EXPECT_NE (outcome.output.find (part), std::string::npos) << part << " in\n" << outcome.output;
    EXPECT_EQ (outcome.output.find ('\r'), std::string::npos) << "no progress bar in a pipe";
    SndfileHandle sound ((temporary / "out.wav").string ());
    EXPECT_EQ (sound.samplerate (), 48000);
    EXPECT_EQ (sound.format (), SF_FORMAT_WAV | SF_FORMAT_PCM_16);

    midi::Song empty;
    empty.ticksPerQuarter = 96;
    write ("empty.mid", empty);
    EXPECT_EQ (host ("probe.so empty.mid --tail 0").output,
               "Length:    0.00 s (song 0.00 s)\nPeak:      silence\n"
               "Loudness:  too quiet or too short to measure\nWritten:   empty.wav\n")
        << "and no speed";
}

TEST_F (Command, AProgramOfTheUsersReplacesThoseOfTheSong)
{
    EXPECT_EQ (host ("probe.so --list-programs").output, "001 Clicks\n002 Drone\n003 Tempo\n");
    for (const char* name : { "Drone", "drone", "2" })
    {
        const Outcome outcome = host (std::string ("probe.so song.mid --tail 0.5 --program ") + name);
        EXPECT_TRUE (outcome.output.starts_with ("Program:   002 Drone\nLength:    1.51 s (song 1.00 s)"))
            << outcome.output;
        EXPECT_TRUE (files ().contains ("song.wav")) << "named like the song";
    }
    for (const char* none : { "0", "4", "2x" })
        expectRefusal (std::string ("probe.so song.mid --program ") + none,
                       std::string ("there is no program \"") + none + "\"; --list-programs shows all 3.");
}

TEST_F (Command, WritesAFileForEachChannelWhenAsked)
{
    midi::Song song;
    song.ticksPerQuarter = 96;
    song.messages = { { 0, { 0xC9, 1, 0 }, 2 },
                      { 0, { 0x90, 60, 64 }, 3 },
                      { 0, { 0x99, 60, 64 }, 3 },
                      { 0, { 0xB4, 7, 64 }, 3 } }; // a channel without notes has no instrument
    song.endTick = 96;
    write ("two.mid", song);
    const Outcome outcome = host ("probe.so two.mid --tail 0.5 --stems");
    EXPECT_TRUE (outcome.output.starts_with ("Program:   001 Clicks\nProgram:   002 Drone\n"))
        << outcome.output;
    EXPECT_TRUE (
        outcome.output.ends_with ("Written:   two.wav\nWritten:   two 01.wav\nWritten:   two 10.wav\n"))
        << outcome.output;
    EXPECT_EQ (files (), (std::set<std::string>{ "probe.so", "song.mid", "text.so", "two 01.wav",
                                                 "two 10.wav", "two.mid", "two.wav" }));
    EXPECT_EQ (content ("two.wav").size (), content ("two 10.wav").size ());
    EXPECT_NE (content ("two 01.wav"), content ("two 10.wav"));
}

TEST_F (Command, RefusesWhatCannotBeDone)
{
    std::ofstream (temporary / "damaged.mid") << "MThd";
    midi::Song endless; // each of its ticks is a quarter note
    endless.ticksPerQuarter = 1;
    for (std::uint64_t event = 1; event <= 200; ++event)
        endless.messages.push_back ({ event << 27, { 0xB0, 1, 1 }, 3 });
    endless.endTick = endless.messages.back ().tick;
    write ("endless.mid", endless);

    const std::pair<const char*, const char*> cases[] = {
        { "", "LIBRARY" },
        { "probe.so", "SONG" },
        { "probe.so song.mid --rate 7999", "--rate" },
        { "probe.so song.mid --tail nan", "--tail" },
        { "probe.so song.mid -o ''", "--output" },
        { "probe.so none.mid", "cannot read the MIDI file none.mid: there is no such file." },
        { "probe.so damaged.mid",
          "cannot read the MIDI file damaged.mid: it ends in the middle of its data." },
        { "probe.so .", "cannot read the MIDI file .: it is not a file." },
        { "probe.so endless.mid", "hours, which is more than a WAV file can hold" },
        { "none.so song.mid", "cannot load the library none.so: " },
        { "text.so song.mid", "cannot load the library text.so: " },
        { "probe.so song.mid > /dev/full; state=$?; rm song.wav; exit $state",
          "cannot write to standard output: No space left on device." },
        { "probe.so --list-programs > /dev/full",
          "cannot write to standard output: No space left on device." },
    };
    for (const auto& [arguments, sentence] : cases)
        expectRefusal (arguments, sentence);
}

// The pipe stands for devices, which a test must not risk.
TEST_F (Command, TheOutputReplacesFilesAlone)
{
    for (const char* command :
         { "mkdir folder", "mkfifo pipe", "ln -s song.mid link-to-song", "ln probe.so twin.so",
           "ln -s circle circle", "ln -s older.wav link", "ln -s new.wav early-link",
           "echo older > older.wav", "chmod 640 older.wav" })
        ASSERT_EQ (shell (command).status, 0) << command;
    const std::string song = content ("song.mid");
    const std::pair<const char*, const char*> refused[] = {
        { "none/a.wav", "cannot write none/a.wav: its folder does not exist." },
        { "folder", "cannot write folder: a folder has that name." },
        { "pipe", "cannot write pipe: what has that name is no ordinary file." },
        { "circle", "cannot write circle: Too many levels of symbolic links." },
        { "/proc/a.wav", "cannot write /proc/a.wav: No such file or directory." },
        { "song.mid", "would overwrite the song" },
        { "link-to-song", "would overwrite the song" },
        { "probe.so", "would overwrite the library" },
        { "twin.so", "would overwrite the library" },
    };
    for (const auto& [output, sentence] : refused)
        expectRefusal (std::string ("probe.so song.mid -o ") + output, sentence);
    EXPECT_EQ (content ("song.mid"), song);
    EXPECT_EQ (content ("older.wav"), "older\n");

    for (const auto& [link, file] :
         { std::pair{ "link", "older.wav" }, std::pair{ "early-link", "new.wav" } })
    {
        EXPECT_EQ (host (std::string ("probe.so song.mid -o ") + link).status, 0);
        EXPECT_TRUE (std::filesystem::is_symlink (temporary / link)) << link;
        EXPECT_TRUE (content (file).starts_with ("RIFF")) << link;
    }
    EXPECT_EQ (shell ("stat -c %a older.wav").output, "640\n");
}

// The file size limit stands for a disk that is full.
TEST_F (Command, ARenderThatBreaksOffLeavesNothing)
{
    const auto before = files ();
    const Outcome full = shell ("trap '' XFSZ; ulimit -f 8; " HOST_PROGRAM " probe.so song.mid");
    EXPECT_EQ (full.output, "brimvale-host: cannot write song.wav: File too large.\n");
    EXPECT_EQ (files (), before);

    const Outcome ended =
        shell (HOST_PROGRAM " probe.so song.mid -p Drone -b 1 --tail 600 & "
                            "for i in $(seq 1000); do ls *.part > /dev/null 2>&1 && break; sleep 0.01; done; "
                            "kill -INT $!; wait $!");
    EXPECT_EQ (ended.output, "brimvale-host: cannot write song.wav: it was interrupted.\n");
    EXPECT_EQ (files (), before);
}

TEST_F (Command, RunsThatNeedTheSamePlaceTakeTurns)
{
    const Outcome outcome = shell ("bash -c '. " SOURCE_FOLDER
                                   "/scripts/common.sh; turn () { mkdir busy && sleep 0.05 && rmdir busy; }; "
                                   "for run in 1 2 3 4; do alone lock turn & done; wait'");
    EXPECT_EQ (outcome.output, "");
}

// What is wrong is said before anything is installed or built.
TEST_F (Command, RunRefusesAtOnce)
{
    ASSERT_EQ (shell ("mkfifo pipe").status, 0);
    const std::pair<const char*, const char*> cases[] = {
        { "none.mid", "there is no MIDI file none.mid; check the name." },
        { "-- -none.mid", "there is no MIDI file -none.mid; check the name." },
        { ".", "cannot read the MIDI file .: it is not a file." },
        { "a.mid b.mid", "one song at a time: a.mid, then b.mid." },
        { "-o", "-o needs the name of a WAV file." },
        { "--rate", "--rate needs a value; ./run --help shows which." },
        { "--loud 3", "there is no option --loud; ./run --help shows all." },
        { "song.mid -o pipe", "cannot write pipe: what has that name is no ordinary file." },
        { "song.mid --output=-o/a.wav", "cannot write -o/a.wav: its folder does not exist." },
        { "song.mid -o ./song.mid", "the output would overwrite song.mid; give it another name with -o." },
        { "--help > /dev/full", "cannot write to standard output: No space left on device." },
    };
    for (const auto& [arguments, sentence] : cases)
    {
        const Outcome outcome = shell (std::string (SOURCE_FOLDER "/run ") + arguments);
        EXPECT_EQ (outcome.status, 1) << arguments;
        EXPECT_EQ (outcome.output, std::string ("run: ") + sentence + "\n");
    }
}
}
