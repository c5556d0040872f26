#pragma once
#include <memory>

/**
 * A lock that knows its owner, so that nested use by the owning thread can be told from contention.
 *
 * Whoever got true from `Lock` or was the one to acquire it through `Try_Lock` calls `Unlock`, nobody else.
 * Where the system has no mutex to give, both answer false for ever.
 *
 * Threads: all operations are safe on any thread.
 */
class AAX_CMutex
{
public:
    AAX_CMutex();
    AAX_CMutex(const AAX_CMutex&) = delete;
    AAX_CMutex& operator=(const AAX_CMutex&) = delete;
    ~AAX_CMutex();

    /** Waits for the lock. @return false, without waiting, when the calling thread owns it already. */
    [[nodiscard]] bool Lock();
    /** Does nothing unless the calling thread is the owner. */
    void Unlock();
    /** @return true when the calling thread owns the lock, be it from before. */
    [[nodiscard]] bool Try_Lock();

private:
    struct SRecord;
    std::unique_ptr<SRecord> mHandle;
};

/** Holds a lock for a scope, unless an outer scope of the same thread holds it already. */
class AAX_CMutexScope
{
public:
    explicit AAX_CMutexScope(AAX_CMutex& ioMutex) : mMutex(ioMutex), mLocked(ioMutex.Lock()) {}
    AAX_CMutexScope(const AAX_CMutexScope&) = delete;
    AAX_CMutexScope& operator=(const AAX_CMutexScope&) = delete;
    ~AAX_CMutexScope()
    {
        if (mLocked)
            mMutex.Unlock();
    }

private:
    AAX_CMutex& mMutex;
    bool mLocked = false;
};
