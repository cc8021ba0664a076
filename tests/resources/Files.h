// The project's own files, read for comparison.
#pragma once

#include "resources/bank/BankSource.h"
#include "tests/host/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <functional>
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

// What the error says; empty where there is none.
template <typename Error>
std::string errorOf (const std::function<void ()>& act)
{
    try
    {
        act ();
    }
    catch (const Error& error)
    {
        return error.what ();
    }
    return {};
}

template <typename Byte>
std::string asString (const std::vector<Byte>& bytes)
{
    return { bytes.begin (), bytes.end () };
}
