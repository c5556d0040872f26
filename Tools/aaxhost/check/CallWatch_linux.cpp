#include "Tools/aaxhost/check/CallWatch.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <fmt/format.h>
#include <unwind.h>

#include <dlfcn.h>
#include <link.h>
#include <pthread.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <ucontext.h>
#include <unistd.h>

namespace
{
// From Linux 5.11 on: a thread can have its own system calls turned into signals. Older headers lack them.
constexpr int kSetSyscallUserDispatch = 59;
constexpr unsigned long kDispatchOn = 1;
constexpr unsigned long kDispatchOff = 0;
constexpr char kAllow = 0;
constexpr char kBlock = 1;

enum class EOwner : std::uint8_t
{
    Other,
    Host,
    Module,
    Plugin
};

struct SSegment
{
    std::uintptr_t mBegin = 0;
    std::uintptr_t mEnd = 0;
    EOwner mOwner = EOwner::Other;
};

// The main thread prepares the segments before a watch; during it they are only read.
std::array<SSegment, 4096> gSegments;
std::size_t gSegmentCount = 0;

// Each thread watches itself.
thread_local SCallWatch* gWatch = nullptr;
thread_local bool gIsCounting = false;
thread_local volatile char gSelector = kAllow;

int CollectSegments(dl_phdr_info* inImage, std::size_t, void* inModuleFile)
{
    const std::string_view name = inImage->dlpi_name != nullptr ? inImage->dlpi_name : "";
    EOwner owner = EOwner::Other;
    if (name.empty() && gSegmentCount == 0)
        owner = EOwner::Host; // the program itself comes first and has no name
    else if (name == *static_cast<const std::string*>(inModuleFile))
        owner = EOwner::Module;
    else if (name.find("source.vst") != std::string_view::npos)
        owner = EOwner::Plugin;
    for (int i = 0; i < inImage->dlpi_phnum && gSegmentCount < gSegments.size(); ++i)
    {
        const auto& header = inImage->dlpi_phdr[i];
        if (header.p_type == PT_LOAD && (header.p_flags & PF_X) != 0)
        {
            const std::uintptr_t begin = inImage->dlpi_addr + header.p_vaddr;
            gSegments[gSegmentCount++] = {begin, begin + header.p_memsz, owner};
        }
    }
    return 0;
}

EOwner OwnerOf(std::uintptr_t inAddress) noexcept
{
    for (std::size_t i = 0; i < gSegmentCount; ++i)
        if (inAddress >= gSegments[i].mBegin && inAddress < gSegments[i].mEnd)
            return gSegments[i].mOwner;
    return EOwner::Other;
}

/**
 * Whether the call that returns there goes to another library. A plug-in's last act in a block may be a jump
 * to free or the like, and the module's last act the jump into the plug-in: neither leaves a frame, and it
 * looks as if a function of the module had done it. What the module does by itself it calls by way of its
 * table of foreign functions.
 */
bool IsForeignCall(std::uintptr_t inReturn) noexcept
{
    const auto* const call = reinterpret_cast<const unsigned char*>(inReturn - 5);
    if (call[0] != 0xE8) // on x86-64 a call with four bytes of distance
        return false;
    std::int32_t distance = 0;
    std::memcpy(&distance, call + 1, sizeof(distance));
    const unsigned char* target = call + 5 + distance;
    constexpr std::array<unsigned char, 4> branchMark{0xF3, 0x0F, 0x1E, 0xFA};
    if (std::equal(branchMark.begin(), branchMark.end(), target))
        target += branchMark.size();
    if (*target == 0xF2) // the prefix of a bounded jump
        ++target;
    return target[0] == 0xFF && target[1] == 0x25; // a jump through an entry of the table
}

struct SWalk
{
    EOwner mOwner = EOwner::Other;
    int mFrames = 0;
    bool mSkipsHost = true; // until the function that replaces the C library's
};

// The functions that replace the C library's have a section of their own. The linker names its borders.
#define IN_WATCHED_SECTION __attribute__((section("watched_calls")))
extern "C" __attribute__((visibility("hidden"))) const char __start_watched_calls[];
extern "C" __attribute__((visibility("hidden"))) const char __stop_watched_calls[];

bool IsInWatchedSection(std::uintptr_t inAddress) noexcept
{
    return inAddress >= reinterpret_cast<std::uintptr_t>(__start_watched_calls) &&
           inAddress < reinterpret_cast<std::uintptr_t>(__stop_watched_calls);
}

_Unwind_Reason_Code Step(_Unwind_Context* inContext, void* inData)
{
    auto& walk = *static_cast<SWalk*>(inData);
    constexpr int deepest = 64;
    if (++walk.mFrames > deepest)
        return _URC_END_OF_STACK;
    if (walk.mSkipsHost)
    {
        walk.mSkipsHost = !IsInWatchedSection(_Unwind_GetIP(inContext));
        return _URC_NO_REASON;
    }
    const EOwner owner = OwnerOf(_Unwind_GetIP(inContext));
    if (owner == EOwner::Other)
        return _URC_NO_REASON;
    walk.mOwner =
        owner == EOwner::Module && !IsForeignCall(_Unwind_GetIP(inContext)) ? EOwner::Plugin : owner;
    return _URC_END_OF_STACK;
}

/** Whose call it is. A stack that cannot be followed belongs to code that the plug-in brought. */
SWatchedCalls& Blamed() noexcept
{
    SWalk walk;
    (void)_Unwind_Backtrace(&Step, &walk); // where it stops early, what was found holds
    if (walk.mOwner == EOwner::Host)
        return gWatch->mHost;
    return walk.mOwner == EOwner::Module ? gWatch->mModule : gWatch->mPlugin;
}

/** Has inNote write a call down for the side that makes it. */
template <class Note>
void WriteDown(Note inNote) noexcept
{
    if (!gIsCounting)
        return;
    gIsCounting = false; // following the stack may allocate
    const char selector = gSelector;
    gSelector = kAllow;
    inNote(Blamed());
    gSelector = selector;
    gIsCounting = true;
}

void Count(EForbiddenKind inKind) noexcept
{
    WriteDown([=](SWatchedCalls& calls) { ++calls.Of(inKind); });
}

/** Notes the call and has it made again. The run's later ones are not seen. */
IN_WATCHED_SECTION void OnSystemCall(int, siginfo_t* inInfo, void* inContext)
{
    gSelector = kAllow;
    const bool wasCounting = gIsCounting;
    gIsCounting = false;
    auto* const context = static_cast<ucontext_t*>(inContext);
    if (gWatch != nullptr)
    {
        SWatchedCalls& calls = Blamed();
        const auto end = calls.mSystemCalls.begin() + static_cast<std::ptrdiff_t>(calls.mSystemCallCount);
        if (calls.mSystemCallCount < calls.mSystemCalls.size() &&
            std::find(calls.mSystemCalls.begin(), end, inInfo->si_syscall) == end)
            calls.mSystemCalls[calls.mSystemCallCount++] = inInfo->si_syscall;
    }
    constexpr int instructionBytes = 2; // of the system call on x86-64, which is behind us now
    context->uc_mcontext.gregs[REG_RIP] -= instructionBytes;
    context->uc_mcontext.gregs[REG_RAX] = inInfo->si_syscall;
    gIsCounting = wasCounting;
}

bool TurnDispatch(unsigned long inMode)
{
    return prctl(kSetSyscallUserDispatch, inMode, 0UL, 0UL,
                 inMode == kDispatchOn ? reinterpret_cast<unsigned long>(&gSelector) : 0UL) == 0;
}
} // namespace

std::string CallWatchObstacle()
{
    gSelector = kAllow;
    if (!TurnDispatch(kDispatchOn))
        return "This system does not let a process watch its own system calls.";
    (void)TurnDispatch(kDispatchOff); // what could be turned on can be turned off
    return {};
}

#define WATCHED extern "C" __attribute__((visibility("default"))) IN_WATCHED_SECTION

extern "C"
{
    void* __libc_malloc(std::size_t);
    void* __libc_calloc(std::size_t, std::size_t);
    void* __libc_realloc(void*, std::size_t);
    void* __libc_memalign(std::size_t, std::size_t);
    void __libc_free(void*);
}

namespace
{
template <class Function>
Function Real(const char* inName)
{
    return reinterpret_cast<Function>(dlsym(RTLD_NEXT, inName));
}
} // namespace

WATCHED void* malloc(std::size_t inSize)
{
    Count(KindOf("malloc"));
    return __libc_malloc(inSize);
}
WATCHED void* calloc(std::size_t inCount, std::size_t inSize)
{
    Count(KindOf("calloc"));
    return __libc_calloc(inCount, inSize);
}
WATCHED void* realloc(void* inMemory, std::size_t inSize)
{
    Count(KindOf("realloc"));
    return __libc_realloc(inMemory, inSize);
}
WATCHED void* aligned_alloc(std::size_t inAlignment, std::size_t inSize)
{
    Count(KindOf("aligned_alloc"));
    return __libc_memalign(inAlignment, inSize);
}
WATCHED int posix_memalign(void** outMemory, std::size_t inAlignment, std::size_t inSize)
{
    Count(KindOf("posix_memalign"));
    void* const memory = __libc_memalign(inAlignment, inSize);
    if (memory == nullptr)
        return ENOMEM;
    *outMemory = memory;
    return 0;
}
WATCHED void free(void* inMemory)
{
    WriteDown([=](SWatchedCalls& calls)
              { ++(inMemory != nullptr ? calls.Of(KindOf("free")) : calls.mFreesOfNothing); });
    __libc_free(inMemory);
}
WATCHED int pthread_mutex_lock(pthread_mutex_t* inMutex)
{
    static const auto real = Real<int (*)(pthread_mutex_t*)>("pthread_mutex_lock");
    Count(KindOf("pthread_mutex_lock"));
    return real(inMutex);
}
WATCHED int pthread_rwlock_rdlock(pthread_rwlock_t* inLock)
{
    static const auto real = Real<int (*)(pthread_rwlock_t*)>("pthread_rwlock_rdlock");
    Count(KindOf("pthread_rwlock_rdlock"));
    return real(inLock);
}
WATCHED int pthread_rwlock_wrlock(pthread_rwlock_t* inLock)
{
    static const auto real = Real<int (*)(pthread_rwlock_t*)>("pthread_rwlock_wrlock");
    Count(KindOf("pthread_rwlock_wrlock"));
    return real(inLock);
}

void WatchCalls(const std::string& inModuleFile, SCallWatch& ioWatch, const std::function<void()>& inRun)
{
    gSegmentCount = 0;
    std::string moduleFile = inModuleFile;
    dl_iterate_phdr(&CollectSegments, &moduleFile);
    struct sigaction action
    {
    };
    struct sigaction before
    {
    };
    action.sa_sigaction = &OnSystemCall;
    action.sa_flags = SA_SIGINFO;
    sigaction(SIGSYS, &action, &before);
    SWalk warmUp;
    (void)_Unwind_Backtrace(&Step, &warmUp); // loads now what it would load later
    gWatch = &ioWatch;
    const bool watchesSystemCalls = TurnDispatch(kDispatchOn);
    gIsCounting = true;
    gSelector = watchesSystemCalls ? kBlock : kAllow;
    inRun();
    gSelector = kAllow;
    gIsCounting = false;
    (void)TurnDispatch(kDispatchOff); // was on, or was never
    gWatch = nullptr;
    sigaction(SIGSYS, &before, nullptr);
}

std::string NameOfSystemCall(int inNumber)
{
    switch (inNumber)
    {
    case SYS_futex: return "futex";
    case SYS_read: return "read";
    case SYS_write: return "write";
    case SYS_writev: return "writev";
    case SYS_openat: return "openat";
    case SYS_close: return "close";
    case SYS_brk: return "brk";
    case SYS_mmap: return "mmap";
    case SYS_munmap: return "munmap";
    case SYS_madvise: return "madvise";
    case SYS_nanosleep: return "nanosleep";
    case SYS_clock_nanosleep: return "clock_nanosleep";
    case SYS_sched_yield: return "sched_yield";
    case SYS_poll: return "poll";
    case SYS_clone:
    case SYS_clone3: return "clone";
    case SYS_getpid: return "getpid";
    case SYS_gettid: return "gettid";
    default: return fmt::format("number {}", inNumber);
    }
}

std::size_t ResidentBytes()
{
    std::FILE* const file = std::fopen("/proc/self/statm", "r");
    if (file == nullptr)
        return 0;
    unsigned long total = 0;
    unsigned long resident = 0;
    const int count = std::fscanf(file, "%lu %lu", &total, &resident);
    (void)std::fclose(file); // it was only read
    return count == 2 ? resident * static_cast<std::size_t>(sysconf(_SC_PAGESIZE)) : 0;
}
