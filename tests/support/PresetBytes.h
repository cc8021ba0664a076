// Preset and bank files of VST 2 hosts, laid out byte by byte.
#pragma once

#include <bit>
#include <cstdint>
#include <string>
#include <vector>

inline std::string number (std::uint32_t value)
{
    std::string text;
    for (int shift = 24; shift >= 0; shift -= 8)
        text += static_cast<char> (value >> shift);
    return text;
}

inline std::string field (std::string text, std::size_t size = 28)
{
    text.resize (size, '\0');
    return text;
}

// Something as it lies in memory, and with its size before it.
template <typename Image>
std::string bytes (const Image& image)
{
    return { reinterpret_cast<const char*> (&image), sizeof image };
}
inline std::string chunk (const std::string& content)
{
    return number (static_cast<std::uint32_t> (content.size ())) + content;
}

// A file of a plug-in: its four characters and its version.
inline std::string fileOf (const std::string& plugin, const std::string& kind, std::uint32_t formatVersion,
                           std::uint32_t count, const std::string& rest = {})
{
    return "CcnK" + chunk (kind + number (formatVersion) + plugin + number (count) + rest);
}

inline std::string presetOf (const std::string& plugin, const std::string& name,
                             const std::vector<float>& values)
{
    std::string rest = field (name);
    for (const float value : values)
        rest += number (std::bit_cast<std::uint32_t> (value));
    return fileOf (plugin, "FxCk", 1, static_cast<std::uint32_t> (values.size ()), rest);
}
