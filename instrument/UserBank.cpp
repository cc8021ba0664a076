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
std::filesystem::path UserBank::path () const
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

bool UserBank::read (BankImage& image, bool askUser) const
{
    const std::filesystem::path bankFile = path ();
    std::error_code failed;
    if (!std::filesystem::is_regular_file (bankFile,
                                           failed)) // a folder is no bank; a pipe would keep us waiting
        return false;
    std::ifstream file (bankFile, std::ios::binary);
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
        BankImage found;
        if (file.seekg (0).read (reinterpret_cast<char*> (&found), sizeof found))
            image = found;
    }
    return true;
}

void UserBank::save (const BankImage& image) const
{
    const std::filesystem::path bankFile = path ();
    if (bankFile.empty ())
        services.showMessage ("Could not find proper VST DLL location!", "Error!", Buttons::ok);
    else
        platform::replaceFile (bankFile, std::as_bytes (std::span (&image, 1)));
}
}
