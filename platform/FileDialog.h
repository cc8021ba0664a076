#pragma once

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

namespace platform
{
struct FileQuestion
{
    std::string title;                // ASCII, as the next one
    std::string kind;                 // what is looked for: "Brimvale sounds"
    std::vector<std::string> endings; // of its files: ".fxp"; a name without any gets the first one where the
                                      // system's dialog does that
    bool saves = false;               // else the file must exist
    std::filesystem::path start = {}; // folder to begin in, with the name of a new file
};

// The system's own dialog for choosing a file. User-interface thread only.
//
// On Windows it is there until it is answered, and messages go on being handled meanwhile. On Linux it is
// another program (zenity or kdialog) that runs beside the host: who shows it asks for the answer at every
// idle call.
class FileDialog
{
public:
    enum class State
    {
        open,
        chosen,
        dismissed,
        failed // it could not be shown after all
    };

    // Null where the system has none.
    static std::unique_ptr<FileDialog> show (const FileQuestion& question);
    virtual ~FileDialog () = default; // takes it away

    virtual State state () = 0;                        // does not wait
    virtual std::filesystem::path chosen () const = 0; // once the state says so; absolute
};
}
