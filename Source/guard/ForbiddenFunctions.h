#pragma once
#include <cstddef>
#include <string_view>
#include <tuple>

/** What a function does that has no place in a render call. */
enum class EForbiddenKind : std::size_t
{
    kAllocation,
    kRelease,
    kLock,
    kBlocking
};
inline constexpr std::size_t kForbiddenKinds = 4;

struct SForbiddenFunction
{
    const char* mName = nullptr; // as the linker has it
    const char* mText = nullptr; // as a person knows it
    EForbiddenKind mKind = EForbiddenKind::kAllocation;
};

/** With the function's type; pointers are void pointers, since a replacement only hands them on. */
template <class Signature>
struct SForbiddenCall : SForbiddenFunction
{
};

/**
 * The one table. The real-time guard of products counts all of them; the checks and the tests count those
 * that allocate, release and lock, and see what blocks by its system call.
 */
inline constexpr auto kForbiddenFunctions = []
{
    constexpr auto allocation = EForbiddenKind::kAllocation;
    constexpr auto release = EForbiddenKind::kRelease;
    constexpr auto lock = EForbiddenKind::kLock;
    constexpr auto blocking = EForbiddenKind::kBlocking;
    using Size = std::size_t;
    using Allocate = void*(Size);
    using Free = void(void*);
    using OnObject = void(void*);
    using FreeSized = void(void*, Size);
    using OnOne = int(void*);
    using OnTwo = int(void*, void*);
    return std::tuple{
        SForbiddenCall<Allocate>{{"malloc", "malloc", allocation}},
        SForbiddenCall<void*(Size, Size)>{{"calloc", "calloc", allocation}},
        SForbiddenCall<void*(void*, Size)>{{"realloc", "realloc", allocation}},
        SForbiddenCall<void*(Size, Size)>{{"aligned_alloc", "aligned_alloc", allocation}},
        SForbiddenCall<int(void*, Size, Size)>{{"posix_memalign", "posix_memalign", allocation}},
        SForbiddenCall<void*(Size, Size)>{{"memalign", "memalign", allocation}},
        SForbiddenCall<Allocate>{{"valloc", "valloc", allocation}},
        SForbiddenCall<Free>{{"free", "free", release}},
        SForbiddenCall<Allocate>{{"_Znwm", "operator new", allocation}},
        SForbiddenCall<Allocate>{{"_Znam", "operator new[]", allocation}},
        SForbiddenCall<void*(Size, Size)>{{"_ZnwmSt11align_val_t", "aligned operator new", allocation}},
        SForbiddenCall<void*(Size, Size)>{{"_ZnamSt11align_val_t", "aligned operator new[]", allocation}},
        SForbiddenCall<void*(Size, void*)>{{"_ZnwmRKSt9nothrow_t", "nothrow operator new", allocation}},
        SForbiddenCall<void*(Size, void*)>{{"_ZnamRKSt9nothrow_t", "nothrow operator new[]", allocation}},
        SForbiddenCall<Free>{{"_ZdlPv", "operator delete", release}},
        SForbiddenCall<Free>{{"_ZdaPv", "operator delete[]", release}},
        SForbiddenCall<FreeSized>{{"_ZdlPvm", "sized operator delete", release}},
        SForbiddenCall<FreeSized>{{"_ZdaPvm", "sized operator delete[]", release}},
        SForbiddenCall<void(void*, Size)>{{"_ZdlPvSt11align_val_t", "aligned operator delete", release}},
        SForbiddenCall<void(void*, Size, Size)>{
            {"_ZdlPvmSt11align_val_t", "aligned sized operator delete", release}},
        SForbiddenCall<OnOne>{{"pthread_mutex_lock", "pthread_mutex_lock", lock}},
        SForbiddenCall<OnOne>{{"pthread_rwlock_rdlock", "pthread_rwlock_rdlock", lock}},
        SForbiddenCall<OnOne>{{"pthread_rwlock_wrlock", "pthread_rwlock_wrlock", lock}},
        SForbiddenCall<OnObject>{{"_ZNSt3__15mutex4lockEv", "std::mutex::lock", lock}},
        SForbiddenCall<OnObject>{{"os_unfair_lock_lock", "os_unfair_lock_lock", lock}},
        SForbiddenCall<OnTwo>{{"pthread_cond_wait", "pthread_cond_wait", blocking}},
        SForbiddenCall<int(void*, void*, void*)>{
            {"pthread_cond_timedwait", "pthread_cond_timedwait", blocking}},
        SForbiddenCall<int(void*, void*)>{{"pthread_join", "pthread_join", blocking}},
        SForbiddenCall<OnOne>{{"sem_wait", "sem_wait", blocking}},
        SForbiddenCall<OnTwo>{{"nanosleep", "nanosleep", blocking}},
        SForbiddenCall<int(int, int, void*, void*)>{{"clock_nanosleep", "clock_nanosleep", blocking}},
        SForbiddenCall<int(unsigned)>{{"usleep", "usleep", blocking}},
        SForbiddenCall<unsigned(unsigned)>{{"sleep", "sleep", blocking}},
        SForbiddenCall<int()>{{"sched_yield", "sched_yield", blocking}},
        SForbiddenCall<int(void*, unsigned long, int)>{{"poll", "poll", blocking}},
        SForbiddenCall<long(int, void*, Size)>{{"read", "read", blocking}},
        SForbiddenCall<long(int, void*, Size)>{{"write", "write", blocking}},
        SForbiddenCall<int(int)>{{"close", "close", blocking}},
        SForbiddenCall<void*(void*, void*)>{{"fopen", "fopen", blocking}},
        SForbiddenCall<OnOne>{{"fclose", "fclose", blocking}},
        SForbiddenCall<Size(void*, Size, Size, void*)>{{"fread", "fread", blocking}},
        SForbiddenCall<Size(void*, Size, Size, void*)>{{"fwrite", "fwrite", blocking}},
        SForbiddenCall<OnOne>{{"fflush", "fflush", blocking}},
        SForbiddenCall<OnOne>{{"puts", "puts", blocking}},
    };
}();

/** The kind of the function that the linker calls so. One that is not in the table does not compile. */
consteval EForbiddenKind KindOf(std::string_view inName)
{
    const SForbiddenFunction* found = nullptr;
    std::apply([&](const auto&... inFunctions)
               { ((found = inFunctions.mName == inName ? &inFunctions : found), ...); },
               kForbiddenFunctions);
    return found->mKind;
}
