#include "Tools/macho_loader/LibSystemParts.h"

#include <atomic>
#include <cerrno>
#include <ctime>
#include <deque>
#include <mutex>
#include <new>

#include <pthread.h>
#include <sched.h>
#include <unistd.h>

// An object there is a mark of 8 bytes and some room. A static initial value sets the mark only, so this
// machine's object is made in the room at the first use.
namespace
{
enum EMark : long
{
    kMutexStatic = 0x32AAABA7,
    kMutexStaticRecursive = 0x32AAABA2,
    kMutexStaticErrorCheck = 0x32AAABA1,
    kConditionStatic = 0x3CB0B1BB,
    kOnceStatic = 0x30B1BCBA,
    // ours
    kReady = 0x52454144,
    kBusy = 0x42555359,
    kGone = 0
};

struct SMutex
{
    std::atomic<long> mMark;
    alignas(pthread_mutex_t) char mRoom[56];

    pthread_mutex_t* Real() { return std::launder(reinterpret_cast<pthread_mutex_t*>(mRoom)); }
};
static_assert(sizeof(SMutex) == 64 && sizeof(pthread_mutex_t) <= sizeof(SMutex::mRoom));

struct SMutexAttributes
{
    long mMark;
    pthread_mutexattr_t mReal;
};
static_assert(sizeof(SMutexAttributes) <= 16);

struct SCondition
{
    std::atomic<long> mMark;
    pthread_cond_t* mReal; // does not fit into the room
    char mRoom[32];
};
static_assert(sizeof(SCondition) == 48);

struct SOnce
{
    std::atomic<long> mMark;
    char mRoom[8];
};
static_assert(sizeof(SOnce) == 16);

// What SCondition points at; never freed, since static conditions are never destroyed. Any thread.
std::mutex gConditionsMutex;
std::deque<pthread_cond_t> gConditions;

int DarwinError(int inError)
{
    switch (inError)
    {
    case EDEADLK: return 11;
    case EAGAIN: return 35;
    case ENOTSUP: return 45;
    case ETIMEDOUT: return 60;
    case ENOSYS: return 78;
    default: return inError; // the same number in both systems
    }
}

/** Makes an object at its first use. @return false when it was never initialised, or is destroyed. */
template <class Make>
bool MakeReady(std::atomic<long>& ioMark, Make inMake)
{
    while (true)
    {
        long mark = ioMark.load(std::memory_order_acquire);
        if (mark == kReady)
            return true;
        if (mark == kBusy)
            sched_yield();
        else if (mark == kGone)
            return false;
        else if (ioMark.compare_exchange_strong(mark, kBusy))
        {
            const bool made = inMake(mark);
            ioMark.store(made ? kReady : mark, std::memory_order_release);
            if (!made)
                return false;
        }
    }
}

void MakeMutex(SMutex& outMutex, int inType)
{
    pthread_mutexattr_t attributes;
    pthread_mutexattr_init(&attributes);
    pthread_mutexattr_settype(&attributes, inType);
    pthread_mutex_init(new (outMutex.mRoom) pthread_mutex_t, &attributes);
    pthread_mutexattr_destroy(&attributes);
}

bool MakeStaticMutex(SMutex& outMutex, long inMark)
{
    switch (inMark)
    {
    case kMutexStatic: MakeMutex(outMutex, PTHREAD_MUTEX_NORMAL); return true;
    case kMutexStaticRecursive: MakeMutex(outMutex, PTHREAD_MUTEX_RECURSIVE); return true;
    case kMutexStaticErrorCheck: MakeMutex(outMutex, PTHREAD_MUTEX_ERRORCHECK); return true;
    default: return false;
    }
}

template <int (*kOperation)(pthread_mutex_t*)>
int WithMutex(SMutex* ioMutex)
{
    const bool ready =
        MakeReady(ioMutex->mMark, [&](long inMark) { return MakeStaticMutex(*ioMutex, inMark); });
    return ready ? DarwinError(kOperation(ioMutex->Real())) : EINVAL;
}

int InitMutex(SMutex* outMutex, const SMutexAttributes* inAttributes)
{
    int type = PTHREAD_MUTEX_NORMAL;
    if (inAttributes != nullptr)
        pthread_mutexattr_gettype(&inAttributes->mReal, &type);
    MakeMutex(*outMutex, type);
    outMutex->mMark.store(kReady, std::memory_order_release);
    return 0;
}

int DestroyMutex(SMutex* ioMutex)
{
    const int error = WithMutex<pthread_mutex_destroy>(ioMutex);
    if (error == 0)
        ioMutex->mMark.store(kGone);
    return error;
}

int InitMutexAttributes(SMutexAttributes* outAttributes)
{
    return pthread_mutexattr_init(&outAttributes->mReal);
}

int DestroyMutexAttributes(SMutexAttributes* ioAttributes)
{
    return pthread_mutexattr_destroy(&ioAttributes->mReal);
}

int SetMutexType(SMutexAttributes* ioAttributes, int inType)
{
    switch (inType) // numbered otherwise here
    {
    case 0: return pthread_mutexattr_settype(&ioAttributes->mReal, PTHREAD_MUTEX_NORMAL);
    case 1: return pthread_mutexattr_settype(&ioAttributes->mReal, PTHREAD_MUTEX_ERRORCHECK);
    case 2: return pthread_mutexattr_settype(&ioAttributes->mReal, PTHREAD_MUTEX_RECURSIVE);
    default: return EINVAL;
    }
}

bool MakeStaticCondition(SCondition& outCondition, long inMark)
{
    if (inMark != kConditionStatic)
        return false;
    const std::lock_guard lock(gConditionsMutex);
    outCondition.mReal = &gConditions.emplace_back();
    pthread_cond_init(outCondition.mReal, nullptr);
    return true;
}

template <int (*kOperation)(pthread_cond_t*)>
int WithCondition(SCondition* ioCondition)
{
    const bool ready =
        MakeReady(ioCondition->mMark, [&](long inMark) { return MakeStaticCondition(*ioCondition, inMark); });
    return ready ? DarwinError(kOperation(ioCondition->mReal)) : EINVAL;
}

int Nothing(pthread_cond_t*) { return 0; }

int InitCondition(SCondition* outCondition, const void* inAttributes)
{
    if (inAttributes != nullptr)
        return DarwinError(ENOTSUP);
    outCondition->mMark.store(kConditionStatic);
    return WithCondition<Nothing>(outCondition);
}

int DestroyCondition(SCondition* ioCondition)
{
    const int error = WithCondition<pthread_cond_destroy>(ioCondition);
    ioCondition->mMark.store(kGone);
    return error;
}

int WaitForCondition(SCondition* ioCondition, SMutex* ioMutex)
{
    const int error = WithCondition<Nothing>(ioCondition);
    return error != 0 ? error : DarwinError(pthread_cond_wait(ioCondition->mReal, ioMutex->Real()));
}

int WaitForConditionUntil(SCondition* ioCondition, SMutex* ioMutex, const timespec* inTime)
{
    const int error = WithCondition<Nothing>(ioCondition);
    return error != 0 ? error
                      : DarwinError(pthread_cond_timedwait(ioCondition->mReal, ioMutex->Real(), inTime));
}

int Once(SOnce* ioOnce, void (*inFunction)())
{
    const auto runOnce = [inFunction](long inMark)
    {
        if (inMark == kOnceStatic)
            inFunction();
        return inMark == kOnceStatic;
    };
    return MakeReady(ioOnce->mMark, runOnce) ? 0 : EINVAL;
}

int CreateThread(pthread_t* outThread, const void* inAttributes, void* (*inFunction)(void*), void* inArgument)
{
    if (inAttributes != nullptr)
        return DarwinError(ENOTSUP);
    return DarwinError(pthread_create(outThread, nullptr, inFunction, inArgument));
}

int CreateKey(unsigned long* outKey, void (*inDestructor)(void*))
{
    pthread_key_t key = 0;
    const int error = pthread_key_create(&key, inDestructor);
    *outKey = key;
    return DarwinError(error);
}

int DeleteKey(unsigned long inKey) { return pthread_key_delete(static_cast<pthread_key_t>(inKey)); }

void* GetForKey(unsigned long inKey) { return pthread_getspecific(static_cast<pthread_key_t>(inKey)); }

int SetForKey(unsigned long inKey, const void* inValue)
{
    return DarwinError(pthread_setspecific(static_cast<pthread_key_t>(inKey), inValue));
}

unsigned ThreadNumber(pthread_t) { return static_cast<unsigned>(gettid()); } // libc++ asks for its own only
} // namespace

SymbolTable ThreadSymbols()
{
    return {
        {"pthread_mutex_init", AddressOf(InitMutex)},
        {"pthread_mutex_destroy", AddressOf(DestroyMutex)},
        {"pthread_mutex_lock", AddressOf(WithMutex<pthread_mutex_lock>)},
        {"pthread_mutex_trylock", AddressOf(WithMutex<pthread_mutex_trylock>)},
        {"pthread_mutex_unlock", AddressOf(WithMutex<pthread_mutex_unlock>)},
        {"pthread_mutexattr_init", AddressOf(InitMutexAttributes)},
        {"pthread_mutexattr_destroy", AddressOf(DestroyMutexAttributes)},
        {"pthread_mutexattr_settype", AddressOf(SetMutexType)},
        {"pthread_cond_init", AddressOf(InitCondition)},
        {"pthread_cond_destroy", AddressOf(DestroyCondition)},
        {"pthread_cond_wait", AddressOf(WaitForCondition)},
        {"pthread_cond_timedwait", AddressOf(WaitForConditionUntil)},
        {"pthread_cond_signal", AddressOf(WithCondition<pthread_cond_signal>)},
        {"pthread_cond_broadcast", AddressOf(WithCondition<pthread_cond_broadcast>)},
        {"pthread_once", AddressOf(Once)},
        {"pthread_create", AddressOf(CreateThread)},
        {"pthread_key_create", AddressOf(CreateKey)},
        {"pthread_key_delete", AddressOf(DeleteKey)},
        {"pthread_getspecific", AddressOf(GetForKey)},
        {"pthread_setspecific", AddressOf(SetForKey)},
        {"pthread_mach_thread_np", AddressOf(ThreadNumber)},
    };
}
