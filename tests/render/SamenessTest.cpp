// The same music gives the same samples, however it is cut into blocks and whatever else plays.
#include <gtest/gtest.h>

#include "tests/support/TestSynth.h"

using namespace engine;
using namespace instrument;
using namespace parameters;

namespace
{
// Notes and bends only: what acts per block (volume, program changes, tempo) depends on where blocks begin.
std::vector<TimedMidi> music ()
{
    std::vector<TimedMidi> midi;
    unsigned state = 1;
    const auto below = [&state] (unsigned end)
    {
        state = state * 1664525u + 1013904223u;
        return static_cast<int> ((state >> 8) % end);
    };
    // Offset 0 of a block and 1 are one and the same, so two events never stand side by side there.
    for (int at = 3; at < 30000; at += 5 + below (900))
    {
        const auto key = static_cast<unsigned char> (36 + below (40));
        const auto data = static_cast<unsigned char> (1 + below (127));
        const unsigned char statuses[] = { 0x90, 0x90, 0x80, 0xE0, 0xB0 };
        const unsigned char status = statuses[below (5)];
        midi.push_back ({ at, status, status == 0xB0 ? static_cast<unsigned char> (123) : key, data });
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

// Where a block begins, an event on its first frame comes one sample late, for there is no sample before. So
// the events are laid where every cut leaves them inside a block.
TEST (SamenessTest, BlocksOfAnySizeGiveTheSameSamples)
{
    FakeHost host;
    std::vector<TimedMidi> midi;
    for (TimedMidi event : music ())
    {
        while (event.offset % 7 == 0 || event.offset % 64 == 0)
            ++event.offset;
        midi.push_back (event);
    }
    for (const int program : { 0, 10, 30, 45, 60, 85, 100, 127 })
    {
        const std::vector<float> reference = render (*synthAt (host, 44100.0f, program), 32768, 32768, midi);
        EXPECT_GT (peakOf (reference), 0.01f) << program;
        for (const int size : { 7, 64, 512, 4096 })
            EXPECT_EQ (render (*synthAt (host, 44100.0f, program), 32768, size, midi), reference)
                << "program " << program << " in blocks of " << size;
        // In blocks of one frame all are on the first: one sample late each, and otherwise the same.
        std::vector<TimedMidi> earlier (midi);
        for (TimedMidi& event : earlier)
            --event.offset;
        EXPECT_EQ (render (*synthAt (host, 44100.0f, program), 32768, 1, earlier), reference) << program;
    }
}

TEST (SamenessTest, TwoRendersAreEqual)
{
    FakeHost host;
    for (int program = 0; program < programCount; program += 11)
        EXPECT_EQ (render (*synthAt (host, 48000.0f, program), 20000, 333, music ()),
                   render (*synthAt (host, 48000.0f, program), 20000, 333, music ()))
            << program;
}

TEST (SamenessTest, InstancesDoNotDisturbEachOther)
{
    FakeHost host;
    const std::vector<TimedMidi> chord = { { 1, 0x90, 48, 100 }, { 1, 0x90, 55, 90 }, { 1, 0x90, 64, 80 } };
    const auto alone = [&] (float rate, int program)
    {
        auto synth = synthAt (host, rate, program);
        std::vector<float> sound = render (*synth, 256, 256, chord);
        for (int n = 0; n < 40; ++n)
        {
            const std::vector<float> more = render (*synth, 256, 256);
            sound.insert (sound.end (), more.begin (), more.end ());
        }
        return sound;
    };
    struct Part
    {
        float rate;
        int program;
        std::unique_ptr<VstSynth> synth;
        std::vector<float> sound;
    };
    Part parts[] = { { 44100.0f, 3, nullptr, {} },
                     { 96000.0f, 60, nullptr, {} },
                     { 22050.0f, 90, nullptr, {} } };
    for (Part& part : parts)
        part.synth = synthAt (host, part.rate, part.program);
    for (int n = 0; n < 41; ++n)
    {
        for (Part& part : parts)
        {
            const std::vector<float> more =
                render (*part.synth, 256, 256, n == 0 ? chord : std::vector<TimedMidi> ());
            part.sound.insert (part.sound.end (), more.begin (), more.end ());
        }
    }
    for (const Part& part : parts)
        EXPECT_EQ (part.sound, alone (part.rate, part.program)) << part.program;
}

TEST (SamenessTest, TheOldEntryOverwritesAsTheNewOneDoes)
{
    FakeHost host;
    auto first = synthAt (host, 44100.0f, 0);
    auto second = synthAt (host, 44100.0f, 0);
    EventList list ({ { 1, 0x90, 60, 100 } });
    first->processEvents (list.get ());
    second->processEvents (list.get ());
    std::vector<float> a (500, 5.0f);
    std::vector<float> b (500, -5.0f);
    float* outA[] = { a.data (), a.data () };
    float* outB[] = { b.data (), b.data () };
    first->getAeffect ()->process (first->getAeffect (), nullptr, outA, 500);
    second->getAeffect ()->processReplacing (second->getAeffect (), nullptr, outB, 500);
    EXPECT_EQ (a, b);
    EXPECT_GT (peakOf (a), 0.0f);
    EXPECT_LT (peakOf (a), 5.0f);
}
