#include "host/LevelMeter.h"

#include <algorithm>
#include <cmath>
#include <ebur128.h>
#include <limits>
#include <new>

namespace host
{
struct LevelMeter::Loudness
{
    explicit Loudness (int sampleRate)
        : state (ebur128_init (2, static_cast<unsigned long> (sampleRate), EBUR128_MODE_I))
    {
        if (state == nullptr)
            throw std::bad_alloc ();
    }
    ~Loudness () { ebur128_destroy (&state); }
    Loudness (const Loudness&) = delete;
    Loudness& operator= (const Loudness&) = delete;

    ebur128_state* state;
};

LevelMeter::LevelMeter (int sampleRate) : integrated (std::make_unique<Loudness> (sampleRate)) {}

LevelMeter::~LevelMeter () = default;

void LevelMeter::add (std::span<const float> stereo)
{
    for (const float sample : stereo)
    {
        if (!std::isfinite (sample))
            ++notFiniteCount;
        else
            peak = std::max (peak, std::abs (sample));
        if (std::abs (sample) > 1.0f)
            ++clippedCount;
    }
    frameCount += stereo.size () / 2;
    ebur128_add_frames_float (integrated->state, stereo.data (), stereo.size () / 2);
}

double LevelMeter::peakDecibels () const
{
    return 20.0 * std::log10 (static_cast<double> (peak));
}

double LevelMeter::loudness () const
{
    double value = -std::numeric_limits<double>::infinity ();
    ebur128_loudness_global (integrated->state, &value);
    return value;
}
}
