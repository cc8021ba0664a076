// The CLAP library as its hosts see it.
#include <algorithm>
#include <cstring>

#include <clap/ext/audio-ports.h>
#include <clap/ext/latency.h>
#include <clap/ext/note-ports.h>
#include <gtest/gtest.h>

#include "formats/shared/ShownParameters.h"
#include "tests/formats/ClapHost.h"
#include "tests/support/Signals.h"

using namespace formats;

namespace
{
using Lines = std::vector<std::string>;

class Clap : public testing::Test
{
protected:
    static constexpr int frames = 400;

    void SetUp () override { ASSERT_TRUE (host.plugin->activate (host.plugin, 48000.0, 1, frames)); }

    // One block; what was told.
    Lines play (const ClapEvents& in = {}) { return host.block (in, left.data (), right.data (), frames); }
    std::vector<float> soundOf (const ClapEvents& in)
    {
        host.plugin->reset (host.plugin);
        play (in);
        return left;
    }

    ClapHost host;
    std::vector<float> left = std::vector<float> (frames);
    std::vector<float> right = left;
};

TEST (ClapSound, IsThatOfVst24)
{
    expectTheSameSound ([] { return std::make_unique<ClapInstance> (); });
}

TEST_F (Clap, TellsWhatItIs)
{
    EXPECT_STREQ (host.plugin->desc->id, "com.corvanex.brimvale");
    EXPECT_STREQ (host.plugin->desc->features[0], "instrument");
    const auto& audio = host.extension<clap_plugin_audio_ports_t> (CLAP_EXT_AUDIO_PORTS);
    clap_audio_port_info_t output = {};
    EXPECT_EQ (audio.count (host.plugin, false), 1u);
    EXPECT_EQ (audio.count (host.plugin, true), 0u);
    EXPECT_TRUE (audio.get (host.plugin, 0, false, &output));
    EXPECT_EQ (output.channel_count, 2u);
    const auto& notes = host.extension<clap_plugin_note_ports_t> (CLAP_EXT_NOTE_PORTS);
    clap_note_port_info_t input = {};
    EXPECT_EQ (notes.count (host.plugin, true), 1u);
    EXPECT_FALSE (notes.get (host.plugin, 1, true, &input));
    EXPECT_TRUE (notes.get (host.plugin, 0, true, &input));
    EXPECT_EQ (input.supported_dialects, 3u); // CLAP's own and MIDI
    EXPECT_EQ (host.extension<clap_plugin_latency_t> (CLAP_EXT_LATENCY).get (host.plugin), 0u);
    EXPECT_EQ (host.plugin->get_extension (host.plugin, "no such"), nullptr);
    for (const double rate : { 999.0, 0.0, 2e6 })
        EXPECT_FALSE (host.plugin->activate (host.plugin, rate, 1, 64)) << rate;
}

TEST_F (Clap, ShowsTheParametersWithTexts)
{
    ASSERT_EQ (host.params ().count (host.plugin), 39u);
    const auto info = [this] (clap_id index)
    {
        clap_param_info_t found = {};
        EXPECT_TRUE (host.params ().get_info (host.plugin, index, &found));
        EXPECT_EQ (found.id, index);
        return found;
    };
    EXPECT_STREQ (info (paramVolume).name, "Volume");
    EXPECT_EQ (info (paramVolume).flags, CLAP_PARAM_IS_AUTOMATABLE);
    EXPECT_EQ (info (paramNonUsed).flags, CLAP_PARAM_IS_HIDDEN);
    EXPECT_EQ (info (paramLfoWave).flags, CLAP_PARAM_IS_AUTOMATABLE | CLAP_PARAM_IS_STEPPED);
    EXPECT_EQ (info (paramLfoWave).max_value, 5.0);
    EXPECT_STREQ (info (paramLfoWave).module, "LFO");
    EXPECT_EQ (info (shownProgram).max_value, 127.0);
    EXPECT_EQ (info (paramFilterFreq).default_value, host.value (paramFilterFreq));
    for (clap_id index = 0; index < 39; ++index)
    {
        const clap_param_info_t found = info (index);
        for (int step = 0; step <= 127; ++step)
        {
            const double value =
                found.max_value > 1.0 || (found.flags & CLAP_PARAM_IS_STEPPED) != 0 ? step : step / 127.0;
            if (value > found.max_value)
                break;
            const std::string text = host.text (index, value);
            double back = -1.0;
            ASSERT_TRUE (host.params ().text_to_value (host.plugin, index, text.c_str (), &back)) << text;
            EXPECT_EQ (host.text (index, back), text) << found.name;
        }
    }
    double value = 0.5;
    clap_param_info_t none = {};
    EXPECT_FALSE (host.params ().get_info (host.plugin, 39, &none));
    EXPECT_FALSE (host.params ().get_value (host.plugin, 39, &value));
    EXPECT_FALSE (host.params ().text_to_value (host.plugin, paramFilterFreq, "loud", &value));
    EXPECT_EQ (value, 0.5);
}

// Notes as CLAP has them, among events that the instrument does not know.
TEST_F (Clap, NotesSoundAsInMidi)
{
    ClapEvents midi;
    ClapEvents notes;
    const auto unknown = [&notes] (int offset, std::uint16_t type)
    { notes.add<clap_event_note_expression_t> (type, offset).value = 0.7; };
    midi.addMidi (5, 0x90, 60, 100);
    midi.addMidi (9, 0x90, 64, 1);
    midi.addMidi (200, 0x80, 60, 0);
    unknown (0, CLAP_EVENT_NOTE_EXPRESSION);
    unknown (0, CLAP_EVENT_PARAM_MOD);
    unknown (5, 999);
    notes.addNote (CLAP_EVENT_NOTE_ON, 5, 60, 100 / 127.0);
    notes.add<clap_event_note_t> (CLAP_EVENT_NOTE_ON, 6).header.space_id = 7; // somebody else's
    notes.addNote (CLAP_EVENT_NOTE_ON, 9, 64, 0.0);
    notes.addNote (CLAP_EVENT_NOTE_ON, 20, 128, 1.0);
    notes.addNote (CLAP_EVENT_NOTE_OFF, 200, 60, 0.5);
    const auto expected = soundOf (midi);
    EXPECT_GT (peakOf (expected), 0.0f);
    ClapHost other;
    ASSERT_TRUE (other.plugin->activate (other.plugin, 48000.0, 1, frames));
    other.block (notes, left.data (), right.data (), frames);
    EXPECT_EQ (left, expected);
    EXPECT_EQ (right, expected);
}

TEST_F (Clap, EndsAllNotesAtOnceOrWithTheirRelease)
{
    ClapEvents on;
    on.addNote (CLAP_EVENT_NOTE_ON, 0, 60, 1.0);
    on.addNote (CLAP_EVENT_NOTE_ON, 0, 67, 1.0);
    const auto endsAfter = [&] (std::uint16_t type, int key)
    {
        ClapEvents off;
        off.addNote (type, 0, key, 0.0);
        soundOf (on);
        play (off);
        for (int block = 0; block < 400; ++block) // 3.3 s, longer than this sound's release
            play ();
        return peakOf (left) == 0.0f;
    };
    EXPECT_TRUE (endsAfter (CLAP_EVENT_NOTE_OFF, -1));
    EXPECT_TRUE (endsAfter (CLAP_EVENT_NOTE_CHOKE, -1));
    EXPECT_FALSE (endsAfter (CLAP_EVENT_NOTE_OFF, 60));
    host.plugin->reset (host.plugin);
    play ();
    EXPECT_EQ (peakOf (left), 0.0f);
}

TEST_F (Clap, TellsTheHostWhatItDoesNotKnow)
{
    EXPECT_EQ (play (), Lines ());
    ClapEvents in;
    in.addValue (3, paramFilterFreq, 0.25);
    in.addValue (4, param2ToFilter, 0.49); // the store rule puts it to 0.5
    in.addValue (4, 77, 0.5);
    EXPECT_EQ (play (in), Lines ()) << "its own values are no news";
    EXPECT_EQ (host.value (param2ToFilter), 0.5);

    ClapEvents change;
    change.addMidi (3, 0xC0, 5, 0);
    const Lines told = play (change);
    EXPECT_TRUE (std::ranges::count (told, "value 38 5") == 1) << told.size ();
    EXPECT_TRUE (
        std::ranges::none_of (told, [] (const std::string& line) { return line.ends_with ("live"); }));
    EXPECT_EQ (play (), Lines ());
    EXPECT_EQ (std::exchange (host.rescans, 0), 0u);
    host.turn ();
    EXPECT_EQ (std::exchange (host.rescans, 0),
               static_cast<clap_param_rescan_flags> (CLAP_PARAM_RESCAN_TEXT));

    ClapEvents back;
    back.addValue (0, shownProgram, 0);
    const Lines values = play (back); // values of program 0, but not its number
    EXPECT_GT (values.size (), 5u);
    EXPECT_EQ (std::ranges::count (values, "value 38 0"), 0);
    EXPECT_EQ (host.value (paramFilterFreq), 0.25);

    ClapEvents echo; // a step that is only repeated leaves the knob where the program has it
    const auto before = host.save ();
    echo.addValue (0, paramOsc1Wave, host.value (paramOsc1Wave));
    play (echo);
    EXPECT_EQ (host.flush (echo), Lines ());
    EXPECT_EQ (host.save (), before);
}

TEST_F (Clap, TakesValuesWithoutABlock)
{
    ClapEvents in;
    in.addValue (0, shownProgram, 7);
    in.addValue (0, paramFilterFreq, 0.125);
    host.plugin->deactivate (host.plugin);
    host.flush (in);
    EXPECT_EQ (host.value (shownProgram), 7.0);
    EXPECT_EQ (host.value (paramFilterFreq), 0.125);
    ClapEvents more;
    more.addValue (0, paramFilterFreq, 0.5);
    host.block (more, nullptr, nullptr, 0); // some hosts flush by blocks of nothing
    EXPECT_EQ (host.value (paramFilterFreq), 0.5);
}

TEST_F (Clap, AFullListIsContinuedNextTime)
{
    ClapEvents change;
    change.addMidi (0, 0xC0, 90, 0);
    host.mostTold = 4;
    std::size_t all = 0;
    int blocks = 0;
    for (Lines told = play (change); !told.empty (); told = play ())
    {
        EXPECT_LE (told.size (), 4u);
        all += told.size ();
        ++blocks;
    }
    EXPECT_GT (blocks, 2);
    host.mostTold = 1000;
    ClapHost other;
    ASSERT_TRUE (other.plugin->activate (other.plugin, 48000.0, 1, frames));
    EXPECT_EQ (other.block (change, left.data (), right.data (), frames).size (), all);
}

TEST_F (Clap, KeepsItsStateThroughStreamsInPieces)
{
    ClapEvents in;
    in.addValue (0, shownProgram, 11);
    in.addValue (0, paramFilterFreq, 0.375);
    host.flush (in);
    const auto state = host.save ();
    ASSERT_EQ (state.size (), 23916u);
    EXPECT_EQ (host.save (7), state);
    ClapHost other;
    EXPECT_FALSE (other.load (std::span (state).first (state.size () - 1)));
    EXPECT_FALSE (other.load (std::vector (5'000'000, std::byte{ 1 })));
    EXPECT_EQ (other.value (shownProgram), 0.0);
    EXPECT_EQ (other.rescans, 0u);
    EXPECT_TRUE (other.load (state, 3));
    EXPECT_EQ (other.rescans,
               static_cast<clap_param_rescan_flags> (CLAP_PARAM_RESCAN_VALUES | CLAP_PARAM_RESCAN_TEXT));
    EXPECT_EQ (other.value (shownProgram), 11.0);
    EXPECT_EQ (other.value (paramFilterFreq), 0.375);
    EXPECT_EQ (other.save (), state);
    EXPECT_EQ (other.flush (), Lines ()) << "the host has read it all";
}
}
