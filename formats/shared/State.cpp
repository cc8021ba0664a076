#include "formats/shared/State.h"

#include <algorithm>
#include <array>
#include <cstring>

#include "instrument/Bank.h"

namespace formats
{
using instrument::BankImage;

namespace
{
// Little-endian, as the image behind it.
struct Header
{
    std::array<char, 8> mark;
    std::uint32_t version;
    std::uint32_t program;
    std::uint32_t checksum; // of the bank
};
static_assert (sizeof (Header) == 20);

constexpr std::array<char, 8> ourMark = { 'B', 'r', 'i', 'm', 'v', 'a', 'l', 'e' };
constexpr std::uint32_t ourVersion = 1;

// FNV-1a.
std::uint32_t checksumOf (std::span<const std::byte> bytes)
{
    std::uint32_t sum = 2166136261u;
    for (const std::byte byte : bytes)
        sum = (sum ^ std::to_integer<std::uint32_t> (byte)) * 16777619u;
    return sum;
}

// A bank has neither mark nor checksum, but each of its flags is 0 or 1, which no other file of this length
// will have at all these places.
bool looksLikeABank (std::span<const std::byte> data)
{
    if (data.size () != sizeof (BankImage))
        return false;
    BankImage image;
    std::memcpy (&image, data.data (), sizeof image);
    return std::ranges::all_of (
        image.slots, [] (const instrument::ParameterSlot& slot)
        { return slot.perProgram < 2 && slot.unclamped < 2 && slot.keptAsDefault < 2; });
}
}

std::vector<std::byte> writeState (std::int32_t program, std::span<const std::byte> bank)
{
    const Header header = { ourMark, ourVersion, static_cast<std::uint32_t> (program), checksumOf (bank) };
    std::vector<std::byte> state (sizeof header + bank.size ());
    std::memcpy (state.data (), &header, sizeof header);
    std::ranges::copy (bank, state.begin () + sizeof header);
    return state;
}

std::optional<State> readState (std::span<const std::byte> data)
{
    if (looksLikeABank (data))
        return State{ std::nullopt, data };
    Header header;
    if (data.size () != sizeof header + sizeof (BankImage))
        return std::nullopt;
    std::memcpy (&header, data.data (), sizeof header);
    const auto bank = data.subspan (sizeof header);
    const bool isOurs = header.mark == ourMark && header.version == ourVersion &&
                        header.program < instrument::programCount && header.checksum == checksumOf (bank);
    if (!isOurs)
        return std::nullopt;
    return State{ static_cast<std::int32_t> (header.program), bank };
}
}
