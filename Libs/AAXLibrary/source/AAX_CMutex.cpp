#include "Libs/AAXLibrary/source/AAX_CMutex.h"

#include <atomic>
#include <pthread.h>
#include <thread>

struct AAX_CMutex::SRecord
{
    // Written by the owner only, with the mutex held; read by any thread that asks whether it is the owner.
    // Only its own identifier matters to a thread, and it wrote that one itself: no order is needed.
    std::atomic<std::thread::id> mOwner{};
    pthread_mutex_t mMutex;

    bool IsOwnedByCaller() const
    {
        return mOwner.load(std::memory_order_relaxed) == std::this_thread::get_id();
    }
    bool Own(int inLockResult)
    {
        if (inLockResult != 0)
            return false;
        mOwner.store(std::this_thread::get_id(), std::memory_order_relaxed);
        return true;
    }
};

AAX_CMutex::AAX_CMutex() : mHandle(std::make_unique<SRecord>())
{
    if (pthread_mutex_init(&mHandle->mMutex, nullptr) != 0)
        mHandle.reset();
}

AAX_CMutex::~AAX_CMutex()
{
    if (mHandle != nullptr)
        pthread_mutex_destroy(&mHandle->mMutex);
}

bool AAX_CMutex::Lock()
{
    if (mHandle == nullptr || mHandle->IsOwnedByCaller())
        return false;
    return mHandle->Own(pthread_mutex_lock(&mHandle->mMutex));
}

void AAX_CMutex::Unlock()
{
    if (mHandle == nullptr || !mHandle->IsOwnedByCaller())
        return;
    mHandle->mOwner.store({}, std::memory_order_relaxed);
    pthread_mutex_unlock(&mHandle->mMutex);
}

bool AAX_CMutex::Try_Lock()
{
    if (mHandle == nullptr)
        return false;
    return mHandle->IsOwnedByCaller() || mHandle->Own(pthread_mutex_trylock(&mHandle->mMutex));
}
