#include "formats/shared/Surroundings.h"

#include "platform/UserFolder.h"

namespace formats
{
instrument::Services surroundings ()
{
    instrument::Services services = instrument::systemServices ();
    services.libraryPath = [] // of which the bank's own path is made
    {
        const std::filesystem::path folder = platform::userFolder ();
        return folder.empty () ? folder : folder / "Brimvale.bnk";
    };
    return services;
}
}
