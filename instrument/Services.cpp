#include "instrument/Services.h"

#include "platform/LibraryPath.h"
#include "platform/UserFolders.h"

namespace instrument
{
namespace
{
std::filesystem::path userBankPath ()
{
    const std::filesystem::path folder = platform::settingsFolder ();
    return folder.empty () ? folder : folder / "Brimvale.bnk";
}
}

Services systemServices (BankPlaces places)
{
    return { platform::makeSettingsStore (), platform::showMessage,
             places == BankPlaces::besideLibraryAndPerUser ? platform::ownLibraryPath : nullptr,
             userBankPath };
}
}
