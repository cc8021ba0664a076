// Sounds of an instrument as files: .fxp (a program), .fxb (a bank) and the bare chunk of a bank (.bnk).
#pragma once

#include "host/Plugin.h"
#include "presetfile/PresetFile.h"

#include <filesystem>

namespace host
{
// A file's content, read once for all instruments that take it. Throws as presetfile::readBytes() does.
class SoundFile
{
public:
    explicit SoundFile (const std::filesystem::path& file);

    bool isBank () const { return bank; } // else one program

    // The instrument takes the bank, or the program into its current one. Throws std::runtime_error, as one
    // sentence, when the file is damaged, of another instrument or of a kind that this one does not take;
    // nothing has changed then.
    void load (Plugin& plugin) const;

private:
    void loadInto (Plugin& plugin, const presetfile::PresetFile& file) const;

    presetfile::Bytes bytes;
    bool hasHeader = false;
    bool bank = false;
};

// Both throw std::runtime_error, as one sentence, when the instrument gives nothing or the file cannot be
// written. A bank goes into a file named .bnk as a bare chunk, which Brimvale reads as its user default bank.
void saveProgram (Plugin& plugin, const std::filesystem::path& file);
void saveBank (Plugin& plugin, const std::filesystem::path& file);
}
