#pragma once
#include <ostream>

/** What happened on this thread while a guard was up. */
struct SGuardedCalls
{
    int mAllocations = 0; // malloc, calloc, realloc and aligned forms; operator new ends in one of them
    int mFrees = 0;
    int mLocks = 0; // pthread_mutex_lock
    bool operator==(const SGuardedCalls&) const = default;
};
std::ostream& operator<<(std::ostream& ioStream, const SGuardedCalls& inCalls);

/**
 * Counts allocations and locks of this thread from its construction to `Stop`, wherever in the process they
 * are made: the program that links this takes the place of the C library's functions. One at a time.
 */
class CCallGuard
{
public:
    CCallGuard() noexcept;
    CCallGuard(const CCallGuard&) = delete;
    CCallGuard& operator=(const CCallGuard&) = delete;
    ~CCallGuard();
    SGuardedCalls Stop() noexcept;

    /** False where another library has these places: with a sanitizer, and on macOS. */
    static bool IsWatching() noexcept;
};
