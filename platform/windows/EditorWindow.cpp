#include "platform/EditorWindow.h"

#include "platform/windows/OwnModule.h"
#include <vstgui/lib/cframe.h>
#include <vstgui/lib/vstguiinit.h>

namespace platform
{
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
