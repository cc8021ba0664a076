// A dynamic library of the system, loaded for as long as this object lives.
#pragma once

#include <filesystem>

namespace platform
{
class SharedLibrary
{
public:
    // Throws std::runtime_error with the system's reason when the file cannot be loaded.
    explicit SharedLibrary (const std::filesystem::path& file);
    ~SharedLibrary ();
    SharedLibrary (const SharedLibrary&) = delete;
    SharedLibrary& operator= (const SharedLibrary&) = delete;

    // Address of an exported name, null when the library does not export it.
    void* symbol (const char* name) const;

private:
    void* handle = nullptr;
};
}
