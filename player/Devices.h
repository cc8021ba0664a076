#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>

namespace player
{
// A sound device or MIDI keyboard that the system knows.
struct Device
{
    std::string name;       // UTF-8
    std::string system;     // the part of the system that it belongs to
    std::string place = {}; // tells those of one name apart, as long as they are there; may be empty

    bool operator== (const Device&) const = default;
};

// Which device somebody wants.
struct DeviceWish
{
    std::string text; // its name or a part of it, in any case, or the name of its system; empty: not told
    std::uint32_t key = 0; // the key of its name, where the text is empty; 0: any

    bool isAny () const { return text.empty () && key == 0; }
};

// A number by which a name is remembered, never 0.
std::uint32_t keyOfName (const std::string& name);

// The first device that fits best: by its whole name, else by a part of it, else by its system.
std::optional<std::size_t> findDevice (std::span<const Device> devices, const DeviceWish& wish);
}
