#pragma once
#include <cstddef>
#include <functional>
#include <string>
#include <vector>

/** Threads that start together on objects of their own. */
struct SThreads
{
    std::vector<std::function<void()>> mThreads;
    std::function<std::string()> mAfter; // when all have ended. @return what is wrong; empty where nothing is
};

struct STried
{
    std::size_t mOrders = 0;
    std::string mProblem; // of the order that is wrong, with its operations; empty where none is
};

/**
 * Runs threads in every order of their atomic operations, each load with every value that its memory order
 * lets it see; orders that differ only in operations that do not meet are run once. Ends at the first that is
 * wrong.
 *
 * The sources of the threads see the atomics of `ModelAtomic.h`. The model is that of C++ with these limits:
 * a store comes behind the stores that were run before it, a compare-and-exchange reads the newest value, and
 * a sequentially consistent load sees every such store that was run before it.
 *
 * @param inMake makes new objects and the threads on them, the same each time.
 */
STried TryAllOrders(const std::function<SThreads()>& inMake);
