// The project's own files, read for comparison.
#pragma once

#include "tools/makeBank/BankSource.h"

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

inline std::vector<makeBank::SourceProgram> factoryPrograms ()
{
    std::ifstream source (SOURCE_FOLDER "/resources/factorybank.txt");
    return makeBank::readBankSource (source);
}

template <typename Byte>
std::string asString (const std::vector<Byte>& bytes)
{
    return { bytes.begin (), bytes.end () };
}
