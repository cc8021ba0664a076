#pragma once

#include <cstddef>
#include <span>

namespace platform
{
// A resource compiled into this library, by type ("WAV", "Bank", "BITMAP") and id; empty when there is
// none. The memory is read-only and stays for the life of the library. Bitmaps start at their info header.
std::span<const std::byte> findResource (const char* type, int id);
}
