// Builds MIDI files byte by byte for the tests of the host.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <string>
#include <vector>

namespace midiBytes
{
using Bytes = std::vector<std::uint8_t>;

inline Bytes operator+ (Bytes a, const Bytes& b)
{
    a.insert (a.end (), b.begin (), b.end ());
    return a;
}

inline Bytes text (const std::string& characters)
{
    return { characters.begin (), characters.end () };
}

inline Bytes bigEndian (std::uint32_t value, int count)
{
    Bytes bytes;
    for (int shift = 8 * (count - 1); shift >= 0; shift -= 8)
        bytes.push_back (static_cast<std::uint8_t> (value >> shift));
    return bytes;
}

inline Bytes chunk (const std::string& id, const Bytes& contents)
{
    return text (id) + bigEndian (static_cast<std::uint32_t> (contents.size ()), 4) + contents;
}

inline Bytes header (std::uint32_t format, std::uint32_t tracks, std::uint32_t division)
{
    return chunk ("MThd", bigEndian (format, 2) + bigEndian (tracks, 2) + bigEndian (division, 2));
}

inline const Bytes endOfTrack = { 0x00, 0xFF, 0x2F, 0x00 };

inline Bytes track (const Bytes& events)
{
    return chunk ("MTrk", events + endOfTrack);
}
}
