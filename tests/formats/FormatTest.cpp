// What the libraries of all formats but VST 2.4 have in common, one with each test program.
#include <array>

#include <gtest/gtest.h>

#include "formats/shared/ShownParameters.h"
#include "tests/formats/FormatHost.h"
#include "tests/support/Events.h"
#include "tests/support/PresetBytes.h"
#include "tests/support/Signals.h"

using namespace formats;

namespace
{
constexpr int blockFrames = 256;

std::vector<float> play (FormatHost& host, std::span<const engine::Event> events, int length = blockFrames)
{
    std::vector<float> left (static_cast<std::size_t> (length)), right = left;
    host.render (events, nullptr, left.data (), right.data (), length);
    return left;
}

std::unique_ptr<FormatHost> started ()
{
    auto host = makeHost ();
    host->start (44100.0, 1024);
    return host;
}

// What a song is loaded with must survive what its host then does.
TEST (Formats, ASongComesBackAsItWas)
{
    const auto host = started ();
    host->hearsChanges = false;
    const std::pair<std::int32_t, double> values[] = {
        { paramFilterFreq, 0.25 }, { paramOsc2Range, 1 }, { shownProgram, 40 }, { paramFilterRez, 0.75 }
    };
    for (const auto& [index, shown] : values)
    {
        host->set (index, shown);
        play (*host, {});
    }
    const engine::Event program[] = { midi (5, 0xC0, 7, 0) };
    play (*host, program); // the ports of LV2 still say 40, 0.25 and 0.75
    const std::string song = host->save ();
    const auto reference = play (*host, std::array{ noteOn (3, 60) }, 1024);

    const auto other = started ();
    other->load (song);
    for (std::int32_t index = 0; index < shownCount; ++index)
        other->set (index, host->value (index));
    play (*other, {});
    EXPECT_EQ (bytes (other->bank ()), bytes (host->bank ()));
    EXPECT_EQ (play (*other, std::array{ noteOn (3, 60) }, 1024), reference);
    EXPECT_GT (peakOf (reference), 0.001f);

    other->set (paramFilterRez, 0.5); // news
    play (*other, {});
    EXPECT_NE (bytes (other->bank ()), bytes (host->bank ()));
}

// Some hosts send values while they do not play, and want to hear what the instrument did, without
// complaints.
TEST (Formats, ValuesCountWithoutFramesAndChangesAreTold)
{
    testing::internal::CaptureStderr ();
    testing::internal::CaptureStdout ();
    const auto host = started ();
    host->set (paramFilterFreq, 0.25);
    play (*host, {}, 0);
    const instrument::BankImage image = host->bank ();
    EXPECT_EQ (image.programs[0].values[paramFilterFreq], 0.25f);
    EXPECT_EQ (host->value (paramFilterFreq), 0.25);

    play (*host, std::array{ midi (5, 0xC0, 7, 0) });
    EXPECT_EQ (host->value (shownProgram), 7.0);
    EXPECT_EQ (host->value (paramFilterFreq),
               static_cast<double> (image.programs[7].values[paramFilterFreq]));
    EXPECT_EQ (testing::internal::GetCapturedStderr (), "");
    EXPECT_EQ (testing::internal::GetCapturedStdout (), "");
}

TEST (Formats, DamagedSongsChangeNothing)
{
    const auto host = started ();
    host->set (shownProgram, 9);
    play (*host, {});
    const std::string song = host->save ();
    std::string changed = song;
    changed[song.size () / 2] ^= 1;
    for (const std::string& damaged : { std::string (), std::string ("no state"), song.substr (0, 200),
                                        song.substr (0, 200) + song.substr (204), changed, song + song })
    {
        host->load (damaged);
        play (*host, {});
        EXPECT_EQ (host->save (), song);
    }
}
}
