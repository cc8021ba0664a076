#include "instrument/Services.h"

#include "platform/LibraryPath.h"

Services systemServices ()
{
    return { platform::makeSettingsStore (), platform::showMessage, platform::ownLibraryPath, nullptr };
}
