// The meta events that reader and writer both know.
#pragma once

#include <cstdint>

namespace midi
{
enum MetaType : std::uint8_t
{
    metaTrackName = 0x03,
    metaEndOfTrack = 0x2F,
    metaTempo = 0x51,
    metaTimeSignature = 0x58
};
}
