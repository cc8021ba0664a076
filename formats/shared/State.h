#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

// What a song keeps of an instrument in every format but VST 2.4: a header of our own and the bank's image as
// VST 2.4 songs hold it, so that one can be made from the other. Any thread.
namespace formats
{
struct State
{
    std::optional<std::int32_t> program; // 0..127; empty where the data does not tell
    std::span<const std::byte> bank;     // an instrument::BankImage, within the data that was read
};

std::vector<std::byte> writeState (std::int32_t program, std::span<const std::byte> bank);

// Takes what writeState gave, or a bare bank image from a VST 2.4 song. Null for anything else: another
// length, another beginning, a later version, or damage on the way.
std::optional<State> readState (std::span<const std::byte> data);
}
