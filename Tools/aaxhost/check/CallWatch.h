#pragma once
#include "Source/guard/ForbiddenFunctions.h"

#include <array>
#include <cstddef>
#include <functional>
#include <ostream>
#include <string>

/** What one side called that has no place in a render call. */
struct SWatchedCalls
{
    std::array<int, kForbiddenKinds> mCounts{}; // what blocks is not counted: it shows as a system call
    std::array<int, kForbiddenKinds> mRuns{};   // with any of a kind
    std::array<std::string, kForbiddenKinds> mFirst{}; // of a kind: "malloc, called by a.so in Grow()"
    int mFreesOfNothing = 0;                           // of a null pointer, which does nothing
    std::array<int, 8> mSystemCalls{};                 // numbers of the first different ones
    std::size_t mSystemCallCount = 0;
    int mSystemCallRuns = 0;     // with any
    std::string mSystemCaller{}; // of the first: "a.so in Grow()"

    int& Of(EForbiddenKind inKind) noexcept { return mCounts[static_cast<std::size_t>(inKind)]; }
    int Of(EForbiddenKind inKind) const noexcept { return mCounts[static_cast<std::size_t>(inKind)]; }
    int RunsWith(EForbiddenKind inKind) const noexcept { return mRuns[static_cast<std::size_t>(inKind)]; }
    const std::string& FirstOf(EForbiddenKind inKind) const noexcept
    {
        return mFirst[static_cast<std::size_t>(inKind)];
    }
    bool operator==(const SWatchedCalls&) const = default;
};

/** The calls of all sides. A call belongs to the side of its innermost caller. */
struct SCallWatch
{
    SWatchedCalls mHost;
    SWatchedCalls mModule;
    SWatchedCalls mPlugin; // and the libraries that it brings
    bool operator==(const SCallWatch&) const = default;
};

/** Why not everything can be watched here, as a sentence; empty when it can. */
std::string CallWatchObstacle();

/**
 * Runs something on this thread and adds what it calls to ioWatch. Only the first system call of a run is
 * seen.
 *
 * The functions of the program that links this replace those of the C library, also for what it loads.
 *
 * @param inModuleFile the module file as the loader names it; empty where there is none.
 */
void WatchCalls(const std::string& inModuleFile, SCallWatch& ioWatch, const std::function<void()>& inRun);

/** "futex" and its like, the number for others. */
std::string NameOfSystemCall(int inNumber);

/** Says what each side called, and nothing of a side that called nothing. */
inline std::ostream& operator<<(std::ostream& ioStream, const SCallWatch& inWatch)
{
    const auto add = [&](const char* side, const SWatchedCalls& calls)
    {
        using enum EForbiddenKind;
        if (calls == SWatchedCalls{})
            return;
        ioStream << side << ": " << calls.Of(kAllocation) << " allocations, " << calls.Of(kRelease)
                 << " releases, " << calls.mFreesOfNothing << " of nothing, " << calls.Of(kLock)
                 << " locks, system calls (";
        for (std::size_t i = 0; i < calls.mSystemCallCount; ++i)
            ioStream << ' ' << NameOfSystemCall(calls.mSystemCalls[i]);
        ioStream << " ). ";
    };
    add("The host", inWatch.mHost);
    add("The module", inWatch.mModule);
    add("The plug-in", inWatch.mPlugin);
    return ioStream;
}

/** Bytes of memory that this process occupies; 0 where it cannot be told. */
std::size_t ResidentBytes();
