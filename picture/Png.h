#pragma once

#include <filesystem>

#include "picture/Picture.h"

namespace picture
{
// PNG files of opaque pictures. Both throw std::runtime_error with the file's name when it cannot be written,
// or read.
void writePng (const Picture& image, const std::filesystem::path& file);
Picture readPng (const std::filesystem::path& file);
}
