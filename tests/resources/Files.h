// The project's own files, read for comparison.
#pragma once

#include "resources/bank/BankSource.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <string>
#include <vector>

inline std::string bytesOf (const std::string& path)
{
    std::ifstream file (SOURCE_FOLDER "/" + path, std::ios::binary);
    EXPECT_TRUE (file) << "cannot read " << path;
    return { std::istreambuf_iterator<char> (file), {} };
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
