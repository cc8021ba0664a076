// A folder with songs and an instrument, and a shell in it.
#pragma once

#include "midi/Writer.h"
#include "tests/host/TemporaryFolder.h"

#include <cstdio>
#include <gtest/gtest.h>
#include <sys/wait.h>

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
        temporary.write ("song.mid", midi::fileBytes (song));
        song.messages.clear ();
        song.endTick = 0;
        temporary.write ("empty.mid", midi::fileBytes (song));
        std::ofstream (temporary / "text.so") << "no library";
        std::filesystem::copy_file (PROBE_LIBRARY, temporary / "probe.so");
    }

    // Runs in the test's folder.
    Outcome shell (const std::string& command)
    {
        Outcome outcome;
        const std::string there = "exec 2>&1 < /dev/null; cd '" + temporary.folder ().string () + "'; ";
        FILE* pipe = popen ((there + command).c_str (), "r");
        for (int byte = 0; (byte = std::fgetc (pipe)) != EOF;)
            outcome.output.push_back (static_cast<char> (byte));
        const int state = pclose (pipe);
        outcome.status = WIFEXITED (state) ? WEXITSTATUS (state) : -1;
        return outcome;
    }
    Outcome host (const std::string& arguments) { return shell (HOST_PROGRAM " " + arguments); }

    std::set<std::string> files () const { return filesIn (temporary.folder ()); }
    std::string content (const std::string& name) const { return contentOf (temporary / name); }

    // One sentence that says this, a status other than 0, which is answered, and every file as it was.
    int expectRefusal (const std::string& command, const std::string& sentence)
    {
        const auto before = files ();
        const auto [status, output] = shell (command);
        EXPECT_NE (status, 0) << command;
        EXPECT_TRUE (output.starts_with ("brimvale-host: ") || output == sentence) << output;
        EXPECT_NE (output.find (sentence), std::string::npos) << output << "expected: " << sentence;
        EXPECT_EQ (output.find ('\n'), output.size () - 1) << output;
        EXPECT_EQ (files (), before) << command;
        return status;
    }

    TemporaryFolder temporary;
};
