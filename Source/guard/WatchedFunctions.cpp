#include "Source/guard/WatchedFunctions.h"

#include <atomic>
#include <tuple>
#include <utility>

namespace
{
// Render threads count; the report reads when the module goes.
constinit CCallCounts gCounts;
// The thread that puts the replacements to use writes, before that; any thread reads.
constinit std::array<std::array<std::atomic<void*>, CCallCounts::kMostFunctions>, kGuardOwners> gOriginals{};

template <EGuardOwner kOwner, std::size_t kFunction, class Result, class... Arguments>
Result CountAndCall(Arguments... inArguments)
{
    if (CCallCounts::IsInRenderCall())
        gCounts.Add(kOwner, kFunction);
    void* const original =
        gOriginals[static_cast<std::size_t>(kOwner)][kFunction].load(std::memory_order_acquire);
    return reinterpret_cast<Result (*)(Arguments...)>(original)(inArguments...);
}

/** The functions' types as far as registers go: what a pointer points at makes no difference. */
struct SKnownFunction
{
    const char* mName;
    const char* mText;
    EWatchedKind mKind;
};
template <class Signature>
struct STyped : SKnownFunction
{
};

constexpr auto kMemory = EWatchedKind::kMemory;
constexpr auto kLock = EWatchedKind::kLock;
constexpr auto kBlocking = EWatchedKind::kBlocking;

using Size = std::size_t;
using Allocate = void*(Size);
using Free = void(void*);
using OnObject = void(void*);
using FreeSized = void(void*, Size);
using OnOne = int(void*);
using OnTwo = int(void*, void*);

constexpr std::tuple kKnown{
    STyped<Allocate>{{"malloc", "malloc", kMemory}},
    STyped<void*(Size, Size)>{{"calloc", "calloc", kMemory}},
    STyped<void*(void*, Size)>{{"realloc", "realloc", kMemory}},
    STyped<void*(Size, Size)>{{"aligned_alloc", "aligned_alloc", kMemory}},
    STyped<int(void*, Size, Size)>{{"posix_memalign", "posix_memalign", kMemory}},
    STyped<Free>{{"free", "free", kMemory}},
    STyped<Allocate>{{"_Znwm", "operator new", kMemory}},
    STyped<Allocate>{{"_Znam", "operator new[]", kMemory}},
    STyped<void*(Size, Size)>{{"_ZnwmSt11align_val_t", "aligned operator new", kMemory}},
    STyped<void*(Size, Size)>{{"_ZnamSt11align_val_t", "aligned operator new[]", kMemory}},
    STyped<void*(Size, void*)>{{"_ZnwmRKSt9nothrow_t", "nothrow operator new", kMemory}},
    STyped<void*(Size, void*)>{{"_ZnamRKSt9nothrow_t", "nothrow operator new[]", kMemory}},
    STyped<Free>{{"_ZdlPv", "operator delete", kMemory}},
    STyped<Free>{{"_ZdaPv", "operator delete[]", kMemory}},
    STyped<FreeSized>{{"_ZdlPvm", "sized operator delete", kMemory}},
    STyped<FreeSized>{{"_ZdaPvm", "sized operator delete[]", kMemory}},
    STyped<void(void*, Size)>{{"_ZdlPvSt11align_val_t", "aligned operator delete", kMemory}},
    STyped<void(void*, Size, Size)>{{"_ZdlPvmSt11align_val_t", "aligned sized operator delete", kMemory}},
    STyped<OnOne>{{"pthread_mutex_lock", "pthread_mutex_lock", kLock}},
    STyped<OnOne>{{"pthread_rwlock_rdlock", "pthread_rwlock_rdlock", kLock}},
    STyped<OnOne>{{"pthread_rwlock_wrlock", "pthread_rwlock_wrlock", kLock}},
    STyped<OnObject>{{"_ZNSt3__15mutex4lockEv", "std::mutex::lock", kLock}},
    STyped<OnObject>{{"os_unfair_lock_lock", "os_unfair_lock_lock", kLock}},
    STyped<OnTwo>{{"pthread_cond_wait", "pthread_cond_wait", kBlocking}},
    STyped<int(void*, void*, void*)>{{"pthread_cond_timedwait", "pthread_cond_timedwait", kBlocking}},
    STyped<int(void*, void*)>{{"pthread_join", "pthread_join", kBlocking}},
    STyped<OnOne>{{"sem_wait", "sem_wait", kBlocking}},
    STyped<OnTwo>{{"nanosleep", "nanosleep", kBlocking}},
    STyped<int(int, int, void*, void*)>{{"clock_nanosleep", "clock_nanosleep", kBlocking}},
    STyped<int(unsigned)>{{"usleep", "usleep", kBlocking}},
    STyped<unsigned(unsigned)>{{"sleep", "sleep", kBlocking}},
    STyped<int()>{{"sched_yield", "sched_yield", kBlocking}},
    STyped<int(void*, unsigned long, int)>{{"poll", "poll", kBlocking}},
    STyped<long(int, void*, Size)>{{"read", "read", kBlocking}},
    STyped<long(int, void*, Size)>{{"write", "write", kBlocking}},
    STyped<int(int)>{{"close", "close", kBlocking}},
    STyped<void*(void*, void*)>{{"fopen", "fopen", kBlocking}},
    STyped<OnOne>{{"fclose", "fclose", kBlocking}},
    STyped<Size(void*, Size, Size, void*)>{{"fread", "fread", kBlocking}},
    STyped<Size(void*, Size, Size, void*)>{{"fwrite", "fwrite", kBlocking}},
    STyped<OnOne>{{"fflush", "fflush", kBlocking}},
    STyped<OnOne>{{"puts", "puts", kBlocking}},
};
constexpr std::size_t kCount = std::tuple_size_v<decltype(kKnown)>;
static_assert(kCount <= CCallCounts::kMostFunctions);

template <std::size_t kFunction, class Result, class... Arguments>
SWatchedFunction Watch(const STyped<Result(Arguments...)>& inKnown) noexcept
{
    return {inKnown.mName,
            inKnown.mText,
            inKnown.mKind,
            {reinterpret_cast<void*>(&CountAndCall<EGuardOwner::kModule, kFunction, Result, Arguments...>),
             reinterpret_cast<void*>(&CountAndCall<EGuardOwner::kPlugin, kFunction, Result, Arguments...>)}};
}

template <std::size_t... kFunctions>
std::array<SWatchedFunction, kCount> WatchAll(std::index_sequence<kFunctions...>) noexcept
{
    return {Watch<kFunctions>(std::get<kFunctions>(kKnown))...};
}
} // namespace

std::span<const SWatchedFunction> WatchedFunctions() noexcept
{
    static const std::array<SWatchedFunction, kCount> functions =
        WatchAll(std::make_index_sequence<kCount>());
    return functions;
}

void SetOriginal(EGuardOwner inOwner, std::size_t inFunction, void* inOriginal) noexcept
{
    gOriginals[static_cast<std::size_t>(inOwner)][inFunction].store(inOriginal, std::memory_order_release);
}

CCallCounts& GuardCounts() noexcept { return gCounts; }
