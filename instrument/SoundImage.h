// What stands in a file of sounds, and what a bank becomes by it. Knows no instrument, so that a host can use
// it, too.
#pragma once

#include <optional>
#include <span>

#include "instrument/Bank.h"
#include "presetfile/PresetFile.h"

namespace instrument
{
// Sounds that were read, ready to be handed over as a chunk.
struct LoadedSounds
{
    bool isBank = false;
    BankImage bank;                      // of a bank
    ProgramRecord program;               // of a preset
    std::optional<std::int32_t> current; // program that a bank wants selected, 0..127
};

// Reads a preset or bank file of any of its kinds, or the image of a user default bank. `now` is the bank
// that plays, as a chunk: what files of sounds do not decide stays as it is there (the switches of the
// additions; the bindings, where a file holds plain values). Throws presetfile::ReadError when the file is no
// such file, damaged or of another plug-in.
LoadedSounds soundsIn (std::span<const std::byte> file, const BankImage& now);

// The files, as they are written. `program` is the number of the selected one.
presetfile::Bytes presetFileOf (const ProgramRecord& record);
presetfile::Bytes bankFileOf (const BankImage& bank, std::int32_t program);
presetfile::Bytes defaultBankOf (const BankImage& bank); // the image with nothing in its spare bytes
}
