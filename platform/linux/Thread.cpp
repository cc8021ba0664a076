#include "platform/Thread.h"

#include <pthread.h>

namespace platform
{
std::uintptr_t currentThread ()
{
    return static_cast<std::uintptr_t> (pthread_self ());
}
}
