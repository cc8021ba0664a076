// A folder for the files of one test, gone with it.
#pragma once

#include <filesystem>
#include <random>

class TemporaryFolder
{
public:
    TemporaryFolder ()
    {
        std::random_device random;
        do
            path = std::filesystem::temp_directory_path () / ("brimvale-test-" + std::to_string (random ()));
        while (!std::filesystem::create_directories (path));
    }
    ~TemporaryFolder ()
    {
        std::error_code ignored;
        std::filesystem::remove_all (path, ignored);
    }
    TemporaryFolder (const TemporaryFolder&) = delete;
    TemporaryFolder& operator= (const TemporaryFolder&) = delete;

    std::filesystem::path operator/ (const std::filesystem::path& name) const { return path / name; }
    const std::filesystem::path& folder () const { return path; }

private:
    std::filesystem::path path;
};
