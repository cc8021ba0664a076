#include "audition/Measures.h"

#include <ebur128.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <memory>
#include <numeric>
#include <stdexcept>

namespace audition
{
namespace
{
struct MeterDeleter
{
    void operator() (ebur128_state* meter) const { ebur128_destroy (&meter); }
};
using Meter = std::unique_ptr<ebur128_state, MeterDeleter>;

// One channel that counts as two, as both outputs carry the same samples.
Meter makeMeter (int modes)
{
    Meter meter (ebur128_init (1, sampleRate, modes));
    if (!meter)
        throw std::bad_alloc ();
    ebur128_set_channel (meter.get (), 0, EBUR128_DUAL_MONO);
    return meter;
}

double decibelsOfPower (double power)
{
    return 10.0 * std::log10 (std::max (power, 1e-20));
}

double largestMagnitude (Samples audio)
{
    double peak = 0.0;
    for (const float sample : audio)
        peak = std::max (peak, std::abs (static_cast<double> (sample)));
    return peak;
}

// Mean power of each stretch of `length` samples.
std::vector<double> powers (Samples audio, std::size_t length)
{
    std::vector<double> result;
    for (std::size_t start = 0; start + length <= audio.size (); start += length)
    {
        double sum = 0.0;
        for (const float sample : audio.subspan (start, length))
            sum += static_cast<double> (sample) * static_cast<double> (sample);
        result.push_back (sum / static_cast<double> (length));
    }
    return result;
}

// dB below the loudest of them, not less than `floor`.
std::vector<double> relativeDecibels (const std::vector<double>& values, double floor)
{
    const double loudest = decibelsOfPower (*std::ranges::max_element (values));
    std::vector<double> result;
    result.reserve (values.size ());
    for (const double value : values)
        result.push_back (std::max (decibelsOfPower (value) - loudest, floor));
    return result;
}

double rmsDifference (const std::vector<double>& a, const std::vector<double>& b)
{
    const double sum = std::transform_reduce (a.begin (), a.end (), b.begin (), 0.0, std::plus<> (),
                                              [] (double x, double y) { return (x - y) * (x - y); });
    return std::sqrt (sum / static_cast<double> (a.size ()));
}

double melOf (double hz)
{
    return 2595.0 * std::log10 (1.0 + hz / 700.0);
}

constexpr std::size_t bandCount = 40;
constexpr std::size_t bandHop = sampleRate / 20;
constexpr auto heldFrames = static_cast<std::size_t> (heldSeconds * sampleRate / bandHop);

// Power in bands spaced evenly in pitch, 40 for each 50 ms.
std::vector<double> bandPowers (Samples audio)
{
    constexpr double lowestHz = 40.0;
    constexpr double highestHz = 12000.0;
    const double lowestMel = melOf (lowestHz);
    const double bandWidth = (melOf (highestHz) - lowestMel) / static_cast<double> (bandCount);
    std::vector<double> bands;
    for (std::size_t start = 0; start + bandHop <= audio.size (); start += bandHop)
    {
        const std::vector<double> power = powerSpectrum (audio, start);
        std::vector<double> frame (bandCount, 0.0);
        for (std::size_t bin = 1; bin < power.size (); ++bin)
        {
            // Each bin is shared between the two bands whose centres it lies between.
            const double place =
                (melOf (static_cast<double> (bin) * sampleRate / spectrumSize) - lowestMel) / bandWidth - 0.5;
            const double lower = std::floor (place);
            for (const double band : { lower, lower + 1.0 })
            {
                if (band >= 0.0 && band < static_cast<double> (bandCount))
                    frame[static_cast<std::size_t> (band)] += power[bin] * (1.0 - std::abs (place - band));
            }
        }
        bands.insert (bands.end (), frame.begin (), frame.end ());
    }
    return bands;
}

void addTo (std::vector<double>& sum, const std::vector<double>& added)
{
    sum.resize (added.size ());
    std::ranges::transform (sum, added, sum.begin (), std::plus<> ());
}

// Standard deviation of one band's values over the frames.
double spreadOf (const std::vector<double>& frames, std::size_t band)
{
    double sum = 0.0;
    double squares = 0.0;
    for (std::size_t n = band; n < frames.size (); n += bandCount)
    {
        sum += frames[n];
        squares += frames[n] * frames[n];
    }
    const double count = static_cast<double> (frames.size ()) / static_cast<double> (bandCount);
    return std::sqrt (std::max (0.0, squares / count - sum * sum / (count * count)));
}
}

double loudness (Samples audio)
{
    const Meter meter = makeMeter (EBUR128_MODE_M);
    constexpr std::size_t hop = sampleRate / 20;
    double loudest = -std::numeric_limits<double>::infinity ();
    for (std::size_t frame = 0; frame + hop <= audio.size (); frame += hop)
    {
        ebur128_add_frames_float (meter.get (), audio.data () + frame, hop);
        double now = 0.0;
        ebur128_loudness_momentary (meter.get (), &now);
        loudest = std::max (loudest, now);
    }
    return loudest;
}

double integratedLoudness (Samples audio)
{
    const Meter meter = makeMeter (EBUR128_MODE_I);
    ebur128_add_frames_float (meter.get (), audio.data (), audio.size ());
    double level = 0.0;
    ebur128_loudness_global (meter.get (), &level);
    return level;
}

double longestSilence (Samples audio)
{
    constexpr std::size_t window = sampleRate / 100;
    constexpr double silence = 1e-5; // -50 dBFS
    int longest = 0;
    int now = 0;
    for (const double power : powers (audio, window))
    {
        now = power < silence ? now + 1 : 0;
        longest = std::max (longest, now);
    }
    return longest * 0.01;
}

Levels levelsOf (const std::vector<Audio>& takes)
{
    double sum = 0.0;
    double quietest = std::numeric_limits<double>::infinity ();
    double loudest = -quietest;
    for (const Audio& take : takes)
    {
        const double level = loudness (take);
        sum += level;
        quietest = std::min (quietest, level);
        loudest = std::max (loudest, level);
    }
    return { sum / static_cast<double> (takes.size ()), loudest - quietest };
}

double tailBend (Samples audio)
{
    constexpr std::size_t window = sampleRate / 50;
    const std::vector<double> levels = relativeDecibels (powers (audio, window), -60.0);
    const auto loudest = std::ranges::max_element (levels);
    const auto lastAbove = [&] (double decibels)
    {
        const auto found = std::find_if (levels.rbegin (), levels.rend (),
                                         [decibels] (double level) { return level > decibels; });
        return static_cast<double> (found.base () - loudest);
    };
    return lastAbove (-10.0) / lastAbove (-30.0);
}

double inharmonicShare (Samples audio, double hz)
{
    constexpr int size = 65536;
    const std::vector<double> power = powerSpectrum (audio, 0, size);
    const double total = std::accumulate (power.begin (), power.end (), 0.0);
    double harmonic = 0.0;
    const int partials = static_cast<int> (sampleRate / 2.0 / hz);
    for (const double level : partialLevels (audio, hz, partials - 1))
        harmonic += std::pow (10.0, level / 10.0);
    return decibelsOfPower (std::max (0.0, 1.0 - harmonic / total));
}

double truePeak (Samples audio)
{
    const Meter meter = makeMeter (EBUR128_MODE_TRUE_PEAK);
    ebur128_add_frames_float (meter.get (), audio.data (), audio.size ());
    double peak = 0.0;
    ebur128_true_peak (meter.get (), 0, &peak);
    return 20.0 * std::log10 (std::max (peak, 1e-9));
}

double dcShare (Samples audio)
{
    const double peak = largestMagnitude (audio);
    if (peak <= 0.0)
        return 0.0;
    return std::accumulate (audio.begin (), audio.end (), 0.0) / static_cast<double> (audio.size ()) / peak;
}

double secondsToReach (Samples audio, double decibels)
{
    constexpr std::size_t window = sampleRate / 100;
    constexpr std::size_t hop = sampleRate / 1000;
    double loudest = 0.0;
    for (const double power : powers (audio, window))
        loudest = std::max (loudest, power);
    const double wanted = loudest * std::pow (10.0, -decibels / 10.0);
    for (std::size_t end = hop; end <= audio.size (); end += hop)
    {
        const std::size_t start = end > window ? end - window : 0;
        double sum = 0.0;
        for (const float sample : audio.subspan (start, end - start))
            sum += static_cast<double> (sample) * static_cast<double> (sample);
        if (sum / static_cast<double> (window) >= wanted)
            return static_cast<double> (end) / sampleRate;
    }
    return static_cast<double> (audio.size ()) / sampleRate;
}

std::vector<double> partialLevels (Samples audio, double hz, int count)
{
    constexpr int size = 65536;
    constexpr std::size_t halfWidth = 5; // bins on either side: the window's own width and some mistuning
    const std::vector<double> power = powerSpectrum (audio, 0, size);
    std::vector<double> levels;
    for (int partial = 1; partial <= count; ++partial)
    {
        const auto centre = static_cast<std::size_t> (std::lround (partial * hz * size / sampleRate));
        double sum = 0.0;
        for (std::size_t bin = centre - halfWidth; bin <= centre + halfWidth; ++bin)
            sum += power[bin];
        levels.push_back (decibelsOfPower (sum));
    }
    return levels;
}

double sharpestClick (Samples audio)
{
    constexpr double leastStep = 0.01;
    constexpr std::size_t around = sampleRate / 100;
    constexpr std::size_t near = 4; // samples that belong to the step itself
    std::vector<double> steps;
    for (std::size_t n = 1; n < audio.size (); ++n)
        steps.push_back (std::abs (static_cast<double> (audio[n]) - static_cast<double> (audio[n - 1])));
    double sharpest = 0.0;
    for (std::size_t n = around; n + around < steps.size (); ++n)
    {
        if (steps[n] < leastStep)
            continue;
        const auto at = steps.begin () + static_cast<std::ptrdiff_t> (n);
        const double before = *std::max_element (at - around, at - near);
        const double after = *std::max_element (at + near + 1, at + around + 1);
        sharpest = std::max (sharpest, steps[n] / std::max ({ before, after, 1e-4 }));
    }
    return sharpest;
}

double brightness (Samples audio)
{
    double weighted = 0.0;
    double total = 0.0;
    for (std::size_t start = 0; start + spectrumSize <= audio.size (); start += spectrumSize)
    {
        const std::vector<double> power = powerSpectrum (audio, start);
        for (std::size_t bin = 0; bin < power.size (); ++bin)
        {
            weighted += power[bin] * static_cast<double> (bin) * sampleRate / spectrumSize;
            total += power[bin];
        }
    }
    return total > 0.0 ? weighted / total : 0.0;
}

Fingerprint fingerprint (const std::vector<Audio>& takes)
{
    constexpr double bandFloor = -60.0;
    constexpr double levelFloor = -40.0;
    constexpr std::size_t onset = 4; // frames that the attack may take; movement counts from there on

    std::vector<double> bands;
    std::vector<double> levels;
    std::vector<double> movement (bandCount, 0.0);
    for (const Audio& take : takes)
    {
        const std::vector<double> frames = bandPowers (take);
        addTo (bands, frames);
        addTo (levels, powers (take, sampleRate / 50));
        const std::vector<double> held =
            relativeDecibels (std::vector<double> (frames.begin () + onset * bandCount,
                                                   frames.begin () + heldFrames * bandCount),
                              bandFloor);
        for (std::size_t band = 0; band < bandCount; ++band)
            movement[band] += spreadOf (held, band) / static_cast<double> (takes.size ());
    }
    return { relativeDecibels (bands, bandFloor), relativeDecibels (levels, levelFloor), movement };
}

double distance (const Fingerprint& a, const Fingerprint& b)
{
    return rmsDifference (a.bands, b.bands) + rmsDifference (a.levels, b.levels) +
           rmsDifference (a.movement, b.movement);
}
}
