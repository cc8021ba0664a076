// A folder for the files of one test, gone with it.
#pragma once

#include <filesystem>
#include <fstream>
#include <random>
#include <set>

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
    template <typename Bytes>
    void write (const std::filesystem::path& name, const Bytes& bytes) const
    {
        std::ofstream (path / name, std::ios::binary) << std::string (bytes.begin (), bytes.end ());
    }

private:
    std::filesystem::path path;
};

// What is in a folder, by name.
inline std::set<std::string> filesIn (const std::filesystem::path& folder)
{
    std::set<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator (folder))
        names.insert (entry.path ().filename ().string ());
    return names;
}

inline std::string contentOf (const std::filesystem::path& path)
{
    std::ifstream file (path, std::ios::binary);
    return { std::istreambuf_iterator<char> (file), {} };
}
