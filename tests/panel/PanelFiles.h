// The committed picture files, as the tests read them.
#pragma once

#include <cstddef>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

inline std::filesystem::path resourcePath (const std::string& file)
{
    return std::filesystem::path (BRIMVALE_RESOURCES) / file;
}

inline std::vector<std::byte> readResource (const std::string& file)
{
    std::vector<std::byte> bytes (std::filesystem::file_size (resourcePath (file)));
    std::ifstream (resourcePath (file), std::ios::binary)
        .read (reinterpret_cast<char*> (bytes.data ()), static_cast<std::streamsize> (bytes.size ()));
    return bytes;
}
