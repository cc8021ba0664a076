#include "host/WavWriter.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <miniaudio.h>
#include <stdexcept>

namespace host
{
namespace
{
constexpr int channels = 2;
constexpr std::uint64_t headerBytes = 44;

ma_format encoderFormat (SampleFormat format)
{
    switch (format)
    {
    case SampleFormat::int16:
        return ma_format_s16;
    case SampleFormat::int24:
        return ma_format_s24;
    case SampleFormat::float32:
        break;
    }
    return ma_format_f32;
}

// Rounds to the nearest step of a signed integer of so many bits and stores it with the low byte first.
void toIntegers (std::span<const float> samples, int bits, std::vector<std::uint8_t>& bytes)
{
    const long fullScale = 1L << (bits - 1);
    bytes.clear ();
    for (const float sample : samples)
    {
        // A sample that is no number becomes 0; the level meter counts those.
        const double finite = std::isfinite (sample) ? sample : 0.0;
        const double limited = std::clamp (finite, -1.0, 1.0) * static_cast<double> (fullScale);
        const long value = std::min (std::lround (limited), fullScale - 1);
        for (int shift = 0; shift < bits; shift += 8)
            bytes.push_back (static_cast<std::uint8_t> (value >> shift));
    }
}

ma_result writeBytes (ma_encoder* encoder, const void* bytes, size_t count, size_t* written)
{
    auto& out = *static_cast<std::ofstream*> (encoder->pUserData);
    out.write (static_cast<const char*> (bytes), static_cast<std::streamsize> (count));
    *written = out ? count : 0;
    return out ? MA_SUCCESS : MA_IO_ERROR;
}

ma_result seekTo (ma_encoder* encoder, ma_int64 offset, ma_seek_origin origin)
{
    auto& out = *static_cast<std::ofstream*> (encoder->pUserData);
    out.seekp (offset, origin == ma_seek_origin_start ? std::ios::beg : std::ios::cur);
    return out ? MA_SUCCESS : MA_BAD_SEEK;
}
}

std::uint64_t WavWriter::maxFrames (SampleFormat format)
{
    const std::uint64_t frameBytes = ma_get_bytes_per_frame (encoderFormat (format), channels);
    return (std::numeric_limits<std::uint32_t>::max () - headerBytes) / frameBytes;
}

WavWriter::WavWriter (const std::filesystem::path& file, int sampleRate, SampleFormat newFormat)
    : target (file),
      partial (file),
      format (newFormat)
{
    partial += ".part";
    const std::filesystem::path folder = std::filesystem::absolute (target).parent_path ();
    if (!std::filesystem::is_directory (folder))
        throw std::runtime_error ("its folder does not exist");
    if (std::filesystem::is_directory (target))
        throw std::runtime_error ("a folder has that name");

    out.open (partial, std::ios::binary | std::ios::trunc);
    encoder = std::make_unique<ma_encoder> ();
    const ma_encoder_config config = ma_encoder_config_init (ma_encoding_format_wav, encoderFormat (format),
                                                             channels, static_cast<ma_uint32> (sampleRate));
    if (!out || ma_encoder_init (&writeBytes, &seekTo, &out, &config, encoder.get ()) != MA_SUCCESS)
    {
        encoder.reset ();
        throw std::runtime_error ("writing in its folder is not allowed");
    }
}

WavWriter::~WavWriter ()
{
    if (encoder == nullptr)
        return;
    ma_encoder_uninit (encoder.get ());
    out.close ();
    std::error_code ignored;
    std::filesystem::remove (partial, ignored);
}

void WavWriter::add (std::span<const float> stereo)
{
    const void* samples = stereo.data ();
    if (format != SampleFormat::float32)
    {
        toIntegers (stereo, format == SampleFormat::int16 ? 16 : 24, converted);
        samples = converted.data ();
    }
    const ma_uint64 frames = stereo.size () / channels;
    ma_uint64 written = 0;
    if (ma_encoder_write_pcm_frames (encoder.get (), samples, frames, &written) != MA_SUCCESS ||
        written != frames)
        fail ();
}

void WavWriter::finish ()
{
    ma_encoder_uninit (encoder.get ()); // goes back to fill in the sizes
    encoder.reset ();
    out.close ();
    std::error_code error;
    if (out)
        std::filesystem::rename (partial, target, error);
    if (!out || error)
        fail ();
}

void WavWriter::fail ()
{
    throw std::runtime_error ("the disk is full or gone");
}
}
