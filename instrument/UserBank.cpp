#include "instrument/UserBank.h"

#include <fstream>
#include <system_error>

#include "platform/AtomicFile.h"

namespace instrument
{
using platform::Answer;
using platform::Buttons;

// The library's path with its last three characters replaced; ".so" makes room for a dot. Empty when the
// path is not known.
std::filesystem::path UserBank::besideLibrary () const
{
    const std::filesystem::path library =
        services.libraryPath != nullptr ? services.libraryPath () : std::filesystem::path ();
    if (library.extension () == ".so")
        return std::filesystem::path (library).replace_extension (".bnk");
    std::filesystem::path::string_type text = library.native ();
    if (text.size () < 3)
        return {};
    text.resize (text.size () - 3);
    return std::filesystem::path (text) += "bnk";
}

std::filesystem::path UserBank::ofUser () const
{
    return services.userBankPath != nullptr ? services.userBankPath () : std::filesystem::path ();
}

// The file that was written last; empty where there is none. A folder is no bank, and a pipe would keep us
// waiting. The one beside the library goes before one of the same moment.
std::filesystem::path UserBank::newest () const
{
    std::filesystem::path found;
    std::filesystem::file_time_type foundTime;
    for (const std::filesystem::path& file : { besideLibrary (), ofUser () })
    {
        std::error_code failed;
        if (!std::filesystem::is_regular_file (file, failed))
            continue;
        const auto time = std::filesystem::last_write_time (file, failed);
        if (failed || !std::ifstream (file, std::ios::binary))
            continue;
        if (found.empty () || time > foundTime)
        {
            found = file;
            foundTime = time;
        }
    }
    return found;
}

bool UserBank::read (BankImage& image, bool askUser) const
{
    const std::filesystem::path bankFile = newest ();
    std::ifstream file;
    if (!bankFile.empty ())
        file.open (bankFile, std::ios::binary);
    if (!file.is_open ())
        return false;
    if (askUser && services.showMessage ("Reload from User-Default bank? (No = Loads Factory Bank)",
                                         "Warning!", Buttons::yesNo) != Answer::yes)
        return false;

    const std::streamoff size = file.seekg (0, std::ios::end).tellg ();
    if (size < 0)
        services.showMessage ("Can't load file", "error!", Buttons::ok);
    else if (size == sizeof (BankImage))
    {
        BankImage found;
        if (file.seekg (0).read (reinterpret_cast<char*> (&found), sizeof found))
            image = found;
    }
    return true;
}

void UserBank::save (const BankImage& image) const
{
    const auto content = std::as_bytes (std::span (&image, 1));
    const std::filesystem::path beside = besideLibrary ();
    const std::filesystem::path own = ofUser ();
    std::error_code failed;
    if (!own.empty ())
        std::filesystem::create_directories (own.parent_path (), failed);
    const bool besideSaved = !beside.empty () && platform::replaceFile (beside, content);
    const bool ownSaved = !own.empty () && platform::replaceFile (own, content);
    if (besideSaved || ownSaved)
        return;
    if (services.libraryPath != nullptr && beside.empty ())
        services.showMessage ("Could not find proper VST DLL location!", "Error!", Buttons::ok);
    else if (beside.empty () || !own.empty ())
        services.showMessage ("Could not save the user default bank!", "Error!", Buttons::ok);
}
}
