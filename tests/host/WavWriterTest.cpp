#include "host/WavWriter.h"

#include "tests/host/TemporaryFolder.h"

#include <algorithm>
#include <fstream>
#include <gtest/gtest.h>
#include <sndfile.hh>

namespace
{
using namespace host;

const std::vector<float> stereo = { 0.0f, 0.5f, -0.25f, 1.0f, -1.0f, 0.125f, 1.75f, -1.75f };

void write (const std::filesystem::path& file, SampleFormat format)
{
    WavWriter wav (file, 48000, format);
    wav.add (std::span (stereo).first (4));
    wav.add (std::span (stereo).subspan (4));
    wav.finish ();
}

TEST (WavWriter, AnotherReaderFindsWhatWasWritten)
{
    struct Case
    {
        SampleFormat format;
        int subtype;
        float tolerance; // a step of the format
        float largest;
    };
    const Case cases[] = { { SampleFormat::int16, SF_FORMAT_PCM_16, 1.0f / 32768.0f, 1.0f },
                           { SampleFormat::int24, SF_FORMAT_PCM_24, 1.0f / 8388608.0f, 1.0f },
                           { SampleFormat::float32, SF_FORMAT_FLOAT, 0.0f, 2.0f } };
    const TemporaryFolder temporary;
    for (const Case& c : cases)
    {
        const auto file = temporary / "a.wav";
        write (file, c.format);
        SndfileHandle sound (file.string ());
        EXPECT_EQ (sound.format (), SF_FORMAT_WAV | c.subtype);
        EXPECT_EQ (sound.samplerate (), 48000);
        EXPECT_EQ (sound.channels (), 2);
        ASSERT_EQ (sound.frames (), 4);
        std::vector<float> read (stereo.size ());
        sound.readf (read.data (), 4);
        for (std::size_t i = 0; i < read.size (); ++i)
            EXPECT_NEAR (read[i], std::clamp (stereo[i], -c.largest, c.largest), c.tolerance)
                << c.subtype << " " << i;
    }
}

TEST (WavWriter, ReplacesAnOlderFileOnlyWhenItIsComplete)
{
    const TemporaryFolder temporary;
    const auto file = temporary / "a.wav";
    std::ofstream (file) << "older";
    {
        WavWriter abandoned (file, 48000, SampleFormat::int24);
        abandoned.add (stereo);
    }
    EXPECT_EQ (std::filesystem::file_size (file), 5u);
    write (file, SampleFormat::int24);
    EXPECT_EQ (std::filesystem::file_size (file), 44u + 4u * 6u);
    EXPECT_EQ (std::distance (std::filesystem::directory_iterator (temporary.folder ()), {}), 1)
        << "nothing beside it";
}

TEST (WavWriter, RefusesPlacesWhereNoFileCanBe)
{
    const TemporaryFolder temporary;
    EXPECT_THROW (write (temporary / "none" / "a.wav", SampleFormat::int24), std::runtime_error);
    EXPECT_THROW (write (temporary.folder (), SampleFormat::int24), std::runtime_error);
    std::filesystem::create_directory (temporary / "a.wav.part");
    EXPECT_THROW (write (temporary / "a.wav", SampleFormat::int24), std::runtime_error);
}

TEST (WavWriter, SaysWhenTheDiskIsFull)
{
    if (!std::filesystem::exists ("/dev/full"))
        GTEST_SKIP () << "this system has no device that is always full";
    const TemporaryFolder temporary;
    std::filesystem::create_symlink ("/dev/full", temporary / "a.wav.part");
    const auto writeMuch = [&]
    {
        WavWriter wav (temporary / "a.wav", 48000, SampleFormat::float32);
        for (int i = 0; i < 100000; ++i)
            wav.add (stereo);
        wav.finish ();
    };
    EXPECT_THROW (writeMuch (), std::runtime_error);
}

TEST (WavWriter, KnowsHowMuchAFileHolds)
{
    EXPECT_EQ (WavWriter::maxFrames (SampleFormat::int24), (4294967295u - 44u) / 6u);
    EXPECT_EQ (WavWriter::maxFrames (SampleFormat::float32), (4294967295u - 44u) / 8u);
}
}
