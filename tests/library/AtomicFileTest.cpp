// Files replaced in one step.
#include "platform/AtomicFile.h"
#include "tests/host/TemporaryFolder.h"

#include <chrono>
#include <fstream>
#include <gtest/gtest.h>
#include <thread>

namespace
{
bool replace (const std::filesystem::path& path, const std::string& content)
{
    return platform::replaceFile (path, std::as_bytes (std::span (content)));
}

std::string contentOf (const std::filesystem::path& path)
{
    std::ifstream file (path, std::ios::binary);
    return { std::istreambuf_iterator<char> (file), {} };
}

std::ptrdiff_t entries (const TemporaryFolder& folder)
{
    using Entries = std::filesystem::directory_iterator;
    return std::distance (Entries (folder.folder ()), Entries ());
}

TEST (AtomicFile, TakesTheNewContentOrLeavesNothingBehind)
{
    const TemporaryFolder folder;
    const auto path = folder / std::filesystem::path (u8"Größe ☃.bnk");
    for (const std::string& content :
         { std::string (23896, '\0'), std::string ("a\nb\r\n\x1A"), std::string () })
    {
        EXPECT_TRUE (replace (path, content));
        EXPECT_EQ (contentOf (path), content);
    }
    std::filesystem::create_directories (folder / "taken" / "inner");
    EXPECT_FALSE (replace (folder / "taken", "news")) << "a folder is in its place";
    EXPECT_FALSE (replace (folder / "none" / "file", "news")) << "there is no such folder";
    EXPECT_TRUE (std::filesystem::exists (folder / "taken" / "inner"));
    EXPECT_EQ (entries (folder), 2) << "a temporary file was left";
}

// Where a file cannot be replaced while somebody reads it, that one is waited for.
TEST (AtomicFile, OutlastsAReader)
{
    const TemporaryFolder folder;
    const auto path = folder / "Brimvale.bnk";
    ASSERT_TRUE (replace (path, "older"));
    std::ifstream reader (path, std::ios::binary);
    std::jthread finish (
        [&] // a moment after the new file lies beside the old one, or has replaced it
        {
            const auto deadline = std::chrono::steady_clock::now () + std::chrono::seconds (30);
            while (entries (folder) < 2 && contentOf (path) == "older" &&
                   std::chrono::steady_clock::now () < deadline)
                std::this_thread::yield ();
            std::this_thread::sleep_for (std::chrono::milliseconds (100));
            reader.close ();
        });
    EXPECT_TRUE (replace (path, "newer"));
    EXPECT_EQ (contentOf (path), "newer");
}
}
