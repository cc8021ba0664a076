#pragma once

#include <cstdint>

namespace instrument
{
// What hosts and their preset files know the instrument by: "Qnrk", the first character in the highest byte.
inline constexpr std::int32_t pluginId = 0x516E726B;
inline constexpr std::int32_t pluginVersion = 1; // as hosts are told it, and write it into their files
}
