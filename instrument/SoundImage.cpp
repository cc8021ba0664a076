#include "instrument/SoundImage.h"

#include <string>

#include "instrument/PluginId.h"

namespace instrument
{
namespace
{
using presetfile::Bytes;
using presetfile::PresetFile;
using presetfile::ReadError;

template <typename Image>
Image imageFrom (std::span<const std::byte> bytes)
{
    Image image;
    if (bytes.size () != sizeof image)
        throw ReadError ("it should hold " + std::to_string (sizeof image) + " bytes of sounds, but " +
                         std::to_string (bytes.size ()) + " are there");
    std::memcpy (&image, bytes.data (), sizeof image);
    return image;
}

template <typename Image>
Bytes bytesFrom (const Image& image)
{
    const auto bytes = std::as_bytes (std::span (&image, 1));
    return { bytes.begin (), bytes.end () };
}

void checkCount (std::int32_t count, std::size_t wanted, const char* what)
{
    if (count != static_cast<std::int32_t> (wanted))
        throw ReadError ("it should hold " + std::to_string (wanted) + ' ' + what + ", but " +
                         std::to_string (count) + " are there");
}

ProgramRecord recordFrom (const presetfile::Program& program)
{
    ProgramRecord record;
    checkCount (static_cast<std::int32_t> (program.values.size ()), record.values.size (),
                "values in each program");
    record.setName (program.name);
    std::copy (program.values.begin (), program.values.end (), record.values.begin ());
    return record;
}

// Parameters that belong to no program stand in each; the selected one's count.
BankImage bankFrom (const PresetFile& file, const BankImage& now)
{
    BankImage bank = now;
    checkCount (file.count, bank.programs.size (), "programs");
    for (std::size_t n = 0; n < bank.programs.size (); ++n)
        bank.programs[n] = recordFrom (file.programs[n]);
    const std::int32_t current = file.currentProgram.value_or (0);
    const ProgramRecord& selected = bank.programs[static_cast<std::size_t> (current)];
    for (std::size_t n = 0; n < bank.slots.size (); ++n)
    {
        if (bank.slots[n].perProgram == 0)
            bank.slots[n].value = selected.values[n];
    }
    return bank;
}

// Spare bytes hold what belongs to a song rather than to its sounds.
void copySpare (const BankImage& from, BankImage& to)
{
    for (std::size_t n = 0; n < to.slots.size (); ++n)
        to.slots[n].spare = from.slots[n].spare;
}
}

LoadedSounds soundsIn (std::span<const std::byte> bytes, const BankImage& now)
{
    LoadedSounds sounds;
    if (!presetfile::isPresetFile (bytes))
    {
        if (bytes.size () != sizeof (BankImage))
            throw ReadError ("it is no preset or bank file");
        sounds.isBank = true;
        sounds.bank = imageFrom<BankImage> (bytes);
        copySpare (now, sounds.bank);
        return sounds;
    }

    PresetFile file = presetfile::parse (bytes);
    if (file.pluginId != pluginId)
        throw ReadError ("it belongs to another plug-in, " + presetfile::quoted (file.pluginId));
    sounds.isBank = file.isBank;
    if (!file.isBank)
    {
        sounds.program =
            file.chunk ? imageFrom<ProgramRecord> (*file.chunk) : recordFrom (file.programs.front ());
        return sounds;
    }
    const auto told = file.currentProgram;
    if (!told || *told < 0 || *told >= programCount)
        file.currentProgram.reset ();
    sounds.bank = file.chunk ? imageFrom<BankImage> (*file.chunk) : bankFrom (file, now);
    sounds.current = file.currentProgram;
    // The chunk knows better than hosts that leave the number in the header 0.
    const std::uint8_t inChunk = file.chunk ? sounds.bank.slots[programSlot].spare : std::uint8_t{ 0 };
    if (inChunk > 0 && inChunk < programCount)
        sounds.current = inChunk;
    copySpare (now, sounds.bank);
    return sounds;
}

Bytes presetFileOf (const ProgramRecord& record)
{
    PresetFile file;
    file.pluginId = pluginId;
    file.pluginVersion = pluginVersion;
    file.count = parameterCount;
    file.name = record.nameView ();
    file.chunk = bytesFrom (record);
    return presetfile::bytesOf (file);
}

Bytes bankFileOf (const BankImage& bank, std::int32_t program)
{
    PresetFile file;
    file.isBank = true;
    file.pluginId = pluginId;
    file.pluginVersion = pluginVersion;
    file.count = programCount;
    file.currentProgram = program;
    file.chunk = bytesFrom (bank);
    return presetfile::bytesOf (file);
}

Bytes defaultBankOf (const BankImage& bank)
{
    BankImage plain = bank;
    for (ParameterSlot& slot : plain.slots)
        slot.spare = 0;
    return bytesFrom (plain);
}
}
