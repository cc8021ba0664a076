// The committed picture files, as the tests read them.
#pragma once

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

// Below the folder of the pictures; whole paths stay what they are.
inline std::filesystem::path resourcePath (const std::filesystem::path& file)
{
    return std::filesystem::path (BRIMVALE_RESOURCES) / file;
}

inline std::string readResource (const std::filesystem::path& file)
{
    std::ifstream stream (resourcePath (file), std::ios::binary);
    return { std::istreambuf_iterator<char> (stream), {} };
}
