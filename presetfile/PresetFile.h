// The files in which VST 2 hosts exchange sounds: .fxp (one program) and .fxb (a bank of programs).
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <span>
#include <stdexcept>
#include <string>
#include <vector>

namespace presetfile
{
// Why a file could not be read, as one sentence without the file's name and without a full stop.
class ReadError : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

using Bytes = std::vector<std::byte>;

inline constexpr std::size_t longestName = 27; // characters of a program's name, its terminator apart

// A program as plain parameter values, 0..1 by the interface's rule.
struct Program
{
    std::string name;
    std::vector<float> values;
};

struct PresetFile
{
    bool isBank = false;
    std::int32_t pluginId = 0; // four characters, the first in the highest byte
    std::int32_t pluginVersion = 1;
    std::int32_t count = 0;                     // of a preset's parameters, of a bank's programs
    std::optional<std::int32_t> currentProgram; // of a bank; files of the first version do not tell
    std::string name;                           // of a preset
    std::optional<Bytes> chunk;                 // what the plug-in handed out; else:
    std::vector<Program> programs;              // one of a preset, `count` of a bank
};

// A plug-in's four characters in quotation marks.
std::string quoted (std::int32_t identifier);

// Whether this begins as such a file does.
bool isPresetFile (std::span<const std::byte> bytes);

// Throws ReadError when the bytes are no such file or too few. What hosts fill in each in its own way is not
// looked at: the file's length as the header tells it, and bytes behind the end.
PresetFile parse (std::span<const std::byte> bytes);

Bytes bytesOf (const PresetFile& file);

// All bytes of a file of any kind, 64 MiB at the most. Throws ReadError.
Bytes readBytes (const std::filesystem::path& file);
}
