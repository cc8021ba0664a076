// A file that appears under its name only when it is complete.
#pragma once

#include <cstdio>
#include <filesystem>
#include <span>

namespace host
{
class ReplacementFile
{
public:
    // Makes a file of a name of its own beside the target. Where the target is a link, what it leads to is
    // meant. Throws std::runtime_error, as one sentence, when that is not possible, and when the target is
    // anything but a file or a free name.
    explicit ReplacementFile (const std::filesystem::path& newTarget);
    ~ReplacementFile (); // without keep() before it, nothing is left behind
    ReplacementFile (const ReplacementFile&) = delete;
    ReplacementFile& operator= (const ReplacementFile&) = delete;

    // False after a failure, which keep() tells.
    bool write (std::span<const std::byte> bytes);
    bool seek (long offset, int origin); // SEEK_SET or SEEK_CUR

    // Gives the file its name, in place of an older one, of which it takes the permissions. Throws
    // std::runtime_error with the system's reason when that, or any write before, has failed.
    void keep ();

    // Throws with the reason of the last failure.
    [[noreturn]] void fail () const;

private:
    bool check (bool succeeded);

    std::filesystem::path target;
    std::filesystem::path partial;
    std::FILE* file = nullptr;
    int failure = 0; // errno of the first one
};
}
