// The audio thread allocates nothing, locks nothing and makes no system call while it renders.
#include <mutex>

#include <gtest/gtest.h>
#include <sys/syscall.h>
#include <unistd.h>

#include "tests/render/AudioThreadWatch.h"
#include "tests/support/Signals.h"
#include "tests/support/TestSynth.h"

using namespace parameters;

namespace
{
// Everything that a host does on its audio thread, block after block, with the buffers made before.
class AudioThread
{
public:
    AudioThread ()
    {
        host.hasTime = true;
        host.time.tempo = 120.0;
        host.time.flags = kVstTempoValid | kVstPpqPosValid;
        host.time.samplePos = 44100.0;
        synth = std::make_unique<VstSynth> (FakeHost::callback, host.services ());
        for (const int index : { paramFilterFreq, paramOsc1Wave, paramVoices, paramGlideMono, paramLfoBmpSync,
                                 paramHighQuality })
        {
            synth->setParameter (commandLearn, static_cast<float> (index));
            render (*synth, frames, frames, { { 0, 0xB0, controller++, 64 } });
        }
        host.recordsCalls = false;
        const unsigned char values[] = { 0, 127, 64, 0 };
        unsigned char program = 0;
        for (int n = 0; n < blocks; ++n)
        {
            const auto key = static_cast<unsigned char> (36 + n % 50);
            const unsigned char value = values[n % 4];
            std::vector<TimedMidi> midi = { { 0, 0x90, key, 100 },
                                            { 3, 0x90, static_cast<unsigned char> (key + 7), 90 },
                                            { 20, 0x80, static_cast<unsigned char> (key - 5), 0 },
                                            { 30, 0xE0, 0, value },
                                            { 31, 0xB0, static_cast<unsigned char> (74 + n % 6), value },
                                            { 40, 0xB0, 11, 100 } };
            if (n % 7 == 3)
                midi.push_back ({ 50, 0xC0, program++, 0 });
            if (n % 31 == 30)
                midi.push_back ({ 60, 0xB0, 123, 0 });
            lists.push_back (std::make_unique<HostEventList> (midi));
        }
    }

    void run ()
    {
        for (int n = 0; n < blocks; ++n)
        {
            if (n % 50 == 49)
                synth->setSampleRate (n % 100 == 49 ? 96000.0f : 44100.0f);
            synth->setParameter (n % parameterCount, 0.3f); // automation may come on this thread, too
            synth->processEvents (lists[static_cast<std::size_t> (n)]->get ());
            synth->processReplacing (nullptr, outputs, frames);
            host.time.samplePos += frames;
            host.time.ppqPos += 0.01;
        }
    }

    bool sounded () const { return peakOf (left) > 0.0f; }

private:
    static constexpr int frames = 256;
    static constexpr int blocks = 400;

    unsigned char controller = 74; // the first that is bound
    FakeHost host;
    std::unique_ptr<VstSynth> synth;
    std::vector<std::unique_ptr<HostEventList>> lists;
    std::vector<float> left = std::vector<float> (frames);
    std::vector<float> right = std::vector<float> (frames);
    float* outputs[2] = { left.data (), right.data () };
};

}

TEST (RealTimeTest, RenderingAllocatesAndLocksNothing)
{
    AudioThread thread;
    EXPECT_EQ (callsDuring ([&thread] { thread.run (); }), (Calls{ 0, 0 }));
    EXPECT_TRUE (thread.sounded ());
    const auto both = [] // and the counters count
    {
        std::mutex mutex;
        const auto number = std::make_unique<std::lock_guard<std::mutex>> (mutex);
    };
    EXPECT_EQ (callsDuring (both), (Calls{ 2, 1 }));
}

TEST (RealTimeTest, RenderingMakesNoSystemCall)
{
    AudioThread thread;
    EXPECT_TRUE (livesWithoutSystemCalls ([&thread] { thread.run (); }));
    EXPECT_FALSE (livesWithoutSystemCalls ([] { syscall (SYS_getpid); }));
}
