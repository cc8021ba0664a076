#include "engine/PedalAndWheel.h"

#include <algorithm>
#include <limits>
#include <utility>

#include "parameters/KnobLaws.h"

namespace engine
{
namespace
{
constexpr std::uint32_t pedalDownFrom = 64;
constexpr float dataMax = 127.0f;
constexpr int widestRange = 24; // semitones
constexpr double lowestBend = 8192.0;
constexpr double highestBend = 8191.0;

// Controllers that choose what data entry sets: the numbers of a registered parameter, coarse last. The two
// others choose among the parameters of a maker's own, of which there are none.
constexpr std::uint32_t controllerRegisteredFine = 100;
constexpr std::uint32_t controllerRegisteredCoarse = 101;
}

void PedalAndWheel::turnWheel (std::uint32_t data)
{
    vibrato = static_cast<float> (data) / dataMax * parameters::fullWheelPitchDepth;
}

void PedalAndWheel::setVolume (std::uint32_t data)
{
    volumeGain = parameters::channelGain (static_cast<float> (data));
}

void PedalAndWheel::setPedal (std::uint32_t data)
{
    pedalDown = data >= pedalDownFrom;
}

void PedalAndWheel::resetControllers ()
{
    pedalDown = false;
    vibrato = 0.0f;
    numberHigh = none;
    numberLow = none;
}

void PedalAndWheel::chooseParameter (std::uint32_t controller, std::uint32_t data)
{
    if (controller == controllerRegisteredFine)
        numberLow = data;
    else if (controller == controllerRegisteredCoarse)
        numberHigh = data;
    else
        numberHigh = numberLow = none;
}

bool PedalAndWheel::enterData (std::uint32_t data)
{
    if (numberHigh != 0 || numberLow != 0)
        return false;
    rangeSemitones = std::min (static_cast<int> (data), widestRange);
    return true;
}

double PedalAndWheel::bendSemitones (int position) const
{
    return rangeSemitones * (position / (position < 0 ? lowestBend : highestBend));
}

void PedalAndWheel::keep (int key)
{
    std::uint8_t& strokes = kept[static_cast<std::size_t> (key)];
    if (strokes < std::numeric_limits<std::uint8_t>::max ())
        ++strokes;
}

int PedalAndWheel::takeKept (int key)
{
    return std::exchange (kept[static_cast<std::size_t> (key)], std::uint8_t (0));
}

PedalAndWheel::Strokes PedalAndWheel::takeAllKept ()
{
    return std::exchange (kept, {});
}
}
