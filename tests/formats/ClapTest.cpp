// What the CLAP library does that no others do.
#include <algorithm>
#include <array>

#include <clap/ext/audio-ports.h>
#include <clap/ext/latency.h>
#include <clap/ext/note-ports.h>
#include <gtest/gtest.h>

#include "formats/shared/ShownParameters.h"
#include "tests/formats/ClapHost.h"
#include "tests/support/Events.h"
#include "tests/support/Signals.h"

using namespace formats;

namespace
{
using Lines = std::vector<std::string>;

class Clap : public testing::Test
{
protected:
    static constexpr int frames = 400;

    void SetUp () override { host.start (48000.0, frames); }

    // One block; what was told.
    Lines play (const ClapEvents& in = {}) { return playIn (host, in); }
    Lines playIn (ClapHost& player, const ClapEvents& in)
    {
        player.in = in;
        player.process (left.data (), right.data (), frames);
        return player.out.told ();
    }
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

TEST_F (Clap, TellsWhatItIs)
{
    EXPECT_STREQ (host.plugin->desc->id, "com.corvanex.brimvale");
    EXPECT_STREQ (host.plugin->desc->features[0], "instrument");
    const auto& audio = host.extension<clap_plugin_audio_ports_t> (CLAP_EXT_AUDIO_PORTS);
    clap_audio_port_info_t output = {};
    EXPECT_EQ (audio.count (host.plugin, false), 1u);
    EXPECT_TRUE (audio.get (host.plugin, 0, false, &output));
    EXPECT_EQ (output.channel_count, 2u);
    const auto& notes = host.extension<clap_plugin_note_ports_t> (CLAP_EXT_NOTE_PORTS);
    clap_note_port_info_t input = {};
    EXPECT_EQ (notes.count (host.plugin, true), 1u);
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
    char text[64] = "";
    double value = 0.5;
    EXPECT_TRUE (host.params ().value_to_text (host.plugin, paramFilterType, 2.0, text, sizeof text));
    EXPECT_STREQ (text, "high-pass");
    EXPECT_TRUE (host.params ().text_to_value (host.plugin, paramFilterType, text, &value));
    EXPECT_EQ (value, 2.0);
    EXPECT_FALSE (host.params ().get_value (host.plugin, 39, &value));
    EXPECT_FALSE (host.params ().text_to_value (host.plugin, paramFilterFreq, "loud", &value));
    EXPECT_EQ (value, 2.0);
}

// What the instrument does not know, and a velocity of 0, which in MIDI would end the note.
TEST_F (Clap, NotesSoundAsInMidiWhateverStandsBetweenThem)
{
    ClapEvents midis;
    for (const engine::Event& event : { noteOn (5), noteOn (9, 64, 1) })
        midis.add (event);
    ClapEvents notes;
    for (const auto type :
         std::initializer_list<std::uint16_t>{ CLAP_EVENT_NOTE_EXPRESSION, CLAP_EVENT_PARAM_MOD, 999 })
        notes.add<clap_event_note_expression_t> (type, 0).value = 0.7;
    notes.addNote (CLAP_EVENT_NOTE_ON, 5, 60, 100 / 127.0);
    notes.add<clap_event_note_t> (CLAP_EVENT_NOTE_ON, 6).header.space_id = 7; // somebody else's
    notes.addNote (CLAP_EVENT_NOTE_ON, 9, 64, 0.0);
    notes.addNote (CLAP_EVENT_NOTE_ON, 20, 128, 1.0);
    const auto expected = soundOf (midis);
    EXPECT_GT (peakOf (expected), 0.0f);
    ClapHost other;
    other.start (48000.0, frames);
    playIn (other, notes);
    EXPECT_EQ (left, expected);
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

    host.render (std::array{ midi (3, 0xC0, 5, 0) }, nullptr, left.data (), right.data (), frames);
    const Lines told = host.out.told ();
    EXPECT_EQ (std::ranges::count (told, "38 = 5.000000"), 1) << told.size ();
    EXPECT_TRUE (
        std::ranges::none_of (told, [] (const std::string& line) { return line.starts_with ("set"); }));
    EXPECT_EQ (play (), Lines ());
    EXPECT_EQ (host.rescans, 0u);
    host.turn ();
    EXPECT_EQ (host.rescans, unsigned{ CLAP_PARAM_RESCAN_TEXT });

    ClapEvents back;
    back.addValue (0, shownProgram, 0);
    const Lines values = play (back); // values of program 0, but not its number
    EXPECT_GT (values.size (), 5u);
    EXPECT_EQ (std::ranges::count (values, "38 = 0.000000"), 0);
    EXPECT_EQ (host.value (paramFilterFreq), 0.25);
}

TEST_F (Clap, AFullListIsContinuedNextTime)
{
    ClapEvents change;
    change.add (midi (0, 0xC0, 90, 0));
    ClapHost other;
    other.start (48000.0, frames);
    const Lines expected = playIn (other, change);
    host.out.most = 4;
    Lines all;
    int blocks = 0;
    for (Lines told = play (change); !told.empty (); told = play (), ++blocks)
        all.insert (all.end (), told.begin (), told.end ());
    EXPECT_GT (blocks, 2);
    EXPECT_EQ (all.size (), expected.size ());
}

TEST_F (Clap, TakesValuesWithoutABlockAndTellsWhenASongHasChangedThem)
{
    host.stop ();
    host.set (shownProgram, 11);
    host.set (paramFilterFreq, 0.125);
    host.flush ();
    EXPECT_EQ (host.value (paramFilterFreq), 0.125);
    const std::string state = host.save ();
    ASSERT_EQ (state.size (), 23916u);
    ClapHost other;
    EXPECT_FALSE (other.take (std::string (5'000'000, 1)));
    EXPECT_EQ (other.rescans, 0u);
    EXPECT_TRUE (other.take (state));
    EXPECT_EQ (other.rescans, unsigned{ CLAP_PARAM_RESCAN_VALUES | CLAP_PARAM_RESCAN_TEXT });
    EXPECT_EQ (other.value (shownProgram), 11.0);
    other.flush ();
    EXPECT_EQ (other.out.told (), Lines ()) << "the host has read it all";
}
}
