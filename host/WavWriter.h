// A stereo WAV file that appears under its name only when it is complete.
#pragma once

#include <cstdint>
#include <filesystem>
#include <fstream>
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

    // Writes beside the given file, under its name with ".part" added. Throws std::runtime_error, as one
    // sentence, when that is not possible.
    WavWriter (const std::filesystem::path& file, int sampleRate, SampleFormat format);
    ~WavWriter (); // without finish() before it, nothing is left behind
    WavWriter (const WavWriter&) = delete;
    WavWriter& operator= (const WavWriter&) = delete;

    // Left and right in turn. The two integer formats round to the nearest step, without dither, and limit
    // values beyond -1..1.
    void add (std::span<const float> stereo);

    // Completes the file and gives it its name, in place of an older file of that name.
    void finish ();

private:
    [[noreturn]] void fail ();

    std::filesystem::path target;
    std::filesystem::path partial;
    SampleFormat format;
    std::ofstream out;
    std::unique_ptr<ma_encoder> encoder;
    std::vector<std::uint8_t> converted;
};
}
