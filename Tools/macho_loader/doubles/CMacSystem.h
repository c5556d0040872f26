#pragma once
#include "Tools/macho_loader/CMachOLoader.h"
#include "Tools/macho_loader/doubles/CBundleStore.h"
#include "Tools/macho_loader/doubles/CCallLog.h"

#include <cstdint>
#include <deque>
#include <vector>

/**
 * A macOS for images under test: the loader, and doubles of CoreFoundation, Carbon and the Objective-C
 * runtime as far as the project calls them. What they know of the real ones is what their documentation says.
 *
 * One at a time in a process. Its images go with it, so it outlives all that is theirs.
 * Threads: one.
 */
class CMacSystem
{
public:
    CMacSystem();
    CMacSystem(const CMacSystem&) = delete;
    CMacSystem& operator=(const CMacSystem&) = delete;
    ~CMacSystem();

    /** The one that there is. Ends the process when there is none. */
    static CMacSystem& Current();

    CMachOLoader& Loader() { return mLoader; }
    /** Calls of CoreFoundation and of the autorelease pools; a refused one of CoreFoundation gives null or
     * false. */
    CCallLog& Calls() { return mCalls; }
    CBundleStore& Objects() { return mObjects; }
    /** The pools that are open, the outermost first; each is a number, and known by where that is. */
    std::vector<int*>& Pools() { return mPools; }
    int& MakePool() { return mPoolsMade.emplace_back(static_cast<int>(mPoolsMade.size()) + 1); }

    std::uint32_t mButtons = 0;   // what Carbon tells
    std::uint32_t mModifiers = 0; // the same

private:
    CMachOLoader mLoader;
    CCallLog mCalls;
    CBundleStore mObjects;
    std::vector<int*> mPools;
    std::deque<int> mPoolsMade;
};
