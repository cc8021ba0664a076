#include "host/WavWriter.h"

#include "tests/host/TemporaryFolder.h"

#include <algorithm>
#include <fstream>
#include <gtest/gtest.h>
#include <set>
#include <sndfile.hh>

namespace
{
using namespace host;
using Names = std::set<std::string>;

const std::vector<float> stereo = { 0.0f, 0.5f, -0.25f, 1.0f, -1.0f, 0.125f, 1.75f, -1.75f };

Names filesIn (const TemporaryFolder& temporary)
{
    Names names;
    for (const auto& entry : std::filesystem::directory_iterator (temporary.folder ()))
        names.insert (entry.path ().filename ().string ());
    return names;
}

TEST (WavWriter, AnotherReaderFindsWhatWasWritten)
{
    struct Case
    {
        SampleFormat format;
        float tolerance; // a step of the format
        float largest;
        std::uint64_t frameBytes;
    };
    const Case cases[] = { { SampleFormat::int16, 1.0f / 32768.0f, 1.0f, 4 },
                           { SampleFormat::int24, 1.0f / 8388608.0f, 1.0f, 6 },
                           { SampleFormat::float32, 0.0f, 2.0f, 8 } };
    const TemporaryFolder temporary;
    for (const Case& c : cases)
    {
        const auto file = temporary / "a.wav";
        WavWriter wav (file, 48000, c.format);
        wav.add (std::span (stereo).first (4));
        wav.add (std::span (stereo).subspan (4));
        wav.finish ();
        SndfileHandle sound (file.string ());
        ASSERT_EQ (sound.frames (), 4);
        std::vector<float> read (stereo.size ());
        sound.readf (read.data (), 4);
        for (std::size_t i = 0; i < read.size (); ++i)
            EXPECT_NEAR (read[i], std::clamp (stereo[i], -c.largest, c.largest), c.tolerance)
                << c.frameBytes << " " << i;
        EXPECT_EQ (WavWriter::maxFrames (c.format), (4294967295u - 44u) / c.frameBytes);
    }
}

TEST (WavWriter, TwoAtOnceAndFilesNearbyDoNotDisturbEachOther)
{
    const TemporaryFolder temporary;
    const auto file = temporary / "a.wav";
    std::ofstream (temporary / "a.wav.part") << "somebody's";
    {
        WavWriter abandoned (file, 48000, SampleFormat::int24);
        WavWriter early (file, 48000, SampleFormat::int24);
        WavWriter late (file, 48000, SampleFormat::int24);
        early.add (stereo);
        late.add (std::span (stereo).first (4));
        abandoned.add (stereo);
        EXPECT_FALSE (std::filesystem::exists (file)) << "not before it is complete";
        late.finish ();
        EXPECT_EQ (std::filesystem::file_size (file), 44u + 2u * 6u);
        early.finish ();
    }
    EXPECT_EQ (std::filesystem::file_size (file), 44u + 4u * 6u);
    EXPECT_EQ (filesIn (temporary), (Names{ "a.wav", "a.wav.part" }));
    EXPECT_EQ (std::filesystem::file_size (temporary / "a.wav.part"), 10u);
}

TEST (WavWriter, SaysWhyTheFileCannotHaveItsName)
{
    const TemporaryFolder temporary;
    try
    {
        WavWriter wav (temporary / "a.wav", 48000, SampleFormat::int24);
        std::filesystem::create_directory (temporary / "a.wav");
        wav.finish ();
        ADD_FAILURE () << "a folder was replaced";
    }
    catch (const std::runtime_error& error)
    {
        EXPECT_STREQ (error.what (), "Is a directory");
    }
    EXPECT_EQ (filesIn (temporary), Names{ "a.wav" });
}
}
