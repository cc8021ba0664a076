#include "instrument/Services.h"

#include "editor/EditorFactory.h"
#include "platform/LibraryPath.h"

Services systemServices ()
{
    return { platform::makeSettingsStore (), platform::showMessage, platform::ownLibraryPath,
             editor::createEditor };
}
