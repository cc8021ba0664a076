// How loud a stereo signal is.
#pragma once

#include <cstdint>
#include <memory>
#include <span>

namespace host
{
class LevelMeter
{
public:
    explicit LevelMeter (int sampleRate); // Hz
    ~LevelMeter ();

    void add (std::span<const float> stereo); // left and right in turn

    std::uint64_t frames () const { return frameCount; }
    double peakDecibels () const; // largest sample in dBFS, minus infinity for silence
    double loudness () const;     // integrated, LUFS (ITU-R BS.1770), minus infinity for silence
    std::uint64_t clipped () const { return clippedCount; }     // samples beyond -1..1
    std::uint64_t notFinite () const { return notFiniteCount; } // samples that are no number

private:
    struct Loudness; // the meter library's state

    std::unique_ptr<Loudness> integrated;
    float peak = 0.0f;
    std::uint64_t frameCount = 0;
    std::uint64_t clippedCount = 0;
    std::uint64_t notFiniteCount = 0;
};
}
