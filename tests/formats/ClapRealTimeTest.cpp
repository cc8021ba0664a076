// The audio thread of a CLAP host allocates nothing, locks nothing and makes no system call in the plug-in.
#include <array>

#include <gtest/gtest.h>

#include "formats/shared/ShownParameters.h"
#include "tests/formats/ClapHost.h"
#include "tests/render/AudioThreadWatch.h"
#include "tests/support/Signals.h"

using namespace formats;

namespace
{
// Blocks with everything that a host may send, made before the first is processed.
class AudioThread
{
public:
    AudioThread ()
    {
        host.plugin->activate (host.plugin, 44100.0, 1, frames);
        told.makeRoom (1000);
        for (int n = 0; n < static_cast<int> (blocks.size ()); ++n)
        {
            ClapEvents& events = blocks[static_cast<std::size_t> (n)];
            events.addValue (0, static_cast<clap_id> (n % shownCount), n % 3 / 2.0);
            events.addNote (CLAP_EVENT_NOTE_ON, 3, 30 + n % 60, 0.7);
            events.addMidi (9, 0xB0, 64, n % 2 * 127);
            events.addMidi (9, 0xE0, 0, n % 128);
            events.addValue (40, paramLfoBmpSync, n % 2);
            events.addNote (CLAP_EVENT_NOTE_OFF, 90, n % 5 == 0 ? -1 : 30 + n % 60, 0.0);
            if (n % 7 == 0)
                events.addMidi (100, 0xC0, n % 128, 0);
        }
        song.flags = CLAP_TRANSPORT_HAS_TEMPO | CLAP_TRANSPORT_HAS_SECONDS_TIMELINE;
        song.tempo = 120.0;
    }

    void run ()
    {
        const clap_output_events_t output = told.output ();
        float* channels[] = { left.data (), right.data () };
        clap_audio_buffer_t buffer = {};
        buffer.data32 = channels;
        buffer.channel_count = 2;
        clap_process_t process = {};
        process.frames_count = frames;
        process.transport = &song;
        process.audio_outputs = &buffer;
        process.audio_outputs_count = 1;
        process.out_events = &output;
        for (ClapEvents& events : blocks)
        {
            const clap_input_events_t input = events.input ();
            process.in_events = &input;
            told.clear ();
            host.plugin->process (host.plugin, &process);
            song.song_pos_seconds += CLAP_SECTIME_FACTOR * frames / 44100;
            loudest = std::max (loudest, peakOf (left));
        }
        host.params ().flush (host.plugin, nullptr, &output);
        host.plugin->reset (host.plugin);
    }

    float loudest = 0.0f;

private:
    static constexpr int frames = 256;
    ClapHost host;
    std::array<ClapEvents, 300> blocks;
    ClapEvents told;
    clap_event_transport_t song = {};
    std::vector<float> left = std::vector<float> (frames);
    std::vector<float> right = left;
};

TEST (ClapRealTime, AllocatesLocksAndCallsNothing)
{
    AudioThread thread;
    EXPECT_EQ (callsDuring ([&thread] { thread.run (); }), (Calls{ 0, 0 }));
    EXPECT_GT (thread.loudest, 0.01f);
    EXPECT_TRUE (livesWithoutSystemCalls ([&thread] { thread.run (); }));
    ClapHost host; // the library's own calls are seen
    const clap_ostream_t nowhere = { nullptr, [] (const clap_ostream_t*, const void*, std::uint64_t size)
                                     { return static_cast<std::int64_t> (size); } };
    const auto& state = host.extension<clap_plugin_state_t> (CLAP_EXT_STATE);
    EXPECT_GT (callsDuring ([&] { state.save (host.plugin, &nowhere); }).allocations, 0);
}
}
