// Reads standard MIDI files: formats 0 and 1, plain or wrapped in RIFF.
#pragma once

#include "midi/Song.h"

#include <filesystem>
#include <span>
#include <stdexcept>

namespace midi
{
// Why a file could not be read, as one sentence without the file's name.
class ReadError : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

// Throws ReadError when the bytes are not a MIDI file that can be played from start to end. System exclusive
// messages and the meta events that a Song has no place for are read over.
Song parse (std::span<const std::uint8_t> bytes);

// The same from a file. Throws ReadError also when the file cannot be opened.
Song read (const std::filesystem::path& file);
}
