#include "host/ChannelStrip.h"

#include <algorithm>

#include "parameters/KnobLaws.h"

namespace host
{
namespace
{
constexpr int controlChange = 0xB0;
constexpr int volumeController = 7;
constexpr int balanceController = 10;
constexpr float middle = 64.0f;
constexpr float toTheSide = 63.0f; // from the middle to 1 or 127; 0 is as far left as 1
}

void ChannelStrip::follow (const std::array<std::uint8_t, 3>& message)
{
    if ((message[0] & 0xF0) != controlChange)
        return;
    const auto value = static_cast<float> (message[2]);
    if (message[1] == volumeController)
        volume = parameters::channelGain (value);
    if (message[1] == balanceController)
    {
        const float place = std::max (-1.0f, (value - middle) / toTheSide);
        leftShare = std::min (1.0f, 1.0f - place);
        rightShare = std::min (1.0f, 1.0f + place);
    }
}
}
