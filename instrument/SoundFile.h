// Sounds as files, for whoever has an instrument: the panel, the player. User-interface thread.
#pragma once

#include <filesystem>
#include <string>

#include "instrument/Instrument.h"

namespace instrument
{
// The ends of their names.
inline constexpr const char* presetExtension = ".fxp";
inline constexpr const char* bankExtension = ".fxb";
inline constexpr const char* defaultBankExtension = ".bnk";

// All three throw std::runtime_error, one sentence without a full stop, when that is not possible; nothing
// has changed then.

// Takes the sounds of a .fxp into the current program, those of a .fxb or .bnk into the whole bank. Additions
// stay switched as they are.
void loadSounds (Instrument& instrument, const std::filesystem::path& file);

// The current program; the whole bank, as the image of a user default bank if the name ends with .bnk. An
// older file is replaced as one step.
void saveProgram (Instrument& instrument, const std::filesystem::path& file);
void saveBank (Instrument& instrument, const std::filesystem::path& file);

// A program's name without what file names cannot hold.
std::string fileNameOf (std::string_view programName);
}
