#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

// Bytes as letters, digits, plus and slash, four for every three, filled up with equals signs.
namespace dpf
{
std::string toBase64 (std::span<const std::byte> bytes);

// Null when it is nothing that toBase64 gave.
std::optional<std::vector<std::byte>> fromBase64 (std::string_view text);
}
