// The committed picture files, as the tests read them.
#pragma once

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

inline std::filesystem::path resourcePath (const std::string& file)
{
    return std::filesystem::path (BRIMVALE_RESOURCES) / file;
}

inline std::string readResource (const std::string& file)
{
    std::ifstream stream (resourcePath (file), std::ios::binary);
    return { std::istreambuf_iterator<char> (stream), {} };
}
