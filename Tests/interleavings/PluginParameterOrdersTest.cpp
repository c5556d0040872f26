#include "Tests/interleavings/ModelAtomic.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <gtest/gtest.h>
#include <memory>
#include <optional>
#include <type_traits>

#include "Source/CPluginParameter.cpp"

namespace
{
constexpr double kRefused = 0.5;

struct SShared
{
    /** The plug-in reports a value on some thread, and the host is asked. */
    void Report(double inValue)
    {
        const auto request = mParameter.NoteRequest(inValue);
        if (inValue == kRefused)
            mParameter.TakeBack(request);
        else
            mAsked.fetch_add(1, std::memory_order_release);
    }
    /** The host answers, in order, what it was asked for up to now. */
    void Answer()
    {
        for (const int asked = mAsked.load(std::memory_order_acquire); mAnswered < asked; ++mAnswered)
            mIsWrong = !mParameter.Settle(mAnswered == 0 ? 0.25 : 0.75) || mIsWrong;
    }
    /** @return what is wrong once the host has answered all. */
    std::string Problem()
    {
        Answer();
        if (mIsWrong)
            return "An answer is taken for the host's own.";
        return mParameter.IsWaiting() ? "A request waits for ever." : "";
    }

    CPluginParameter mParameter;
    std::atomic<int> mAsked = 0;
    int mAnswered = 0; // the host's
    bool mIsWrong = false;
};

void ExpectRight(const std::function<SThreads(const std::shared_ptr<SShared>&)>& inThreads)
{
    const STried tried = TryAllOrders([&] { return inThreads(std::make_shared<SShared>()); });
    EXPECT_EQ(tried.mProblem, "");
    EXPECT_GT(tried.mOrders, 10U);
}

TEST(PluginParameterOrders, EachRequestIsSettledByItsAnswer)
{
    ExpectRight(
        [](const std::shared_ptr<SShared>& inShared)
        {
            return SThreads{
                {[=] { inShared->Report(0.25), inShared->Report(0.75); }, [=] { inShared->Answer(); }},
                [=] { return inShared->Problem(); }};
        });
}

TEST(PluginParameterOrders, ARequestThatIsRefusedTakesNoOtherWithIt)
{
    ExpectRight(
        [](const std::shared_ptr<SShared>& inShared)
        {
            return SThreads{{[=] { inShared->Report(0.25); }, [=] { inShared->Report(kRefused); }},
                            [=] { return inShared->Problem(); }};
        });
}

TEST(PluginParameterOrders, ABeatForgetsNoRequestThatIsYoung)
{
    ExpectRight(
        [](const std::shared_ptr<SShared>& inShared)
        {
            (void)inShared->mParameter.NoteRequest(1.0); // which the host leaves out
            for (int beat = 1; beat < CPluginParameter::kQuietBeats; ++beat)
                (void)inShared->mParameter.TimerBeat();
            return SThreads{
                {[=] { inShared->Report(0.25); }, [=] { (void)inShared->mParameter.TimerBeat(); }},
                [=] { return inShared->Problem(); }};
        });
}
} // namespace
