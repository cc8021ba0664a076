#include "tests/support/AudioThreadWatch.h"

#include <csignal>
#include <cstdlib>

#include <dlfcn.h>
#include <linux/seccomp.h>
#include <pthread.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

namespace
{
int allocations = 0;
int locks = 0;
}

extern "C"
{
    // The C library's own, under the names that stay when malloc and its kin are replaced.
    // NOLINTBEGIN(bugprone-reserved-identifier)
    void* __libc_malloc (size_t size);
    void* __libc_calloc (size_t count, size_t size);
    void* __libc_memalign (size_t alignment, size_t size);
    void* __libc_realloc (void* memory, size_t size);
    void __libc_free (void* memory);
    // NOLINTEND(bugprone-reserved-identifier)

    void* malloc (size_t size)
    {
        return ++allocations, __libc_malloc (size);
    }
    void* calloc (size_t count, size_t size)
    {
        return ++allocations, __libc_calloc (count, size);
    }
    void* aligned_alloc (size_t alignment, size_t size)
    {
        return ++allocations, __libc_memalign (alignment, size);
    }
    void* realloc (void* memory, size_t size)
    {
        return ++allocations, __libc_realloc (memory, size);
    }
    void free (void* memory)
    {
        ++allocations, __libc_free (memory);
    }

    [[gnu::visibility ("default")]] int pthread_mutex_lock (pthread_mutex_t* mutex)
    {
        using Lock = int (*) (pthread_mutex_t*);
        static const auto real = reinterpret_cast<Lock> (dlsym (RTLD_NEXT, "pthread_mutex_lock"));
        ++locks;
        return real (mutex);
    }
}

Calls callsDuring (const std::function<void ()>& work)
{
    allocations = 0;
    locks = 0;
    work ();
    return { allocations, locks };
}

bool livesWithoutSystemCalls (const std::function<void ()>& work)
{
    const pid_t child = fork ();
    if (child == 0)
    {
        prctl (PR_SET_SECCOMP, SECCOMP_MODE_STRICT);
        work ();
        syscall (SYS_exit, 0);
    }
    int status = 0;
    waitpid (child, &status, 0);
    return WIFEXITED (status) && WEXITSTATUS (status) == 0;
}
