// A stereo WAV file.
#pragma once

#include "host/ReplacementFile.h"

#include <cstdint>
#include <filesystem>
#include <memory>
#include <span>
#include <vector>

struct ma_encoder;

namespace host
{
enum class SampleFormat
{
    int16,
    int24,
    float32
};

class WavWriter
{
public:
    // Most frames that a WAV file's 32-bit sizes can hold.
    static std::uint64_t maxFrames (SampleFormat format);

    // The file appears under its name only with finish(). Throws std::runtime_error, as one sentence, when no
    // file can be there.
    WavWriter (const std::filesystem::path& file, int sampleRate, SampleFormat format);
    ~WavWriter (); // without finish() before it, nothing is left behind
    WavWriter (const WavWriter&) = delete;
    WavWriter& operator= (const WavWriter&) = delete;

    // Left and right in turn. The two integer formats round to the nearest step, without dither, and limit
    // values beyond -1..1. Throws std::runtime_error with the system's reason when the disk takes no more.
    void add (std::span<const float> stereo);

    // Completes the file and gives it its name, in place of an older file of that name. Throws as add() does.
    void finish ();

private:
    SampleFormat format;
    ReplacementFile out;
    std::unique_ptr<ma_encoder> encoder;
    std::vector<std::uint8_t> converted;
};
}
