#include "Tests/doubles/CallGuard.h"

#include <cstddef>
#include <dlfcn.h>
#include <pthread.h>

namespace
{
// Only the thread that holds the guard reads and writes these.
thread_local bool gIsUp = false;
thread_local SGuardedCalls gCalls;
} // namespace

#if !defined(__linux__) || defined(AAXADAPTER_SANITIZED)
bool CCallGuard::IsWatching() noexcept { return false; }
#else
bool CCallGuard::IsWatching() noexcept { return true; }

namespace
{
void Count(int SGuardedCalls::*inKind) noexcept
{
    if (gIsUp)
        ++(gCalls.*inKind);
}
} // namespace

// To be found by the modules that the program loads, they have to be seen from outside.
#pragma GCC visibility push(default)

extern "C"
{
    void* __libc_malloc(std::size_t);
    void* __libc_calloc(std::size_t, std::size_t);
    void* __libc_realloc(void*, std::size_t);
    void* __libc_memalign(std::size_t, std::size_t);
    void __libc_free(void*);

    void* malloc(std::size_t inSize)
    {
        Count(&SGuardedCalls::mAllocations);
        return __libc_malloc(inSize);
    }
    void* calloc(std::size_t inCount, std::size_t inSize)
    {
        Count(&SGuardedCalls::mAllocations);
        return __libc_calloc(inCount, inSize);
    }
    void* realloc(void* inMemory, std::size_t inSize)
    {
        Count(&SGuardedCalls::mAllocations);
        return __libc_realloc(inMemory, inSize);
    }
    void* aligned_alloc(std::size_t inAlignment, std::size_t inSize)
    {
        Count(&SGuardedCalls::mAllocations);
        return __libc_memalign(inAlignment, inSize);
    }
    void free(void* inMemory)
    {
        Count(&SGuardedCalls::mFrees);
        __libc_free(inMemory);
    }
    int pthread_mutex_lock(pthread_mutex_t* inMutex)
    {
        using Lock = int (*)(pthread_mutex_t*);
        static const Lock real = reinterpret_cast<Lock>(dlsym(RTLD_NEXT, "pthread_mutex_lock"));
        Count(&SGuardedCalls::mLocks);
        return real(inMutex);
    }
}
#pragma GCC visibility pop
#endif

std::ostream& operator<<(std::ostream& ioStream, const SGuardedCalls& inCalls)
{
    return ioStream << inCalls.mAllocations << " allocations, " << inCalls.mFrees << " frees, "
                    << inCalls.mLocks << " locks";
}

CCallGuard::CCallGuard() noexcept
{
    gCalls = {};
    gIsUp = true;
}

CCallGuard::~CCallGuard() { gIsUp = false; }

SGuardedCalls CCallGuard::Stop() noexcept
{
    gIsUp = false;
    return gCalls;
}
