#include "Tests/interleavings/ModelAtomic.h"

#include <gtest/gtest.h>

#include <memory>
#include <set>

namespace
{
/** What two threads read, over all orders: "store, then load the other's", and "load one, then load the
 * other". */
std::set<std::pair<int, int>> Outcomes(bool inIsMessage, std::memory_order inStore, std::memory_order inLoad)
{
    std::set<std::pair<int, int>> outcomes;
    const STried tried = TryAllOrders(
        [&]
        {
            struct SShared
            {
                std::atomic<int> mX = 0;
                std::atomic<int> mY = 0;
                std::pair<int, int> mRead;
            };
            const auto shared = std::make_shared<SShared>();
            SThreads threads;
            if (inIsMessage)
                threads.mThreads = {
                    [=] { shared->mX.store(1, std::memory_order_relaxed), shared->mY.store(1, inStore); },
                    [=]
                    {
                        shared->mRead.first = shared->mY.load(inLoad);
                        shared->mRead.second = shared->mX.load(std::memory_order_relaxed);
                    }};
            else
                threads.mThreads = {
                    [=] { shared->mX.store(1, inStore), shared->mRead.first = shared->mY.load(inLoad); },
                    [=] { shared->mY.store(1, inStore), shared->mRead.second = shared->mX.load(inLoad); }};
            threads.mAfter = [=, &outcomes]
            {
                outcomes.insert(shared->mRead);
                return std::string();
            };
            return threads;
        });
    EXPECT_EQ(tried.mProblem, "");
    return outcomes;
}

/** The model lets through what the language does, and nothing else: known small programs. */
TEST(Interleavings, AreThoseOfTheMemoryOrders)
{
    using Pairs = std::set<std::pair<int, int>>;
    const Pairs all{{0, 0}, {0, 1}, {1, 0}, {1, 1}};
    EXPECT_EQ(Outcomes(true, std::memory_order_relaxed, std::memory_order_relaxed), all);
    EXPECT_EQ(Outcomes(true, std::memory_order_release, std::memory_order_relaxed), all);
    EXPECT_EQ(Outcomes(true, std::memory_order_release, std::memory_order_acquire),
              (Pairs{{0, 0}, {0, 1}, {1, 1}}));
    EXPECT_EQ(Outcomes(false, std::memory_order_release, std::memory_order_acquire), all);
    EXPECT_EQ(Outcomes(false, std::memory_order_seq_cst, std::memory_order_seq_cst),
              (Pairs{{0, 1}, {1, 0}, {1, 1}}));
}

TEST(Interleavings, ThreadsThatWaitForEachOtherAreFound)
{
    const STried tried = TryAllOrders(
        []
        {
            const auto flag = std::make_shared<std::atomic<int>>(0);
            const auto await = [=]
            {
                while (flag->load() == 0)
                    std::this_thread::yield();
            };
            return SThreads{{await, await}, [] { return std::string(); }};
        });
    EXPECT_TRUE(tried.mProblem.starts_with("Each thread waits for another.")) << tried.mProblem;
}
} // namespace
