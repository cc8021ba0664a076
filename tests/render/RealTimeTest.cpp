// The audio thread allocates nothing, locks nothing and makes no system call while it renders. Linux only:
// the C library's functions are replaced by counting ones, and the kernel is asked to kill a process that
// calls it.
#include <csignal>
#include <cstdlib>
#include <mutex>

#include <dlfcn.h>
#include <linux/seccomp.h>
#include <pthread.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include "tests/support/Signals.h"
#include "tests/support/TestSynth.h"

using namespace parameters;

namespace
{
int allocations = 0; // calls of the allocator, either way
int locks = 0;
}

extern "C"
{
    // The C library's own, under the names that stay when malloc and its kin are replaced.
    // NOLINTBEGIN(bugprone-reserved-identifier)
    void* __libc_malloc (size_t size);
    void* __libc_calloc (size_t count, size_t size);
    void* __libc_memalign (size_t alignment, size_t size);
    void* __libc_realloc (void* memory, size_t size);
    void __libc_free (void* memory);
    // NOLINTEND(bugprone-reserved-identifier)

    void* malloc (size_t size)
    {
        return ++allocations, __libc_malloc (size);
    }
    void* calloc (size_t count, size_t size)
    {
        return ++allocations, __libc_calloc (count, size);
    }
    void* aligned_alloc (size_t alignment, size_t size)
    {
        return ++allocations, __libc_memalign (alignment, size);
    }
    void* realloc (void* memory, size_t size)
    {
        return ++allocations, __libc_realloc (memory, size);
    }
    void free (void* memory)
    {
        ++allocations, __libc_free (memory);
    }

    int pthread_mutex_lock (pthread_mutex_t* mutex)
    {
        using Lock = int (*) (pthread_mutex_t*);
        static const auto real = reinterpret_cast<Lock> (dlsym (RTLD_NEXT, "pthread_mutex_lock"));
        ++locks;
        return real (mutex);
    }
}

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

// Runs `work` in a process of its own that the kernel kills for any call but a plain exit. True when it
// lived.
template <typename Work>
bool livesWithoutSystemCalls (Work work)
{
    const pid_t child = fork ();
    if (child == 0)
    {
        prctl (PR_SET_SECCOMP, SECCOMP_MODE_STRICT);
        work ();
        syscall (SYS_exit, 0);
    }
    int status = 0;
    waitpid (child, &status, 0);
    return WIFEXITED (status) && WEXITSTATUS (status) == 0;
}
}

TEST (RealTimeTest, RenderingAllocatesAndLocksNothing)
{
    AudioThread thread;
    allocations = 0;
    locks = 0;
    thread.run ();
    const int counted[] = { allocations, locks };
    EXPECT_EQ (counted[0], 0);
    EXPECT_EQ (counted[1], 0);
    EXPECT_TRUE (thread.sounded ());
    allocations = locks = 0; // and the counters count
    std::mutex mutex;
    const auto number = std::make_unique<std::lock_guard<std::mutex>> (mutex);
    EXPECT_EQ (std::pair (allocations, locks), std::pair (1, 1));
}

TEST (RealTimeTest, RenderingMakesNoSystemCall)
{
    AudioThread thread;
    EXPECT_TRUE (livesWithoutSystemCalls ([&thread] { thread.run (); }));
    EXPECT_FALSE (livesWithoutSystemCalls ([] { syscall (SYS_getpid); }));
}
