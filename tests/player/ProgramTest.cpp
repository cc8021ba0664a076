// The program itself, on a machine without sound or with a sound server that sends everything nowhere.
#include <gtest/gtest.h>
#include <unistd.h>

#include "player/AudioOut.h"
#include "tests/editor/Bench.h"
#include "tests/host/TemporaryFolder.h"
#include "tests/stage/Neighbour.h"
#include "tests/support/FakeSystem.h"
#include "tests/support/Signals.h"

namespace
{
// With what it writes to standard error in its output.
ChildProcess start (const std::string& arguments)
{
    static const TemporaryFolder settings;
    setenv ("XDG_CONFIG_HOME", settings.folder ().c_str (), 1);
    const std::string program = Bench::isWine () ? SOURCE_FOLDER
                                    "/scripts/wineRun.sh --own-prefix player --this-display " SOURCE_FOLDER
                                    "/build/windows/brimvale.exe"
                                                 : PLAYER_PROGRAM;
    return ChildProcess ({ "sh", "-c", "exec " + program + " " + arguments + " 2>&1" });
}

// The first line of the program's own; empty when there is none.
std::string firstLine (ChildProcess& program)
{
    for (;;)
    {
        std::string line = program.readLine ();
        if (line.empty () || line.starts_with ("brimvale: ") || line.starts_with ("Brimvale"))
            return line;
    }
}
}

TEST (PlayerProgram, SaysWhatCannotBeDoneAndEnds)
{
    VirtualDisplay display;
    using Row = std::tuple<std::string, std::string, int>;
    for (const auto& [arguments, line, status] :
         { Row{ "--version", "Brimvale " BRIMVALE_VERSION, 0 },
           Row{ "--rate 7999",
                "brimvale: --rate: 7999 is not 0 or 8000 to 384000; --help shows what can be asked for.", 2 },
           Row{ "/nowhere/song.mid", "brimvale: cannot read the MIDI file ", 1 },
           Row{ "--program 129", "brimvale: there is no program \"129\".", 1 } })
    {
        ChildProcess program = start (arguments);
        EXPECT_TRUE (firstLine (program).starts_with (line)) << arguments;
        EXPECT_EQ (program.wait (), status) << arguments;
    }
    if (!Bench::isWine ()) // which shows windows without a display, too
    {
        display.leave ();
        ChildProcess program = start ("--no-audio --midi none");
        EXPECT_EQ (firstLine (program), "brimvale: there is no display to show the panel on.");
        EXPECT_EQ (program.wait (), 1);
    }
}

TEST (PlayerProgram, OpensWithoutAnAudioDeviceAndClosesItself)
{
    VirtualDisplay display;
    for (const auto& [arguments, line] :
         { std::pair{ "--midi none", "brimvale: no audio device was found; the panel works without sound." },
           { "--midi none --device Organ",
             "brimvale: no audio device is called \"Organ\"; --list-devices shows those "
             "that there are; the panel works without sound." } })
    {
        ChildProcess program = start (std::string (arguments) + " " SOURCE_FOLDER "/examples/demo.mid");
        EXPECT_EQ (firstLine (program), line);
        const char* search = "xdotool search --name '^demo.mid 0:0[1-9].*Brimvale - no sound' >/dev/null";
        EXPECT_TRUE (Bench::eventually ([&] { return std::system (search) == 0; }))
            << "songs play without anybody hearing them";
        Neighbour neighbour;
        const std::string title = " - Brimvale - no sound";
        neighbour.close (Bench::isWine ()
                             ? neighbour.find (title, std::string ("brimvale.exe\0brimvale.exe\0", 26))
                             : neighbour.find (title));
        EXPECT_EQ (program.wait (), 0);
    }
}

// The rest needs the sound server, which an ordinary machine for building has not.
class JackTest : public testing::Test
{
protected:
    void SetUp () override
    {
        if (Bench::isWine () || std::system ("command -v jackd >/dev/null") != 0)
            GTEST_SKIP () << "jackd is not installed (Debian package jackd2)";
        setenv ("JACK_DEFAULT_SERVER", name.c_str (), 1);
        startServer ();
    }
    void startServer ()
    {
        server = std::make_unique<ChildProcess> (std::vector<std::string>{
            "sh", "-c", "exec jackd -n " + name + " -r -d dummy -r 48000 -p 256 2>&1" });
        while (!server->readLine ().starts_with ("self-connect-mode"))
            ;
    }

    const std::string name = "brimvale-test-" + std::to_string (getpid ());
    std::unique_ptr<ChildProcess> server;
};

TEST_F (JackTest, NotesComeOut)
{
    struct Listener final : player::AudioSource
    {
        explicit Listener (player::Performer& source) : performer (source) {}
        void render (float* stereo, std::uint32_t frames) override
        {
            performer.render (stereo, frames);
            for (std::uint32_t n = 0; n < 2 * frames; ++n)
                loudest = std::max (loudest.load (), std::abs (stereo[n]));
        }
        player::Performer& performer;
        std::atomic<float> loudest = 0.0f;
    };
    FakeSystem system;
    player::Performer performer (system.services (), {});
    Listener listener (performer);
    ASSERT_TRUE (Bench::eventually (
        []
        { return std::ranges::count (player::AudioOut::devices (), "JACK", &player::Device::system) > 0; }));
    const auto out = player::AudioOut::open ({ .device = { "jack", 0 }, .sampleRate = 0, .period = 0 });
    EXPECT_EQ (out->sampleRate (), 48000u);
    out->start (listener);
    performer.liveEvents ().send ({ 0x90, 60, 100 });
    EXPECT_TRUE (Bench::eventually ([&] { return listener.loudest > 1e-3f; }));
}

TEST_F (JackTest, SongWaitsForTheDeviceToComeBack)
{
    VirtualDisplay display;
    ChildProcess program = start ("--device jack --midi none " SOURCE_FOLDER "/examples/demo.mid");
    const auto showsSoon = [] (const std::string& title)
    {
        const std::string search = "xdotool search --name '" + title + "' >/dev/null";
        return Bench::eventually ([&] { return std::system (search.c_str ()) == 0; });
    };
    EXPECT_TRUE (showsSoon ("^demo.mid 0:0[1-9] / [^(]* - Brimvale($| - the)"));
    server.reset ();
    EXPECT_TRUE (showsSoon ("[(]paused[)] - Brimvale - no sound - the audio device \".*\" has gone$"));
    startServer ();
    EXPECT_TRUE (showsSoon ("^demo.mid 0:[0-9]* / [^(]* - Brimvale - the audio device \".*\" plays now$"));
}
