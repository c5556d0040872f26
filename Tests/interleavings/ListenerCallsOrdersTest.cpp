#include "Tests/interleavings/ModelAtomic.h"

#include <chrono>
#include <cstdint>
#include <gtest/gtest.h>
#include <memory>

#include "Source/plugins/ListenerCalls.cpp"

namespace
{
struct SListener
{
    std::atomic<bool> mIsAlive = true;
    std::atomic<int> mHeard = 0;
};

struct SShared
{
    void Call()
    {
        const CListenerCalls::CCall call(mCalls);
        if (SListener* const listener = mListener.load())
        {
            mCalledTheDead = mCalledTheDead || !listener->mIsAlive.load(std::memory_order_relaxed);
            listener->mHeard.fetch_add(1, std::memory_order_relaxed);
        }
    }

    CListenerCalls mCalls;
    SListener mFirst;
    SListener mSecond;
    std::atomic<SListener*> mListener = &mFirst;
    bool mCalledTheDead = false;
};

TEST(ListenerCallsOrders, AListenerThatWasTakenBackIsCalledNoMore)
{
    const STried tried = TryAllOrders(
        []
        {
            const auto shared = std::make_shared<SShared>();
            shared->mCalls.Replace(shared->mListener, &shared->mFirst);
            const auto replace = [=]
            {
                shared->mCalls.Replace(shared->mListener, &shared->mSecond);
                shared->mFirst.mIsAlive.store(false, std::memory_order_relaxed);
                shared->Call(); // which does not wait for itself
            };
            return SThreads{{replace, [=] { shared->Call(), shared->Call(); }},
                            [=]
                            {
                                if (shared->mFirst.mHeard.load() + shared->mSecond.mHeard.load() != 3)
                                    return std::string("A call was lost.");
                                return std::string(shared->mCalledTheDead ? "The listener was gone." : "");
                            }};
        });
    EXPECT_EQ(tried.mProblem, "");
    EXPECT_GT(tried.mOrders, 50U);
}
} // namespace
