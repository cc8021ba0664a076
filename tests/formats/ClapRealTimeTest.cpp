// The audio thread of a CLAP host allocates nothing, locks nothing and makes no system call in the plug-in.
#include <array>

#include <gtest/gtest.h>

#include "formats/shared/ShownParameters.h"
#include "tests/formats/ClapHost.h"
#include "tests/render/AudioThreadWatch.h"
#include "tests/support/Events.h"
#include "tests/support/Signals.h"

using namespace formats;

namespace
{
TEST (ClapRealTime, AllocatesLocksAndCallsNothing)
{
    constexpr int frames = 256;
    ClapHost host;
    host.start (44100.0, frames);
    std::array<ClapEvents, 300> blocks; // with everything that a host may send
    for (int n = 0; n < static_cast<int> (blocks.size ()); ++n)
    {
        ClapEvents& events = blocks[static_cast<std::size_t> (n)];
        events.addValue (0, n % shownCount, n % 3 / 2.0);
        events.addNote (CLAP_EVENT_NOTE_ON, 3, 30 + n % 60, 0.7);
        events.add (midi (9, 0xB0, 64, n % 2 * 127));
        events.add (midi (9, 0xE0, 0, n % 128));
        events.addValue (40, paramLfoBmpSync, n % 2);
        events.addNote (CLAP_EVENT_NOTE_OFF, 90, n % 5 == 0 ? -1 : 30 + n % 60, 0.0);
        if (n % 7 == 0)
            events.add (midi (100, 0xC0, n % 128, 0));
    }
    clap_event_transport_t song = {};
    song.flags = CLAP_TRANSPORT_HAS_TEMPO | CLAP_TRANSPORT_HAS_SECONDS_TIMELINE;
    song.tempo = 120.0;
    std::vector<float> left (frames), right (frames);
    float loudest = 0.0f;
    const auto run = [&]
    {
        for (const ClapEvents& events : blocks)
        {
            host.in = events; // there is room
            host.process (left.data (), right.data (), frames, &song);
            song.song_pos_seconds += CLAP_SECTIME_FACTOR * frames / 44100;
            loudest = std::max (loudest, peakOf (left));
        }
        host.flush ();
        host.plugin->reset (host.plugin);
    };
    EXPECT_EQ (callsDuring (run), (Calls{ 0, 0 }));
    EXPECT_GT (loudest, 0.01f);
    EXPECT_TRUE (livesWithoutSystemCalls (run));
    const clap_ostream_t nowhere = { nullptr, [] (const clap_ostream_t*, const void*, std::uint64_t size)
                                     { return static_cast<std::int64_t> (size); } };
    const auto& state = host.extension<clap_plugin_state_t> (CLAP_EXT_STATE);
    EXPECT_GT (callsDuring ([&] { state.save (host.plugin, &nowhere); }).allocations, 0) << "seen at all";
}
}
