#pragma once

#include <windows.h>

namespace platform
{
// The module that this code was loaded from: the plug-in's DLL, or the program where it is linked into one.
HMODULE ownModule ();
}
