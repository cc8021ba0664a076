// The bank's way in and out: the factory bank in the library, the user default bank beside it.
#include <fstream>
#include <system_error>

#include "platform/AtomicFile.h"
#include "platform/Resources.h"
#include "plugin/VstSynth.h"

using platform::Answer;
using platform::Buttons;

void VstSynth::loadBank (int resourceId, bool tryUserFile, bool askUser)
{
    if (tryUserFile && readUserBank (askUser))
        return;
    readFactoryBank (resourceId);
}

// The library's path with its last three characters replaced; ".so" makes room for a dot. Empty when the
// path is not known.
std::filesystem::path VstSynth::userBankPath () const
{
    const std::filesystem::path library = services.libraryPath ();
    if (library.extension () == ".so")
        return std::filesystem::path (library).replace_extension (".bnk");
    std::filesystem::path::string_type text = library.native ();
    if (text.size () < 3)
        return {};
    text.resize (text.size () - 3);
    return std::filesystem::path (text) += "bnk";
}

// True when a user default bank was there and taken, even if its size was wrong and nothing was read: the
// factory bank stays away then. That is meant.
bool VstSynth::readUserBank (bool askUser)
{
    const std::filesystem::path path = userBankPath ();
    std::error_code failed;
    if (!std::filesystem::is_regular_file (path, failed)) // a folder is no bank; a pipe would keep us waiting
        return false;
    std::ifstream file (path, std::ios::binary);
    if (!file)
        return false;
    if (askUser && services.showMessage ("Reload from User-Default bank? (No = Loads Factory Bank)",
                                         "Warning!", Buttons::yesNo) != Answer::yes)
        return false;

    const std::streamoff size = file.seekg (0, std::ios::end).tellg ();
    if (size < 0)
        services.showMessage ("Can't load file", "error!", Buttons::ok);
    else if (size == sizeof (BankImage))
    {
        BankImage image;
        if (file.seekg (0).read (reinterpret_cast<char*> (&image), sizeof image))
            bank = image;
    }
    return true;
}

void VstSynth::readFactoryBank (int resourceId)
{
    const std::span<const std::byte> records = platform::findResource ("Bank", resourceId);
    if (records.size () >= factoryBankBytes)
        std::memcpy (bank.programs.data (), records.data (), factoryBankBytes);
}

// A folder that cannot be written is no error: nothing happens, and an older file stays as it was.
void VstSynth::saveUserBank () const
{
    const std::filesystem::path path = userBankPath ();
    if (path.empty ())
        showError ("Could not find proper VST DLL location!");
    else
        platform::replaceFile (path, std::as_bytes (std::span (&bank, 1)));
}
