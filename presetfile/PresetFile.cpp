#include "presetfile/PresetFile.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <fstream>
#include <string_view>

namespace presetfile
{
namespace
{
// All numbers are big-endian, 32 bits wide.
//
//   0  "CcnK"          12  version of the format       24  parameters of a preset, programs of a bank
//   4  bytes behind 8  16  the plug-in's identifier    28  preset: name (28); bank: reserved (128), which
//   begins 8  kind            20  the plug-in's version           with the current program from version 2 on
//
// Then the size of the chunk and the chunk; or a preset's values; or a bank's presets, whole files each.
constexpr std::string_view magic = "CcnK";
constexpr std::string_view presetOfValues = "FxCk";
constexpr std::string_view presetOfChunk = "FPCh";
constexpr std::string_view bankOfValues = "FxBk";
constexpr std::string_view bankOfChunk = "FBCh";
constexpr std::uint32_t presetVersion = 1; // as written; both are read of either
constexpr std::uint32_t bankVersion = 2;
constexpr std::size_t numberBytes = 4;
constexpr std::size_t nameField = longestName + 1;
constexpr std::size_t reservedField = 128;
constexpr const char* foreign = "it is no preset or bank file";
constexpr const char* truncated = "it ends in the middle of its data";
constexpr std::uintmax_t largestFile = 64 << 20;

class Reader
{
public:
    explicit Reader (std::span<const std::byte> all) : rest (all) {}

    std::size_t left () const { return rest.size (); }
    std::span<const std::byte> block (std::size_t size)
    {
        if (size > rest.size ())
            throw ReadError (truncated);
        const auto taken = rest.first (size);
        rest = rest.subspan (size);
        return taken;
    }
    std::uint32_t number ()
    {
        std::uint32_t value = 0;
        for (const std::byte byte : block (numberBytes))
            value = value << 8 | std::to_integer<std::uint32_t> (byte);
        return value;
    }
    std::string text (std::size_t size)
    {
        const auto taken = block (size);
        return { reinterpret_cast<const char*> (taken.data ()), taken.size () };
    }

private:
    std::span<const std::byte> rest;
};

class Writer
{
public:
    void number (std::uint32_t value)
    {
        for (int shift = 24; shift >= 0; shift -= 8)
            bytes.push_back (static_cast<std::byte> (value >> shift));
    }
    void number (std::int32_t value) { number (static_cast<std::uint32_t> (value)); }
    void block (std::span<const std::byte> added)
    {
        bytes.insert (bytes.end (), added.begin (), added.end ());
    }
    void text (std::string_view text, std::size_t field)
    {
        block (std::as_bytes (std::span (text.substr (0, field))));
        bytes.resize (bytes.size () + field - std::min (field, text.size ()));
    }

    Bytes bytes;
};

void readValues (Reader& in, std::uint32_t count, Program& program)
{
    if (count > in.left () / numberBytes)
        throw ReadError (truncated);
    for (std::uint32_t n = 0; n < count; ++n)
    {
        program.values.push_back (std::bit_cast<float> (in.number ()));
        if (!std::isfinite (program.values.back ()))
            throw ReadError ("a value in it is no number");
    }
}

PresetFile readFile (Reader& in, bool isInBank = false)
{
    if (in.text (magic.size ()) != magic)
        throw ReadError (foreign);
    in.number (); // hosts disagree on what the size counts, and some leave it 0
    const std::string kind = in.text (numberBytes);
    PresetFile file;
    file.isBank = kind == bankOfChunk || kind == bankOfValues;
    if (!file.isBank && kind != presetOfChunk && kind != presetOfValues)
        throw ReadError ("it is neither a preset nor a bank");
    if (isInBank && kind != presetOfValues)
        throw ReadError ("one of its programs is something else");
    const std::uint32_t version = in.number ();
    if (version < 1 || version > 2)
        throw ReadError ("it is of version " + std::to_string (version) +
                         " of its format, and only 1 and 2 are known");
    file.pluginId = static_cast<std::int32_t> (in.number ());
    file.pluginVersion = static_cast<std::int32_t> (in.number ());
    const std::uint32_t count = in.number ();
    file.count = static_cast<std::int32_t> (count);

    if (!file.isBank)
    {
        file.name = in.text (nameField);
        file.name.resize (std::min (file.name.find ('\0'), file.name.size ()));
    }
    else
    {
        Reader reserved (in.block (reservedField));
        if (version > 1)
            file.currentProgram = static_cast<std::int32_t> (reserved.number ());
    }

    if (kind == presetOfChunk || kind == bankOfChunk)
    {
        const auto chunk = in.block (in.number ());
        file.chunk = Bytes (chunk.begin (), chunk.end ());
    }
    else if (!file.isBank)
        readValues (in, count, file.programs.emplace_back (Program{ file.name, {} }));
    for (std::uint32_t n = 0; kind == bankOfValues && n < count; ++n)
    {
        PresetFile preset = readFile (in, true);
        if (preset.pluginId != file.pluginId)
            throw ReadError ("one of its programs is something else");
        file.programs.push_back (std::move (preset.programs.front ()));
    }
    return file;
}
}

std::string quoted (std::int32_t identifier)
{
    std::string text;
    for (int shift = 24; shift >= 0; shift -= 8)
    {
        const int character = identifier >> shift & 0xFF;
        text += static_cast<char> (character > ' ' && character < 0x7F ? character : '?');
    }
    return '"' + text + '"';
}

bool isPresetFile (std::span<const std::byte> bytes)
{
    const auto begin = std::as_bytes (std::span (magic));
    return bytes.size () >= begin.size () && std::ranges::equal (bytes.first (begin.size ()), begin);
}

PresetFile parse (std::span<const std::byte> bytes)
{
    if (bytes.size () < magic.size ())
        throw ReadError (foreign);
    Reader in (bytes);
    return readFile (in);
}

Bytes bytesOf (const PresetFile& file)
{
    Writer body;
    if (file.isBank)
        body.text (file.chunk ? bankOfChunk : bankOfValues, numberBytes);
    else
        body.text (file.chunk ? presetOfChunk : presetOfValues, numberBytes);
    body.number (file.isBank ? bankVersion : presetVersion);
    body.number (file.pluginId);
    body.number (file.pluginVersion);
    body.number (file.count);
    if (file.isBank)
    {
        body.number (file.currentProgram.value_or (0));
        body.text ({}, reservedField - numberBytes);
    }
    else
    {
        body.text (std::string_view (file.name).substr (0, longestName), nameField);
    }

    if (file.chunk)
    {
        body.number (static_cast<std::uint32_t> (file.chunk->size ()));
        body.block (*file.chunk);
    }
    for (const Program& program : file.programs)
    {
        PresetFile preset;
        preset.pluginId = file.pluginId;
        preset.pluginVersion = file.pluginVersion;
        preset.count = static_cast<std::int32_t> (program.values.size ());
        preset.name = program.name;
        if (file.isBank)
        {
            preset.programs = { program };
            body.block (bytesOf (preset));
        }
        else
        {
            for (const float value : program.values)
                body.number (std::bit_cast<std::uint32_t> (value));
        }
    }
    Writer whole;
    whole.text (magic, numberBytes);
    whole.number (static_cast<std::uint32_t> (body.bytes.size ()));
    whole.block (body.bytes);
    return whole.bytes;
}

Bytes readBytes (const std::filesystem::path& file)
{
    std::error_code error;
    if (!std::filesystem::exists (file, error))
        throw ReadError ("there is no such file");
    if (!std::filesystem::is_regular_file (file, error)) // a pipe would keep us waiting
        throw ReadError ("it is not a file");
    const std::uintmax_t size = std::filesystem::file_size (file, error);
    if (error || size > largestFile)
        throw ReadError (error ? "it cannot be read" : "it is too large for a preset or bank file");
    Bytes bytes (static_cast<std::size_t> (size));
    std::ifstream in (file, std::ios::binary);
    if (!in.read (reinterpret_cast<char*> (bytes.data ()), static_cast<std::streamsize> (bytes.size ())))
        throw ReadError ("it cannot be read");
    return bytes;
}
}
