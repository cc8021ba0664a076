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
    auto& out = *static_cast<ReplacementFile*> (encoder->pUserData);
    const bool done = out.write ({ static_cast<const std::byte*> (bytes), count });
    *written = done ? count : 0;
    return done ? MA_SUCCESS : MA_IO_ERROR;
}

// The encoder goes back to the header alone, so that a long is wide enough on every system.
ma_result seekTo (ma_encoder* encoder, ma_int64 offset, ma_seek_origin origin)
{
    auto& out = *static_cast<ReplacementFile*> (encoder->pUserData);
    const int from = origin == ma_seek_origin_start ? SEEK_SET : SEEK_CUR;
    return out.seek (static_cast<long> (offset), from) ? MA_SUCCESS : MA_BAD_SEEK;
}
}

std::uint64_t WavWriter::maxFrames (SampleFormat format)
{
    const std::uint64_t frameBytes = ma_get_bytes_per_frame (encoderFormat (format), channels);
    return (std::numeric_limits<std::uint32_t>::max () - headerBytes) / frameBytes;
}

WavWriter::WavWriter (const std::filesystem::path& file, int sampleRate, SampleFormat newFormat)
    : format (newFormat),
      out (file),
      encoder (std::make_unique<ma_encoder> ())
{
    const ma_encoder_config config = ma_encoder_config_init (ma_encoding_format_wav, encoderFormat (format),
                                                             channels, static_cast<ma_uint32> (sampleRate));
    if (ma_encoder_init (&writeBytes, &seekTo, &out, &config, encoder.get ()) != MA_SUCCESS)
    {
        encoder.reset ();
        out.fail ();
    }
}

WavWriter::~WavWriter ()
{
    if (encoder != nullptr)
        ma_encoder_uninit (encoder.get ());
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
        out.fail ();
}

void WavWriter::finish ()
{
    ma_encoder_uninit (encoder.get ()); // goes back to fill in the sizes
    encoder.reset ();
    out.keep ();
}
}
