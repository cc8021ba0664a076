// The committed picture files, as the tests read them.
#pragma once

#include "tests/host/TemporaryFolder.h"

// Below the folder of the pictures; whole paths stay what they are.
inline std::filesystem::path resourcePath (const std::filesystem::path& file)
{
    return std::filesystem::path (BRIMVALE_RESOURCES) / file;
}

inline std::string readResource (const std::filesystem::path& file)
{
    return contentOf (resourcePath (file));
}
