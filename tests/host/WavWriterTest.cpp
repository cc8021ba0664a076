#include "host/WavWriter.h"

#include "tests/host/TemporaryFolder.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <sndfile.hh>

namespace
{
using namespace host;

const std::vector<float> stereo = { 0.0f, 0.5f, -0.25f, 1.0f, -1.0f, 0.125f, 1.75f, -1.75f };

TEST (WavWriter, AnotherReaderFindsWhatWasWritten)
{
    using Row =
        std::tuple<SampleFormat, float, float, std::uint64_t>; // one step, largest sample, frame's bytes
    for (const auto& [format, step, largest, frameBytes] :
         { Row{ SampleFormat::int16, 1.0f / 32768.0f, 1.0f, 4 },
           Row{ SampleFormat::int24, 1.0f / 8388608.0f, 1.0f, 6 },
           Row{ SampleFormat::float32, 0.0f, 2.0f, 8 } })
    {
        const TemporaryFolder temporary;
        const auto file = temporary / "a.wav";
        WavWriter wav (file, 48000, format);
        wav.add (std::span (stereo).first (4));
        wav.add (std::span (stereo).subspan (4));
        wav.finish ();
        SndfileHandle sound (file.string ());
        ASSERT_EQ (sound.frames (), 4);
        std::vector<float> read (stereo.size ());
        sound.readf (read.data (), 4);
        for (std::size_t i = 0; i < read.size (); ++i)
            EXPECT_NEAR (read[i], std::clamp (stereo[i], -largest, largest), step) << frameBytes << " " << i;
        EXPECT_EQ (WavWriter::maxFrames (format), (4294967295u - 44u) / frameBytes);
    }
}

TEST (WavWriter, TwoAtOnceAndFilesNearbyDoNotDisturbEachOther)
{
    const TemporaryFolder temporary;
    const auto file = temporary / "a.wav";
    std::ofstream (temporary / "a.wav.part") << "somebody's";
    {
        WavWriter tooLate (file, 48000, SampleFormat::int24);
        WavWriter early (file, 48000, SampleFormat::int24);
        WavWriter late (file, 48000, SampleFormat::int24);
        early.add (stereo);
        late.add (std::span (stereo).first (4));
        EXPECT_FALSE (std::filesystem::exists (file)) << "not before it is complete";
        late.finish ();
        EXPECT_EQ (std::filesystem::file_size (file), 44u + 2u * 6u);
        early.finish ();
        EXPECT_EQ (std::filesystem::file_size (file), 44u + 4u * 6u);
        std::filesystem::remove (file);
        std::filesystem::create_directory (file);
        EXPECT_THROW (tooLate.finish (), std::runtime_error) << "a folder was replaced";
    }
    EXPECT_EQ (filesIn (temporary.folder ()), (std::set<std::string>{ "a.wav", "a.wav.part" }));
    EXPECT_EQ (contentOf (temporary / "a.wav.part"), "somebody's");
}
}
