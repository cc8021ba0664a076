// brimvale-measure: figures of WAV files.
//   brimvale-measure FILE          length, peak, level and loudness
//   brimvale-measure FILE FILE     also the largest difference between the two
#include "host/LevelMeter.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <miniaudio.h>
#include <stdexcept>
#include <string>
#include <vector>

namespace
{
constexpr int differentStatus = 3;

struct Recording
{
    int sampleRate = 0;
    std::vector<float> stereo; // left and right in turn
};

Recording load (const std::string& file)
{
    // Two channels, whatever the file has; its own rate.
    ma_decoder_config config = ma_decoder_config_init (ma_format_f32, 2, 0);
    ma_uint64 frames = 0;
    void* samples = nullptr;
    if (ma_decode_file (file.c_str (), &config, &frames, &samples) != MA_SUCCESS)
        throw std::runtime_error ("cannot read the WAV file " + file);
    Recording recording;
    recording.sampleRate = static_cast<int> (config.sampleRate);
    const auto* first = static_cast<const float*> (samples);
    recording.stereo.assign (first, first + 2 * frames);
    ma_free (samples, nullptr);
    return recording;
}

void printFigures (const std::string& file, const Recording& recording)
{
    host::LevelMeter meter (recording.sampleRate);
    meter.add (recording.stereo);
    double sum = 0.0;
    double squares = 0.0;
    for (const float sample : recording.stereo)
    {
        sum += sample;
        squares += static_cast<double> (sample) * sample;
    }
    const double count = std::max<double> (1.0, static_cast<double> (recording.stereo.size ()));
    std::printf ("%s\n", file.c_str ());
    std::printf ("  length    %.3f s, %llu frames at %d Hz\n",
                 static_cast<double> (meter.frames ()) / recording.sampleRate,
                 static_cast<unsigned long long> (meter.frames ()), recording.sampleRate);
    std::printf ("  peak      %.2f dBFS\n", meter.peakDecibels ());
    std::printf ("  level     %.2f dBFS (RMS)\n", 10.0 * std::log10 (squares / count));
    std::printf ("  mean      %.6f\n", sum / count);
    std::printf ("  loudness  %.1f LUFS\n", meter.loudness ());
    std::printf ("  clipped   %llu samples, no numbers %llu\n",
                 static_cast<unsigned long long> (meter.clipped ()),
                 static_cast<unsigned long long> (meter.notFinite ()));
}

// Largest difference of two samples; a length or rate of its own counts as different whatever the samples
// say.
int compare (const Recording& a, const Recording& b, double tolerance)
{
    const std::size_t common = std::min (a.stereo.size (), b.stereo.size ());
    double largest = 0.0;
    std::size_t place = 0;
    bool comparable = true; // false once a sample is no number
    for (std::size_t i = 0; i < common; ++i)
    {
        const double difference = std::abs (static_cast<double> (a.stereo[i]) - b.stereo[i]);
        comparable = comparable && std::isfinite (difference);
        if (difference > largest)
        {
            largest = difference;
            place = i / 2;
        }
    }
    std::printf ("largest difference %.3g at frame %zu\n", largest, place);
    if (a.sampleRate != b.sampleRate || a.stereo.size () != b.stereo.size ())
    {
        std::printf ("different: rate or length\n");
        return differentStatus;
    }
    if (!comparable || !(largest <= tolerance)) // a tolerance that is no number allows nothing
    {
        std::printf ("different: more than %.3g\n", tolerance);
        return differentStatus;
    }
    std::printf ("the same within %.3g\n", tolerance);
    return 0;
}
}

int main (int argc, char** argv)
{
    CLI::App app ("Figures of WAV files, and the difference of two.", "brimvale-measure");
    std::vector<std::string> files;
    double tolerance = 0.0;
    app.add_option ("FILES", files, "one WAV file, or two to compare")->required ()->expected (1, 2);
    app.add_option ("--tolerance", tolerance,
                    "largest difference that counts as the same (0: bit for bit); exit status 3 above it");
    CLI11_PARSE (app, argc, argv);
    try
    {
        std::vector<Recording> recordings;
        for (const std::string& file : files)
        {
            recordings.push_back (load (file));
            printFigures (file, recordings.back ());
        }
        return recordings.size () == 2 ? compare (recordings[0], recordings[1], tolerance) : 0;
    }
    catch (const std::exception& error)
    {
        std::fprintf (stderr, "brimvale-measure: %s.\n", error.what ());
        return 1;
    }
}
