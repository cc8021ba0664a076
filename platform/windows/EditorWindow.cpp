#include "platform/EditorWindow.h"

#include "platform/windows/OwnModule.h"
#include <vstgui/lib/cframe.h>
#include <vstgui/lib/platform/iplatformframe.h>
#include <vstgui/lib/vstguiinit.h>

namespace platform
{
const char* windowSystem ()
{
    return "win32";
}

void startToolkit ()
{
    VSTGUI::init (ownModule ());
}

void endToolkit ()
{
    VSTGUI::exit ();
}

bool openFrame (VSTGUI::CFrame& frame, void* parentWindow)
{
    return frame.open (parentWindow, VSTGUI::PlatformType::kHWND);
}

void closeFrame (VSTGUI::CFrame& frame)
{
    frame.close ();
}

// To a host that leaves the enlarging to the system, this says 1.
double screenScale (VSTGUI::CFrame& frame)
{
    const auto window = static_cast<HWND> (frame.getPlatformFrame ()->getPlatformRepresentation ());
    const UINT dotsPerInch = GetDpiForWindow (window);
    return dotsPerInch == 0 ? 1.0 : dotsPerInch / static_cast<double> (USER_DEFAULT_SCREEN_DPI);
}

// Wine's Direct2D windows may lose the rest of their picture when a part is drawn.
bool windowsKeepTheirPicture ()
{
    static const bool isWine = GetProcAddress (GetModuleHandleA ("ntdll"), "wine_get_version") != nullptr;
    return !isWine;
}

bool hasMenusOfItsOwn ()
{
    return true;
}

// The host's message loop serves the windows of this library as it serves its own.
void handleWindowEvents () {}
}
