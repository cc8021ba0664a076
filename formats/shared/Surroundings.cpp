#include "formats/shared/Surroundings.h"

#include <system_error>

#include "platform/UserFolder.h"

namespace formats
{
instrument::Services surroundings ()
{
    instrument::Services services = instrument::systemServices ();
    services.libraryPath = [] // of which the bank's own path is made
    {
        const std::filesystem::path folder = platform::userFolder ();
        std::error_code failed; // then the bank cannot be saved, which is no error
        std::filesystem::create_directories (folder, failed);
        return folder.empty () ? folder : folder / "Brimvale.bnk";
    };
    return services;
}
}
