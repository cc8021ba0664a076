#include "player/Devices.h"

#include <algorithm>

namespace player
{
namespace
{
std::string lowered (std::string text)
{
    const auto lower = [] (char c) { return c >= 'A' && c <= 'Z' ? static_cast<char> (c - 'A' + 'a') : c; };
    std::ranges::transform (text, text.begin (), lower);
    return text;
}
}

// FNV-1a.
std::uint32_t keyOfName (const std::string& name)
{
    constexpr std::uint32_t start = 2166136261u;
    constexpr std::uint32_t prime = 16777619u;
    std::uint32_t key = start;
    for (const char character : name)
        key = (key ^ static_cast<unsigned char> (character)) * prime;
    return std::max (key, 1u);
}

std::optional<std::size_t> findDevice (std::span<const Device> devices, const DeviceWish& wish)
{
    const std::string text = lowered (wish.text);
    const auto first = [&] (auto fits) -> std::optional<std::size_t>
    {
        const auto found = std::ranges::find_if (devices, fits);
        return found == devices.end () ? std::nullopt : std::optional<std::size_t> (found - devices.begin ());
    };
    if (text.empty ())
        return first ([&] (const Device& device) { return keyOfName (device.name) == wish.key; });
    if (const auto whole = first ([&] (const Device& device) { return lowered (device.name) == text; }))
        return whole;
    if (const auto part = first ([&] (const Device& device)
                                 { return lowered (device.name).find (text) != std::string::npos; }))
        return part;
    return first ([&] (const Device& device) { return lowered (device.system) == text; });
}
}
