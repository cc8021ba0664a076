#pragma once

#include <functional>

// What an audio thread must not do, seen from outside. Linux only: whoever links this has the C library's
// allocator and locks replaced by counting ones, those of its libraries too, and asks the kernel to kill a
// process that calls it.

struct Calls
{
    int allocations = 0; // calls of the allocator, either way
    int locks = 0;
    bool operator== (const Calls&) const = default;
};
Calls callsDuring (const std::function<void ()>& work);

// Runs `work` in a process of its own that the kernel kills for any call but a plain exit. True when it
// lived.
bool livesWithoutSystemCalls (const std::function<void ()>& work);
