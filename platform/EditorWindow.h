#pragma once

namespace VSTGUI
{
class CFrame;
}

// What the editor's window needs of the system. User-interface thread only.
namespace platform
{
// The windows of this system as plug-in interfaces name them: "x11" or "win32". Any thread.
const char* windowSystem ();

// Starts the toolkit, and ends it when no frame is open any more.
void startToolkit ();
void endToolkit ();

// Opens the frame inside the host's window (an HWND or an X11 window id); false when there is no display or
// the system refused.
bool openFrame (VSTGUI::CFrame& frame, void* parentWindow);

// Takes the frame's window away and gives up the caller's reference to the frame.
void closeFrame (VSTGUI::CFrame& frame);

// What the system enlarges everything by on the screen that shows the frame, or wants programs to: 1.0 where
// it says nothing. The frame must be open.
double screenScale (VSTGUI::CFrame& frame);

// Whether a window keeps the rest of its picture while a part of it is drawn anew.
bool windowsKeepTheirPicture ();

// Whether pop-up menus are windows of the system; else the toolkit draws them inside the frame.
bool hasMenusOfItsOwn ();

// Hands waiting window events and due timers to the toolkit, where the system has no message loop that
// does so by itself. To be called at every idle of an open editor.
void handleWindowEvents ();
}
