#include "platform/Thread.h"

#include <windows.h>

namespace platform
{
// The number lies in the thread's own block of memory, where this only reads it.
std::uintptr_t currentThread ()
{
    return GetCurrentThreadId ();
}
}
