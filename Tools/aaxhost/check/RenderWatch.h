#pragma once
#include <array>
#include <cstddef>
#include <functional>
#include <string>

/** What should not happen while a block is rendered. */
struct SWatchedCalls
{
    int mAllocations = 0; // malloc and its like; operator new ends in one of them
    int mFrees = 0;
    int mLocks = 0;                    // calls that may wait for another thread
    std::array<int, 8> mSystemCalls{}; // numbers of the first different ones
    std::size_t mSystemCallCount = 0;
};

/** The same, by whose code did it: the innermost caller that is the module's or the wrapped plug-in's. */
struct SRenderWatch
{
    SWatchedCalls mModule;
    SWatchedCalls mPlugin; // and the libraries that it brings
};

/** Why nothing can be watched here, as a sentence; empty when it can. */
std::string RenderWatchObstacle();

/**
 * Runs a render call on this thread and adds what it does to ioWatch. What the host itself does in the calls
 * that the module makes on it is left out. Of the system calls of one run the first is seen.
 *
 * @param inModuleFile the module file as the loader names it.
 */
void WatchRender(const std::string& inModuleFile, SRenderWatch& ioWatch,
                 const std::function<void()>& inRender);

/** "futex" and its like, the number for others. */
std::string NameOfSystemCall(int inNumber);

/** Bytes of memory that this process occupies; 0 where it cannot be told. */
std::size_t ResidentBytes();
