// The committed bitmap files, as the tests read them.
#pragma once

#include "resources/panel/BmpFile.h"

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

inline std::vector<std::uint8_t> readResource (const std::string& file)
{
    std::ifstream stream (std::filesystem::path (BRIMVALE_RESOURCES) / file, std::ios::binary);
    return { std::istreambuf_iterator<char> (stream), std::istreambuf_iterator<char> () };
}

inline panel::Image readPicture (int id)
{
    return panel::decodeBmp (readResource (panel::findBitmap (id)->file));
}
