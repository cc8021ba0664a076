// The audio thread of a host allocates nothing, locks nothing and makes no system call in a format's library.
#include <array>
#include <mutex>

#include <dlfcn.h>
#include <gtest/gtest.h>
#include <pthread.h>
#include <sys/syscall.h>
#include <unistd.h>

#include "formats/shared/ShownParameters.h"
#include "tests/formats/FormatHost.h"
#include "tests/support/AudioThreadWatch.h"
#include "tests/support/Events.h"
#include "tests/support/Signals.h"

using namespace formats;
using engine::Event;

TEST (FormatsRealTime, AllocatesLocksAndCallsNothing)
{
    constexpr int frames = 256;
    const auto set = [] (int offset, std::int32_t index, double part)
    { return parameterAt (offset, index, part * shownHighest (index)); };
    // Everything that a host may send: each parameter and controller, bends, notes and more of them than
    // there are voices, programs, the end of all notes.
    std::array<std::array<Event, 8>, 300> blocks;
    for (int n = 0; n < static_cast<int> (blocks.size ()); ++n)
        blocks[static_cast<std::size_t> (n)] = { noteOn (3, 30 + n % 60),
                                                 set (9, n % shownCount, n % 3 / 2.0),
                                                 midi (20, 0xB0, n % 120, n % 2 * 127),
                                                 midi (20, 0xE0, 0, n % 128),
                                                 set (40, paramLfoBmpSync, n % 2),
                                                 noteOff (90, 30 + n * 7 % 60),
                                                 midi (100, 0xB0, n % 31 == 30 ? 123 : 1, n % 100),
                                                 n % 7 == 0 ? midi (110, 0xC0, n % 128, 0)
                                                            : midi (110, 0xD0, n % 128, 0) };
    const auto host = makeHost ();
    host->start (44100.0, frames);
    std::vector<float> left (frames), right (frames);
    float loudest = 0.0f;
    const auto run = [&]
    {
        engine::Transport song = { 44100.0, 133.0, 2.2 };
        for (const auto& events : blocks)
        {
            const auto n = &events - blocks.data ();
            host->hearsChanges = n % 2 == 0;
            host->render (events, n % 50 < 40 ? &song : nullptr, left.data (), right.data (), frames);
            song.samplePosition = n % 60 == 59 ? 0.0 : song.samplePosition + frames;
            song.quarterPosition = song.samplePosition / 44100.0 * *song.tempo / 60.0;
            loudest = std::max (loudest, peakOf (left));
        }
        host->set (paramFilterFreq, 0.5); // without frames
        host->render ({}, nullptr, left.data (), right.data (), 0);
    };
    instrument::BankImage bank = host->bank ();
    std::uint32_t controller = 74;
    for (const int index : { paramFilterFreq, paramOsc1Wave, paramVoices, paramGlideMono, paramHighQuality })
        bank.slots[static_cast<std::size_t> (index)].midiController = controller++;
    const std::string song = host->songOf (std::as_bytes (std::span (&bank, 1)));
    for (const double rate : { 44100.0, 96000.0, 44100.0 }) // and what these and a song leave to do
    {
        EXPECT_EQ (callsDuring (run), (Calls{ 0, 0 })) << rate;
        host->load (song);
        EXPECT_TRUE (livesWithoutSystemCalls (run)) << rate;
        host->stop ();
        host->start (rate, frames);
    }
    EXPECT_GT (loudest, 0.01f);
    EXPECT_GT (callsDuring ([&] { host->load ("no state"); }).allocations, 0) << "seen in the library";
    EXPECT_FALSE (livesWithoutSystemCalls ([] { syscall (SYS_getpid); }));
    EXPECT_EQ (callsDuring ([] { std::scoped_lock lock (*std::make_unique<std::mutex> ()); }),
               (Calls{ 2, 1 }));
    EXPECT_EQ (dlsym (RTLD_DEFAULT, "pthread_mutex_lock"), reinterpret_cast<void*> (&pthread_mutex_lock));
}
