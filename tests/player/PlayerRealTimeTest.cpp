// The player's audio thread allocates nothing, locks nothing and makes no system call.
#include <functional>

#include <gtest/gtest.h>

#include "player/Performer.h"
#include "tests/support/AudioThreadWatch.h"
#include "tests/support/FakeSystem.h"
#include "tests/support/Signals.h"

TEST (PlayerRealTime, AllocatesLocksAndCallsNothing)
{
    constexpr std::size_t frames = 480;
    FakeSystem system;
    player::Performer performer (system.services (), { .pedalAndWheel = true, .songLock = true });
    player::SongPlayer& song = performer.songPlayer ();
    song.open (player::readSong (DEMO_SONG, 48000.0, true));

    std::vector<float> stereo (2 * frames);
    float loudest = 0.0f;
    const auto run = [&]
    {
        for (int n = 0; n < 300; ++n)
        {
            for (int key = 0; key < (n % 100 == 99 ? 1000 : 2); ++key) // at times more than fit
                performer.liveEvents ().send ({ 0x90, static_cast<std::uint8_t> ((n + key) % 128), 90 });
            performer.render (stereo.data (), static_cast<std::uint32_t> (frames));
            loudest = std::max (loudest, peakOf (stereo));
        }
    };
    const std::function<void ()> deeds[] = { [&] { song.play (); }, [&] { song.seek (20.0); },
                                             [&] { song.pause (); }, [&] { song.seek (1.0); },
                                             [&] { performer.instrument ().setProgram (9); } };
    for (const auto& deed : deeds)
    {
        SCOPED_TRACE (&deed - deeds);
        deed ();
        EXPECT_TRUE (livesWithoutSystemCalls (run));
        EXPECT_EQ (callsDuring (run), (Calls{ 0, 0 }));
    }
    EXPECT_GT (loudest, 0.01f);
}
