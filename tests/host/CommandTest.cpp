// The host and ./run as a user meets them: exit statuses, sentences, files.
#include "tests/host/Command.h"

#include <sndfile.hh>

namespace
{
constexpr char diskFull[] = "cannot write to standard output: No space left on device.";
const std::string toFile = "probe.so song.mid -o ";

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
    EXPECT_EQ (host ("--version").output, "brimvale-host " VERSION "\n");
    EXPECT_EQ (host ("probe.so empty.mid --tail 0").output,
               "Length:    0.00 s (song 0.00 s)\nPeak:      silence\n"
               "Loudness:  too quiet or too short to measure\nWritten:   empty.wav\n")
        << "and no speed";
}

TEST_F (Command, AProgramOfTheUsersReplacesThoseOfTheSong)
{
    EXPECT_EQ (host ("probe.so --list-programs").output, "001 Clicks\n002 Drone\n003 Tempo\n");
    for (const std::string name : { "Drone", "drone", "2" })
    {
        const Outcome outcome = host ("probe.so song.mid --tail 0.5 --program " + name);
        EXPECT_TRUE (outcome.output.starts_with ("Program:   002 Drone\nLength:    1.51 s (song 1.00 s)"))
            << outcome.output;
        EXPECT_TRUE (files ().contains ("song.wav")) << "named like the song";
    }
    for (const std::string none : { "0", "4", "2x" })
        expectRefusal (HOST_PROGRAM " probe.so song.mid --program " + none,
                       "there is no program \"" + none + "\"; --list-programs shows all 3.");
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
    temporary.write ("two.mid", midi::fileBytes (song));
    const Outcome outcome = host ("probe.so two.mid --tail 0.5 --stems");
    EXPECT_TRUE (outcome.output.starts_with ("Program:   001 Clicks\nProgram:   002 Drone\n"))
        << outcome.output;
    EXPECT_TRUE (
        outcome.output.ends_with ("Written:   two.wav\nWritten:   two 01.wav\nWritten:   two 10.wav\n"))
        << outcome.output;
    EXPECT_EQ (files (), (std::set<std::string>{ "empty.mid", "probe.so", "song.mid", "text.so", "two 01.wav",
                                                 "two 10.wav", "two.mid", "two.wav" }));
    EXPECT_EQ (content ("two.wav").size (), content ("two 10.wav").size ());
    EXPECT_NE (content ("two 01.wav"), content ("two 10.wav"));
}

// The pipe stands for devices, which a test must not risk.
TEST_F (Command, RefusesWhatCannotBeDone)
{
    shell (
        "mkdir folder; mkfifo pipe; ln -s song.mid link-to-song; ln probe.so twin.so; ln -s circle circle");
    midi::Song endless; // each of its ticks is a quarter note
    endless.ticksPerQuarter = 1;
    for (std::uint64_t event = 1; event <= 200; ++event)
        endless.messages.push_back ({ event << 27, { 0xB0, 1, 1 }, 3 });
    endless.endTick = endless.messages.back ().tick;
    temporary.write ("endless.mid", midi::fileBytes (endless));
    const std::string song = content ("song.mid");

    for (const auto& [arguments, sentence] : std::initializer_list<std::pair<std::string, const char*>>{
             { "probe.so", "SONG" },
             { "probe.so song.mid --tail nan", "--tail" },
             { "probe.so none.mid", "cannot read the MIDI file none.mid: there is no such file." },
             { "probe.so .", "cannot read the MIDI file .: it is not a file." },
             { "probe.so endless.mid", "hours, which is more than a WAV file can hold" },
             { "none.so song.mid", "cannot load the library none.so: " },
             { "text.so song.mid", "cannot load the library text.so: " },
             { "probe.so song.mid > /dev/full; state=$?; rm song.wav; exit $state", diskFull },
             { "probe.so --list-programs > /dev/full", diskFull },
             { toFile + "none/a.wav", "cannot write none/a.wav: its folder does not exist." },
             { toFile + "folder", "cannot write folder: a folder has that name." },
             { toFile + "pipe", "cannot write pipe: what has that name is no ordinary file." },
             { toFile + "circle", "cannot write circle: Too many levels of symbolic links." },
             { toFile + "song.mid", "would overwrite the song" },
             { toFile + "link-to-song", "would overwrite the song" },
             { toFile + "twin.so", "would overwrite the library" },
         })
        expectRefusal (HOST_PROGRAM " " + arguments, sentence);
    EXPECT_EQ (content ("song.mid"), song);
}

TEST_F (Command, TheOutputGoesWhereALinkLeads)
{
    shell ("echo older > older.wav; chmod 640 older.wav; ln -s older.wav link; ln -s new.wav early-link");
    for (const auto& [link, file] :
         { std::pair{ "link", "older.wav" }, std::pair{ "early-link", "new.wav" } })
    {
        EXPECT_EQ (host (toFile + link).status, 0);
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
    for (const auto& [arguments, sentence] : std::initializer_list<std::pair<const char*, const char*>>{
             { "none.mid", "there is no MIDI file none.mid; check the name." },
             { "-- -none.mid", "there is no MIDI file -none.mid; check the name." },
             { ".", "cannot read the MIDI file .: it is not a file." },
             { "a.mid b.mid", "one song at a time: a.mid, then b.mid." },
             { "-o", "-o needs the name of a WAV file." },
             { "--rate", "--rate needs a value; ./run --help shows which." },
             { "--loud 3", "there is no option --loud; ./run --help shows all." },
             { "song.mid -o .", "cannot write .: a folder has that name." },
             { "song.mid --output=-o/a.wav", "cannot write -o/a.wav: its folder does not exist." },
             { "song.mid -o ./song.mid",
               "the output would overwrite song.mid; give it another name with -o." },
             { "--help > /dev/full", diskFull },
         })
        EXPECT_EQ (expectRefusal (std::string (SOURCE_FOLDER "/run ") + arguments,
                                  std::string ("run: ") + sentence + "\n"),
                   1);
}
}
