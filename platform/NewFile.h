// Files that are certain to be new.
#pragma once

#include <cstdio>
#include <filesystem>

namespace platform
{
// Creates a file where nothing had its name, and opens it for bytes. Null where that fails, with the reason
// in errno (EEXIST: something has the name).
std::FILE* createNewFile (const std::filesystem::path& path);
}
