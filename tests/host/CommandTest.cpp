// The host as a user meets it: exit statuses, sentences, files.
#include "tests/host/MidiBytes.h"
#include "tests/host/TemporaryFolder.h"

#include <array>
#include <cstdio>
#include <fstream>
#include <gtest/gtest.h>
#include <sndfile.hh>
#include <sys/wait.h>

namespace
{
using namespace midiBytes;

struct Outcome
{
    int status = -1;
    std::string output; // standard error, or all with "2>&1" in the command
};

Outcome run (const std::string& command)
{
    Outcome outcome;
    FILE* pipe = popen (command.c_str (), "r");
    std::array<char, 4096> part = {};
    for (std::size_t count = 0; (count = std::fread (part.data (), 1, part.size (), pipe)) > 0;)
        outcome.output.append (part.data (), count);
    const int state = pclose (pipe);
    outcome.status = WIFEXITED (state) ? WEXITSTATUS (state) : -1;
    return outcome;
}

class Command : public testing::Test
{
protected:
    void SetUp () override
    {
        const Bytes events = { 0, 0xC0, 0, 0, 0x90, 60, 64,  96, 0x80, 60, 0,
                               0, 0xC0, 2, 0, 0x90, 62, 127, 96, 0x80, 62, 0 };
        write ("song.mid", header (0, 1, 96) + track (events));
    }

    void write (const std::string& name, const Bytes& bytes)
    {
        std::ofstream out (temporary / name, std::ios::binary);
        out.write (reinterpret_cast<const char*> (bytes.data ()),
                   static_cast<std::streamsize> (bytes.size ()));
    }

    // Runs in the test's folder, with paths relative to it.
    Outcome host (const std::string& arguments, const std::string& library = PROBE_LIBRARY)
    {
        return run ("cd '" + temporary.folder ().string () + "' && '" HOST_PROGRAM "' '" + library + "' " +
                    arguments + " 2>&1");
    }

    TemporaryFolder temporary;
};

TEST_F (Command, RendersASongAndTellsItsFigures)
{
    const Outcome outcome = host ("song.mid -o out.wav --rate 48000 --block 256 --tail 1");
    ASSERT_EQ (outcome.status, 0) << outcome.output;
    for (const char* part :
         { "Program:   001 Clicks\n", "Program:   003 Tempo\n", "Length:    ", "Peak:      -0.07 dBFS\n",
           "Loudness:  ", "Speed:     ", " times faster than real time\n", "Written:   out.wav\n" })
        EXPECT_NE (outcome.output.find (part), std::string::npos) << part << " in\n" << outcome.output;
    EXPECT_EQ (outcome.output.find ('\r'), std::string::npos) << "no progress bar in a pipe";
    SndfileHandle sound ((temporary / "out.wav").string ());
    EXPECT_EQ (sound.samplerate (), 48000);
    EXPECT_GE (sound.frames (), 48000 * 2); // a second of song, a second of tail (the tempo keeps sounding)
}

TEST_F (Command, AProgramOfTheUsersReplacesThoseOfTheSong)
{
    for (const char* name : { "Drone", "drone", "2" })
    {
        const Outcome outcome = host (std::string ("song.mid --tail 0.5 --program ") + name);
        ASSERT_EQ (outcome.status, 0) << outcome.output;
        EXPECT_NE (outcome.output.find ("Program:   002 Drone\nLength:    1.51 s (song 1.00 s)"),
                   std::string::npos)
            << outcome.output;
        EXPECT_TRUE (std::filesystem::exists (temporary / "song.wav"));
    }
}

TEST_F (Command, ListsPrograms)
{
    const Outcome outcome = host ("--list-programs");
    EXPECT_EQ (outcome.status, 0);
    EXPECT_EQ (outcome.output, "001 Clicks\n002 Drone\n003 Tempo\n");
}

TEST_F (Command, EveryFailureIsOneSentenceAndLeavesNoFile)
{
    write ("damaged.mid", header (0, 1, 96) + text ("MTrk") + bigEndian (1000, 4));
    write ("text.so", text ("no library"));
    std::filesystem::create_directory (temporary / "folder.wav");
    struct Case
    {
        std::string arguments;
        std::string sentence; // a part of it
        std::string library = PROBE_LIBRARY;
    };
    const Case cases[] = {
        { "none.mid", "cannot read the MIDI file none.mid: there is no such file." },
        { "damaged.mid",
          "cannot read the MIDI file damaged.mid: track 1 should hold 1000 bytes, but only 0 are there." },
        { ". -o a.wav", "cannot read the MIDI file .: it is not a file." },
        { "song.mid --program Dron",
          "there is no program \"Dron\"; did you mean \"Drone\"; --list-programs shows all 3." },
        { "song.mid --program 4", "there is no program \"4\"; --list-programs shows all 3." },
        { "song.mid -o none/a.wav", "cannot write none/a.wav: its folder does not exist." },
        { "song.mid -o folder.wav", "cannot write folder.wav: a folder has that name." },
        { "song.mid -o song.mid", "would overwrite the song" },
        { "song.mid", "cannot load the library none.so: ", "none.so" },
        { "song.mid", "cannot load the library ./text.so: ", "./text.so" },
        { "song.mid --rate 1", "--rate" },
    };
    for (const Case& c : cases)
    {
        const Outcome outcome = host (c.arguments, c.library);
        EXPECT_NE (outcome.status, 0) << c.arguments;
        EXPECT_NE (outcome.output.find (c.sentence), std::string::npos) << outcome.output << c.sentence;
        EXPECT_EQ (outcome.output.find ("brimvale-host: "), 0u) << outcome.output;
        EXPECT_EQ (outcome.output.find ('\n'), outcome.output.size () - 1) << outcome.output;
    }
    EXPECT_FALSE (std::filesystem::exists (temporary / "song.wav"));
    EXPECT_FALSE (std::filesystem::exists (temporary / "song.wav.part"));
}

TEST_F (Command, RefusesASongThatNoWavFileCanHold)
{
    // Two hundred delta times of 2^28 - 1 ticks, each tick a quarter note.
    Bytes events;
    for (int i = 0; i < 200; ++i)
        events = events + Bytes{ 0xFF, 0xFF, 0xFF, 0x7F, 0xB0, 1, 1 };
    write ("endless.mid", header (0, 1, 1) + track (events));
    const Outcome outcome = host ("endless.mid");
    EXPECT_EQ (outcome.status, 1);
    EXPECT_NE (outcome.output.find ("hours, which is more than a WAV file can hold"), std::string::npos)
        << outcome.output;
}

// The command at the top of the tree says what is wrong before it installs or builds anything.
TEST (RunCommand, RefusesWhatCannotBePlayedAtOnce)
{
    const std::vector<std::pair<std::string, std::string>> cases = {
        { "none.mid", "run: there is no MIDI file none.mid; check the name.\n" },
        { "-o", "run: -o needs the name of a WAV file.\n" },
        { "--rate", "run: --rate needs a value; ./run --help shows which.\n" },
        { "a.mid b.mid", "run: one song at a time: a.mid, then b.mid.\n" },
    };
    for (const auto& [arguments, sentence] : cases)
    {
        const Outcome outcome = run ("'" RUN_COMMAND "' " + arguments + " 2>&1 < /dev/null");
        EXPECT_NE (outcome.status, 0);
        EXPECT_EQ (outcome.output, sentence);
    }
}
}
