#include "host/SoundFiles.h"

#include "host/ReplacementFile.h"
#include "instrument/PluginId.h"
#include "instrument/SoundImage.h"

#include <algorithm>
#include <stdexcept>

namespace host
{
namespace
{
using presetfile::Bytes;
using presetfile::PresetFile;
using presetfile::ReadError;

constexpr std::string_view bareEnd = ".bnk";

Bytes chunkOf (Plugin& plugin, bool preset)
{
    void* data = nullptr;
    const VstIntPtr size = plugin.call (effGetChunk, preset ? 1 : 0, 0, &data);
    if (size <= 0 || data == nullptr)
        throw std::runtime_error ("the instrument gives no sounds");
    const auto* first = static_cast<const std::byte*> (data);
    return { first, first + size };
}

void giveChunk (Plugin& plugin, std::span<const std::byte> chunk, bool preset)
{
    // The interface knows no const; instruments read.
    plugin.call (effSetChunk, preset ? 1 : 0, static_cast<VstIntPtr> (chunk.size ()),
                 const_cast<std::byte*> (chunk.data ()));
}

instrument::BankImage bankOf (Plugin& plugin)
{
    instrument::BankImage image;
    const Bytes chunk = chunkOf (plugin, false);
    if (chunk.size () != sizeof image)
        throw std::runtime_error ("this version of the instrument has banks of another size");
    std::memcpy (&image, chunk.data (), sizeof image);
    return image;
}

// Our own instrument's files have more to say than the interface can, and its banks have one size alone.
void loadOwn (Plugin& plugin, std::span<const std::byte> bytes)
{
    const instrument::LoadedSounds sounds = instrument::soundsIn (bytes, bankOf (plugin));
    if (!sounds.isBank)
    {
        giveChunk (plugin, std::as_bytes (std::span (&sounds.program, 1)), true);
        return;
    }
    giveChunk (plugin, std::as_bytes (std::span (&sounds.bank, 1)), false);
    if (sounds.current)
        plugin.selectProgram (*sounds.current);
}

void giveValues (Plugin& plugin, const presetfile::Program& program)
{
    for (std::size_t n = 0; n < program.values.size (); ++n)
        plugin.setParameter (static_cast<int> (n), program.values[n]);
    plugin.setProgramName (program.name);
}

presetfile::Program valuesOf (Plugin& plugin)
{
    presetfile::Program program{ plugin.programName (plugin.currentProgram ()), {} };
    for (int n = 0; n < plugin.parameterCount (); ++n)
        program.values.push_back (plugin.parameter (n));
    return program;
}

// Walks through all programs and comes back to the one that was selected.
template <typename Visit>
void forEachProgram (Plugin& plugin, Visit visit)
{
    const int selected = plugin.currentProgram ();
    for (int program = 0; program < plugin.programCount (); ++program)
    {
        plugin.selectProgram (program);
        visit (static_cast<std::size_t> (program));
    }
    plugin.selectProgram (selected);
}

PresetFile emptyFile (const Plugin& plugin, bool bank)
{
    PresetFile file;
    file.isBank = bank;
    file.pluginId = plugin.identifier ();
    file.pluginVersion = plugin.version ();
    file.count = bank ? plugin.programCount () : plugin.parameterCount ();
    return file;
}

void write (const std::filesystem::path& file, std::span<const std::byte> bytes)
{
    ReplacementFile out (file);
    out.write (bytes);
    out.keep ();
}
}

SoundFile::SoundFile (const std::filesystem::path& file)
    : bytes (presetfile::readBytes (file)),
      hasHeader (presetfile::isPresetFile (bytes))
{
    if (!hasHeader && file.extension () != bareEnd)
        throw ReadError ("it is no preset or bank file");
    bank = !hasHeader || presetfile::parse (bytes).isBank;
}

void SoundFile::load (Plugin& plugin) const
{
    if (plugin.identifier () == instrument::pluginId)
        loadOwn (plugin, bytes);
    else if (hasHeader)
        loadInto (plugin, presetfile::parse (bytes));
    else if (plugin.keepsChunks ())
        giveChunk (plugin, bytes, false);
    else
        throw ReadError ("the instrument takes no chunks");
}

void SoundFile::loadInto (Plugin& plugin, const PresetFile& file) const
{
    if (file.pluginId != plugin.identifier ())
        throw ReadError ("it belongs to another plug-in, " + presetfile::quoted (file.pluginId));
    if (file.chunk && !plugin.keepsChunks ())
        throw ReadError ("the instrument takes no chunks");
    const auto fits = [&] (const presetfile::Program& program)
    { return program.values.size () == static_cast<std::size_t> (plugin.parameterCount ()); };
    const bool allFit = file.chunk || (std::ranges::all_of (file.programs, fits) &&
                                       (!bank || file.count == plugin.programCount ()));
    if (!allFit)
        throw ReadError ("the instrument has another number of parameters or programs");

    if (file.chunk)
        giveChunk (plugin, *file.chunk, !bank);
    else if (bank)
        forEachProgram (plugin, [&] (std::size_t n) { giveValues (plugin, file.programs[n]); });
    else
        giveValues (plugin, file.programs.front ());
    const int current = file.currentProgram.value_or (-1);
    if (current >= 0 && current < plugin.programCount ())
        plugin.selectProgram (current);
}

void saveProgram (Plugin& plugin, const std::filesystem::path& file)
{
    PresetFile preset = emptyFile (plugin, false);
    preset.name = plugin.programName (plugin.currentProgram ());
    if (plugin.keepsChunks ())
        preset.chunk = chunkOf (plugin, true);
    else
        preset.programs = { valuesOf (plugin) };
    write (file, presetfile::bytesOf (preset));
}

void saveBank (Plugin& plugin, const std::filesystem::path& file)
{
    if (file.extension () == bareEnd)
    {
        const bool own = plugin.identifier () == instrument::pluginId;
        write (file, own ? instrument::defaultBankOf (bankOf (plugin)) : chunkOf (plugin, false));
        return;
    }
    PresetFile all = emptyFile (plugin, true);
    all.currentProgram = plugin.currentProgram ();
    if (plugin.keepsChunks ())
        all.chunk = chunkOf (plugin, false);
    else
        forEachProgram (plugin, [&] (std::size_t) { all.programs.push_back (valuesOf (plugin)); });
    write (file, presetfile::bytesOf (all));
}
}
