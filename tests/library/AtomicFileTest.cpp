// Files replaced in one step.
#include "platform/AtomicFile.h"
#include "tests/host/TemporaryFolder.h"

#include <chrono>
#include <gtest/gtest.h>
#include <thread>

namespace
{
bool replace (const std::filesystem::path& path, const std::string& content)
{
    return platform::replaceFile (path, std::as_bytes (std::span (content)));
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
            while (filesIn (folder.folder ()).size () < 2 && contentOf (path) == "older" &&
                   std::chrono::steady_clock::now () < deadline)
                std::this_thread::yield ();
            std::this_thread::sleep_for (std::chrono::milliseconds (100));
            reader.close ();
        });
    EXPECT_TRUE (replace (path, "newer"));
    EXPECT_EQ (contentOf (path), "newer");
}
}
