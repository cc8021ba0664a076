#include "instrument/SoundFile.h"

#include <stdexcept>

#include "instrument/SoundImage.h"
#include "platform/AtomicFile.h"

namespace instrument
{
namespace
{
BankImage bankOf (Instrument& instrument)
{
    BankImage image;
    std::memcpy (&image, instrument.getChunk (false).data (), sizeof image);
    return image;
}

template <typename Image>
void hand (Instrument& instrument, const Image& image)
{
    instrument.setChunk (&image, sizeof image, std::is_same_v<Image, ProgramRecord>);
}

void write (const std::filesystem::path& file, const presetfile::Bytes& bytes)
{
    std::error_code error;
    const auto status = std::filesystem::status (file, error);
    if (std::filesystem::exists (status) && !std::filesystem::is_regular_file (status))
        throw std::runtime_error ("what has that name is no ordinary file");
    if (!std::filesystem::is_directory (std::filesystem::absolute (file, error).parent_path (), error))
        throw std::runtime_error ("its folder does not exist");
    if (!platform::replaceFile (file, bytes))
        throw std::runtime_error ("the system does not let it be written there, or has no space for it");
}
}

void loadSounds (Instrument& instrument, const std::filesystem::path& file)
{
    const LoadedSounds sounds = soundsIn (presetfile::readBytes (file), bankOf (instrument));
    if (!sounds.isBank)
    {
        hand (instrument, sounds.program);
        return;
    }
    hand (instrument, sounds.bank);
    if (sounds.current)
        instrument.setProgram (*sounds.current);
}

void saveProgram (Instrument& instrument, const std::filesystem::path& file)
{
    ProgramRecord record;
    std::memcpy (&record, instrument.getChunk (true).data (), sizeof record);
    write (file, presetFileOf (record));
}

void saveBank (Instrument& instrument, const std::filesystem::path& file)
{
    const BankImage bank = bankOf (instrument);
    write (file, file.extension () == defaultBankExtension ? defaultBankOf (bank)
                                                           : bankFileOf (bank, instrument.getProgram ()));
}

std::string fileNameOf (std::string_view programName)
{
    constexpr std::string_view forbidden = "/\\:*?\"<>|";
    std::string name;
    for (const char character : programName)
    {
        const auto code = static_cast<unsigned char> (character);
        const bool fits = code >= ' ' && code < 0x7F && forbidden.find (character) == std::string_view::npos;
        name += fits ? character : '_';
    }
    name.erase (name.find_last_not_of (" .") + 1); // which Windows drops
    return name.empty () ? "Program" : name;
}
}
