#include "formats/dpf/Base64.h"

#include <algorithm>

namespace dpf
{
namespace
{
constexpr std::string_view alphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
constexpr char filler = '=';
constexpr std::size_t bytesPerGroup = 3, lettersPerGroup = 4;
constexpr unsigned bitsPerLetter = 6, bitsPerByte = 8;
}

std::string toBase64 (std::span<const std::byte> bytes)
{
    std::string text;
    for (; !bytes.empty (); bytes = bytes.subspan (std::min (bytesPerGroup, bytes.size ())))
    {
        unsigned group = 0;
        for (std::size_t n = 0; n < bytesPerGroup; ++n)
            group = group << bitsPerByte | (n < bytes.size () ? std::to_integer<unsigned> (bytes[n]) : 0u);
        for (std::size_t n = 0; n < lettersPerGroup; ++n)
        {
            const unsigned shift = bitsPerLetter * static_cast<unsigned> (lettersPerGroup - 1 - n);
            text += n <= bytes.size () ? alphabet[group >> shift & (alphabet.size () - 1)] : filler;
        }
    }
    return text;
}

std::optional<std::vector<std::byte>> fromBase64 (std::string_view text)
{
    const std::size_t letters = text.find_last_not_of (filler) + 1;
    if (text.size () % lettersPerGroup != 0 || text.size () - letters >= bytesPerGroup)
        return std::nullopt;
    std::vector<std::byte> bytes;
    unsigned bits = 0, waiting = 0;
    for (const char letter : text.substr (0, letters))
    {
        const std::size_t value = alphabet.find (letter);
        if (value == std::string_view::npos)
            return std::nullopt;
        bits = bits << bitsPerLetter | static_cast<unsigned> (value);
        waiting += bitsPerLetter;
        if (waiting < bitsPerByte)
            continue;
        waiting -= bitsPerByte;
        bytes.push_back (static_cast<std::byte> (bits >> waiting));
    }
    return bytes;
}
}
