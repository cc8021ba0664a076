#pragma once

#include <cstdint>

namespace platform
{
// A number for the calling thread, never 0. Neither allocates nor calls the system, so that an audio thread
// may ask.
std::uintptr_t currentThread ();
}
