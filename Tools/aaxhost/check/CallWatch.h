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
    int mFreesOfNothing = 0;                    // of a null pointer, which does nothing
    std::array<int, 8> mSystemCalls{};          // numbers of the first different ones
    std::size_t mSystemCallCount = 0;

    int& Of(EForbiddenKind inKind) noexcept { return mCounts[static_cast<std::size_t>(inKind)]; }
    int Of(EForbiddenKind inKind) const noexcept { return mCounts[static_cast<std::size_t>(inKind)]; }
    bool operator==(const SWatchedCalls&) const = default;
};

/** The same of all sides: a call is that of the innermost caller which is one of them. */
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
 * Runs something on this thread and adds what it calls to ioWatch. Of the system calls of one run the first
 * is seen. The program that links this takes the place of the C library's functions, for what it loads as
 * well.
 *
 * @param inModuleFile the module file as the loader names it; empty where there is none.
 */
void WatchCalls(const std::string& inModuleFile, SCallWatch& ioWatch, const std::function<void()>& inRun);

/** "futex" and its like, the number for others. */
std::string NameOfSystemCall(int inNumber);

inline std::ostream& operator<<(std::ostream& ioStream, const SCallWatch& inWatch)
{
    const auto add = [&](const char* side, const SWatchedCalls& calls)
    {
        using enum EForbiddenKind;
        ioStream << side << ": " << calls.Of(kAllocation) << " allocations, " << calls.Of(kRelease)
                 << " releases, " << calls.mFreesOfNothing << " of nothing, " << calls.Of(kLock)
                 << " locks, system calls:";
        for (std::size_t i = 0; i < calls.mSystemCallCount; ++i)
            ioStream << ' ' << NameOfSystemCall(calls.mSystemCalls[i]);
    };
    add("the host", inWatch.mHost);
    add("; the module", inWatch.mModule);
    add("; the plug-in", inWatch.mPlugin);
    return ioStream;
}

/** Bytes of memory that this process occupies; 0 where it cannot be told. */
std::size_t ResidentBytes();
