// The project's own files, read for comparison.
#pragma once

#include "resources/bank/BankSource.h"
#include "tests/host/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

inline std::string bytesOf (const std::string& path)
{
    return contentOf (SOURCE_FOLDER "/" + path);
}

inline std::vector<bank::SourceProgram> factoryPrograms ()
{
    std::ifstream source (SOURCE_FOLDER "/resources/bank/factorybank.txt");
    return bank::readBankSource (source);
}

template <typename Byte>
std::string asString (const std::vector<Byte>& bytes)
{
    return { bytes.begin (), bytes.end () };
}
