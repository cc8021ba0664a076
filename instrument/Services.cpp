#include "instrument/Services.h"

#include "platform/LibraryPath.h"

namespace instrument
{
Services systemServices ()
{
    return { platform::makeSettingsStore (), platform::showMessage, platform::ownLibraryPath };
}
}
