#pragma once

#include <cstddef>
#include <filesystem>
#include <span>

namespace platform
{
// Replaces a file's content as one step: readers see the old file or the new one, whatever happens on the
// way. False when that failed (no right to write, no space); an older file is then as it was.
bool replaceFile (const std::filesystem::path& path, std::span<const std::byte> content);
}
