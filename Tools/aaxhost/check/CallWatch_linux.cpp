#include "Tools/aaxhost/check/CallWatch.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <cxxabi.h>
#include <fmt/format.h>
#include <memory>
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

/** Where a call was made. */
struct SSite
{
    const char* mFunction = nullptr; // that was called
    std::uintptr_t mCaller = 0;      // behind the call; 0 where nobody can tell
    std::uintptr_t mOwner = 0;       // behind the call of the side that it belongs to, on the way to it
};

/** The first calls of a side: of each kind, and of the system. */
struct SSites
{
    std::array<SSite, kForbiddenKinds> mOfKind{};
    SSite mOfSystem;
};
thread_local std::array<SSites, 3> gSites; // as in SCallWatch

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
 * Whether the call that returns there goes to another library. A plug-in may end a block by a jump to `free`,
 * and the module by a jump into the plug-in. Neither leaves a frame, so the stack looks as if the module had
 * called `free`. What the module calls by itself goes through its table of foreign functions.
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
    std::uintptr_t mCallerPlace = 0;
    std::uintptr_t mOwnerPlace = 0; // 0 where the owner has left no frame
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
    const std::uintptr_t place = _Unwind_GetIP(inContext);
    if (walk.mCallerPlace == 0)
        walk.mCallerPlace = place;
    const EOwner owner = OwnerOf(place);
    if (owner == EOwner::Other)
        return _URC_NO_REASON;
    const bool hasLeftNoFrame = owner == EOwner::Module && !IsForeignCall(place);
    walk.mOwner = hasLeftNoFrame ? EOwner::Plugin : owner;
    walk.mOwnerPlace = hasLeftNoFrame ? 0 : place;
    return _URC_END_OF_STACK;
}

/** Whose call it is. */
struct SBlame
{
    SWatchedCalls& mCalls;
    SSites& mSites;
    SSite mSite;
};

/** A stack that cannot be followed belongs to code that the plug-in brought. */
SBlame Blame(const char* inFunction) noexcept
{
    SWalk walk;
    (void)_Unwind_Backtrace(&Step, &walk); // where it stops early, what was found holds
    const SSite site{inFunction, walk.mOwnerPlace != 0 ? walk.mCallerPlace : 0, walk.mOwnerPlace};
    if (walk.mOwner == EOwner::Host)
        return {gWatch->mHost, gSites[0], site};
    return walk.mOwner == EOwner::Module ? SBlame{gWatch->mModule, gSites[1], site}
                                         : SBlame{gWatch->mPlugin, gSites[2], site};
}

/** Has inNote write a call down for the side that makes it. */
template <class Note>
void WriteDown(const char* inFunction, Note inNote) noexcept
{
    if (!gIsCounting)
        return;
    gIsCounting = false; // following the stack may allocate
    const char selector = gSelector;
    gSelector = kAllow;
    inNote(Blame(inFunction));
    gSelector = selector;
    gIsCounting = true;
}

void Add(const SBlame& inBlame, EForbiddenKind inKind) noexcept
{
    if (inBlame.mCalls.Of(inKind)++ == 0)
        inBlame.mSites.mOfKind[static_cast<std::size_t>(inKind)] = inBlame.mSite;
}

void Count(const char* inFunction, EForbiddenKind inKind) noexcept
{
    WriteDown(
        inFunction, [=](const SBlame& blame) { Add(blame, inKind); });
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
        const SBlame blame = Blame(nullptr);
        SWatchedCalls& calls = blame.mCalls;
        if (calls.mSystemCallRuns++ == 0)
            blame.mSites.mOfSystem = blame.mSite;
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

namespace
{
/** The functions of the C library that are replaced below. What stands for them in C++ calls them. */
constexpr std::array<std::string_view, 11> kReplaced{"malloc",
                                                     "calloc",
                                                     "realloc",
                                                     "aligned_alloc",
                                                     "posix_memalign",
                                                     "memalign",
                                                     "valloc",
                                                     "free",
                                                     "pthread_mutex_lock",
                                                     "pthread_rwlock_rdlock",
                                                     "pthread_rwlock_wrlock"};

constexpr bool IsSeen(const SForbiddenFunction& inFunction)
{
    const std::string_view name = inFunction.mName;
    const bool isOfAnotherSystem = name == "os_unfair_lock_lock";
    return inFunction.mKind == EForbiddenKind::kBlocking || name.starts_with("_Z") || isOfAnotherSystem ||
           std::ranges::count(kReplaced, name) == 1;
}
static_assert(std::apply([](const auto&... inFunctions) { return (IsSeen(inFunctions) && ...); },
                         kForbiddenFunctions));
} // namespace

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
    Count("malloc", KindOf("malloc"));
    return __libc_malloc(inSize);
}
WATCHED void* calloc(std::size_t inCount, std::size_t inSize)
{
    Count("calloc", KindOf("calloc"));
    return __libc_calloc(inCount, inSize);
}
WATCHED void* realloc(void* inMemory, std::size_t inSize)
{
    Count("realloc", KindOf("realloc"));
    return __libc_realloc(inMemory, inSize);
}
WATCHED void* aligned_alloc(std::size_t inAlignment, std::size_t inSize)
{
    Count("aligned_alloc", KindOf("aligned_alloc"));
    return __libc_memalign(inAlignment, inSize);
}
WATCHED int posix_memalign(void** outMemory, std::size_t inAlignment, std::size_t inSize)
{
    Count("posix_memalign", KindOf("posix_memalign"));
    void* const memory = __libc_memalign(inAlignment, inSize);
    if (memory == nullptr)
        return ENOMEM;
    *outMemory = memory;
    return 0;
}
WATCHED void* memalign(std::size_t inAlignment, std::size_t inSize)
{
    Count("memalign", KindOf("memalign"));
    return __libc_memalign(inAlignment, inSize);
}
WATCHED void* valloc(std::size_t inSize)
{
    Count("valloc", KindOf("valloc"));
    return __libc_memalign(static_cast<std::size_t>(getpagesize()), inSize);
}
WATCHED void free(void* inMemory)
{
    WriteDown("free",
              [=](const SBlame& blame)
              {
                  if (inMemory != nullptr)
                      Add(blame, KindOf("free"));
                  else
                      ++blame.mCalls.mFreesOfNothing;
              });
    __libc_free(inMemory);
}
WATCHED int pthread_mutex_lock(pthread_mutex_t* inMutex)
{
    static const auto real = Real<int (*)(pthread_mutex_t*)>("pthread_mutex_lock");
    Count("pthread_mutex_lock", KindOf("pthread_mutex_lock"));
    return real(inMutex);
}
WATCHED int pthread_rwlock_rdlock(pthread_rwlock_t* inLock)
{
    static const auto real = Real<int (*)(pthread_rwlock_t*)>("pthread_rwlock_rdlock");
    Count("pthread_rwlock_rdlock", KindOf("pthread_rwlock_rdlock"));
    return real(inLock);
}
WATCHED int pthread_rwlock_wrlock(pthread_rwlock_t* inLock)
{
    static const auto real = Real<int (*)(pthread_rwlock_t*)>("pthread_rwlock_wrlock");
    Count("pthread_rwlock_wrlock", KindOf("pthread_rwlock_wrlock"));
    return real(inLock);
}

namespace
{
using Counts = decltype(SWatchedCalls::mCounts);

std::array<SWatchedCalls*, 3> SidesOf(SCallWatch& ioWatch)
{
    return {&ioWatch.mHost, &ioWatch.mModule, &ioWatch.mPlugin};
}

/** As a person writes it; as the linker has it where it is none of C++. */
std::string Demangled(const char* inName)
{
    int status = 0;
    const std::unique_ptr<char, decltype(&std::free)> name(
        abi::__cxa_demangle(inName, nullptr, nullptr, &status), &std::free);
    return status == 0 && name != nullptr ? name.get() : inName;
}

/** "a.so in Grow()", or with the place in the file, for addr2line, where the symbol is not exported. */
std::string NameOfPlace(std::uintptr_t inReturn)
{
    const std::uintptr_t call = inReturn - 1;
    Dl_info info{};
    if (inReturn == 0 || dladdr(reinterpret_cast<void*>(call), &info) == 0 || info.dli_fname == nullptr)
        return {};
    const std::string_view path = info.dli_fname;
    const std::string_view file = path.substr(path.rfind('/') + 1);
    return info.dli_sname != nullptr
               ? fmt::format("{} in {}", file, Demangled(info.dli_sname))
               : fmt::format("{} at {:#x}", file, call - reinterpret_cast<std::uintptr_t>(info.dli_fbase));
}

/** "malloc, called by libstdc++.so.6 in operator new(unsigned long) for a.so in Grow()" */
std::string NameOfSite(const SSite& inSite)
{
    const std::string caller = NameOfPlace(inSite.mCaller);
    const std::string owner = NameOfPlace(inSite.mOwner);
    return inSite.mFunction + (caller.empty() ? "" : ", called by " + caller) +
           (owner.empty() || owner == caller ? "" : " for " + owner);
}

/** Notes what of a side there was in a run, and who made the first call of each kind. */
void FinishRun(SWatchedCalls& ioCalls, const Counts& inEarlier, const SSites& inSites)
{
    for (std::size_t kind = 0; kind < kForbiddenKinds; ++kind)
    {
        ioCalls.mRuns[kind] += ioCalls.mCounts[kind] > inEarlier[kind] ? 1 : 0;
        if (inSites.mOfKind[kind].mFunction != nullptr)
            ioCalls.mFirst[kind] = NameOfSite(inSites.mOfKind[kind]);
    }
    if (inSites.mOfSystem.mOwner != 0)
        ioCalls.mSystemCaller = NameOfPlace(inSites.mOfSystem.mOwner);
}
} // namespace

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
    std::array<Counts, 3> earlier{};
    std::ranges::transform(SidesOf(ioWatch), earlier.begin(), &SWatchedCalls::mCounts);
    gSites = {};
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
    for (std::size_t side = 0; side < gSites.size(); ++side)
        FinishRun(*SidesOf(ioWatch)[side], earlier[side], gSites[side]);
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
