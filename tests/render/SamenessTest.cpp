// The same music gives the same samples, however it is cut into blocks.
#include <gtest/gtest.h>

#include "tests/support/Signals.h"
#include "tests/support/TestSynth.h"

namespace
{
// Notes, bends and ends of all notes. Where a block begins, an event on its first frame comes one sample
// late, for there is no sample before; so they lie where no cut below leaves them first.
std::vector<TimedMidi> music ()
{
    std::vector<TimedMidi> midi;
    unsigned state = 1;
    const auto below = [&state] (unsigned end)
    {
        state = state * 1664525u + 1013904223u;
        return static_cast<unsigned char> ((state >> 8) % end);
    };
    for (int at = 3; at < 30000; at += 5 + 4 * below (225))
    {
        while (at % 7 == 0 || at % 64 == 0)
            ++at;
        const unsigned char statuses[] = { 0x90, 0x90, 0x80, 0xE0, 0xB0 };
        const unsigned char status = statuses[below (5)];
        const auto data = static_cast<unsigned char> (status == 0xB0 ? 123 : 36 + below (40));
        midi.push_back ({ at, status, data, static_cast<unsigned char> (1 + below (127)) });
    }
    return midi;
}

std::unique_ptr<VstSynth> synthAt (FakeHost& host, float rate, int program)
{
    auto synth = std::make_unique<VstSynth> (FakeHost::callback, host.services ());
    synth->setSampleRate (rate);
    synth->setProgram (program);
    return synth;
}
}

TEST (SamenessTest, BlocksOfAnySizeGiveTheSameSamples)
{
    FakeHost host;
    for (const int program : { 0, 10, 45, 60, 85, 127 })
    {
        const std::vector<float> reference =
            render (*synthAt (host, 44100.0f, program), 32768, 32768, music ());
        EXPECT_GT (peakOf (reference), 0.01f) << program;
        for (const int size : { 7, 64, 512, 4096 })
            EXPECT_EQ (render (*synthAt (host, 44100.0f, program), 32768, size, music ()), reference)
                << "program " << program << " in blocks of " << size;
        std::vector<TimedMidi> earlier = music (); // in blocks of one frame all are first
        for (TimedMidi& event : earlier)
            --event.offset;
        EXPECT_EQ (render (*synthAt (host, 44100.0f, program), 32768, 1, earlier), reference) << program;
    }
}
