#include "Libs/AAXLibrary/source/AAX_CPacketDispatcher.h"
#include "Libs/AAXLibrary/source/AAX_VController.h"
#include "Tests/unit/Libs/TestParameters.h"
#include "Tools/aaxhost/host/CHostLog.h"
#include "Tools/aaxhost/host/CInstanceHost.h"

#include <gtest/gtest.h>

#include <chrono>
#include <functional>
#include <future>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

namespace
{
/** Notes who was called and fills one byte. */
class CNotingHandler
{
public:
    AAX_Result Fill(AAX_CParamID inId, AAX_CPacket& outPacket)
    {
        mCalls.emplace_back(inId);
        *static_cast<char*>(outPacket.mPacketData.Get(1)) = *inId;
        outPacket.mDataSize = 1;
        if (mDuringCall)
            mDuringCall();
        return mResult;
    }
    std::vector<std::string> mCalls;
    AAX_Result mResult = kAAX_Success;
    std::function<void()> mDuringCall;
};

class PacketDispatcher : public testing::Test
{
protected:
    PacketDispatcher() { mDispatcher.Initialize(&mController, &mParameters); }
    void Register(const char* inId, AAX_CFieldIndex inField)
    {
        const AAX_CPacketHandler<CNotingHandler> handler(&mHandler, &CNotingHandler::Fill);
        ASSERT_EQ(mDispatcher.RegisterPacket(inId, inField, &handler), kAAX_Success);
    }

    CHostLog mLog;
    CInstanceHost mHost{mLog};
    AAX_VController mController{mHost.Unknown()};
    CTestEffectParameters mParameters;
    CNotingHandler mHandler;
    AAX_CPacketDispatcher mDispatcher;
};

TEST_F(PacketDispatcher, AnotherThreadWaitsWhilePacketsAreSent)
{
    Register("a", 1);
    std::future<AAX_Result> other;
    mHandler.mDuringCall = [&]
    {
        other = std::async(std::launch::async, [&] { return mDispatcher.SetDirty("a", true); });
        EXPECT_EQ(other.wait_for(std::chrono::milliseconds(50)), std::future_status::timeout);
    };
    EXPECT_EQ(mDispatcher.Dispatch(), kAAX_Success);
    EXPECT_EQ(other.get(), kAAX_Success);
}

TEST_F(PacketDispatcher, EveryPacketIsPostedFirstAndOnlyChangedOnesAfterwards)
{
    EXPECT_EQ(mDispatcher.Dispatch(), kAAX_Success);
    Register("b", 1);
    Register("a", 2);
    EXPECT_EQ(mDispatcher.Dispatch(), kAAX_Success);
    EXPECT_EQ(mHandler.mCalls, (std::vector<std::string>{"a", "b"}));
    EXPECT_EQ(mLog.Calls(), (std::vector<std::string>{"PostPacket(2, 1 bytes)", "PostPacket(1, 1 bytes)"}));
    mLog.Clear();
    EXPECT_EQ(mDispatcher.Dispatch(), kAAX_Success);
    EXPECT_EQ(mDispatcher.SetDirty("c", true), kAAX_Success);
    EXPECT_EQ(mDispatcher.SetDirty("b", true), kAAX_Success);
    EXPECT_EQ(mDispatcher.SetDirty("a", true), kAAX_Success);
    EXPECT_EQ(mDispatcher.SetDirty("a", false), kAAX_Success);
    EXPECT_EQ(mDispatcher.Dispatch(), kAAX_Success);
    EXPECT_EQ(mLog.Calls(), (std::vector<std::string>{"PostPacket(1, 1 bytes)"}));
}

TEST_F(PacketDispatcher, SharedPacketIsBuiltOnceByTheFirstIdentifierWhicheverChanged)
{
    Register("b", 7);
    Register("a", 7);
    for (const char* const changed : {"a", "b"})
    {
        SCOPED_TRACE(changed);
        ASSERT_EQ(mDispatcher.Dispatch(), kAAX_Success);
        mHandler.mCalls.clear();
        mLog.Clear();
        EXPECT_EQ(mDispatcher.SetDirty(changed, true), kAAX_Success);
        EXPECT_EQ(mDispatcher.Dispatch(), kAAX_Success);
        EXPECT_EQ(mHandler.mCalls, (std::vector<std::string>{"a"}));
        EXPECT_EQ(mLog.Count("PostPacket"), 1U);
    }
}

TEST_F(PacketDispatcher, PacketOfAFailedHandlerIsNeitherPostedNorTriedAgain)
{
    Register("a", 1);
    mHandler.mResult = kAAX_ErrorNullObject;
    EXPECT_EQ(mDispatcher.Dispatch(), kAAX_Success);
    EXPECT_EQ(mDispatcher.Dispatch(), kAAX_Success);
    EXPECT_EQ(mHandler.mCalls.size(), 1U);
    EXPECT_EQ(mLog.Count("PostPacket"), 0U);
}

TEST_F(PacketDispatcher, HandlerThatThrowsFailsTheCallAndIsAskedAgainAndTheOthersArePosted)
{
    Register("a", 1);
    Register("b", 2);
    mHandler.mDuringCall = [this]
    {
        mHandler.mDuringCall = {};
        throw std::runtime_error("a");
    };
    EXPECT_EQ(mDispatcher.Dispatch(), kAAX_ErrorNullObject);
    EXPECT_EQ(mLog.Calls(), (std::vector<std::string>{"PostPacket(2, 1 bytes)"}));
    EXPECT_EQ(mDispatcher.Dispatch(), kAAX_Success);
    EXPECT_EQ(mHandler.mCalls, (std::vector<std::string>{"a", "b", "a"}));
}

TEST_F(PacketDispatcher, AnswerIsThatOfTheLastPacketPosted)
{
    Register("a", 1);
    Register("b", 2);
    mLog.FailCall("PostPacket", 2, kAAX_ErrorUnsupported);
    EXPECT_EQ(mDispatcher.Dispatch(), kAAX_ErrorUnsupported);
    EXPECT_EQ(mDispatcher.SetDirty("a", true), kAAX_Success);
    EXPECT_EQ(mDispatcher.SetDirty("b", true), kAAX_Success);
    mLog.FailCall("PostPacket", 1, kAAX_ErrorUnsupported);
    EXPECT_EQ(mDispatcher.Dispatch(), kAAX_Success);
}

TEST_F(PacketDispatcher, SingleValueHasTheSizeAndBytesOfItsType)
{
    mParameters.Add(MakeBool("bool", true));
    mParameters.Add(MakeFloat("float", 0.5F));
    mParameters.Add(std::make_unique<CTypedParameter>("int", std::int32_t{-2}));
    mParameters.Add(std::make_unique<CTypedParameter>("double", 1.0));
    mParameters.Add(std::make_unique<CTypedParameter>("text", AAX_CString("x")));
    struct SRow
    {
        const char* mId;
        AAX_Result mResult;
        std::string mBytes;
    };
    using namespace std::string_literals;
    for (const SRow& row :
         {SRow{"bool", kAAX_Success, "\1\0\0\0"s}, SRow{"float", kAAX_Success, "\0\0\0\x3F"s},
          SRow{"int", kAAX_Success, "\xFE\xFF\xFF\xFF"s},
          SRow{"double", kAAX_Success, "\0\0\0\0\0\0\xF0\x3F"s}, SRow{"text", kAAX_ErrorNullObject, ""s},
          SRow{"none", kAAX_ErrorNullObject, ""s}})
    {
        SCOPED_TRACE(row.mId);
        AAX_CPacket packet(0);
        EXPECT_EQ(mDispatcher.GenerateSingleValuePacket(row.mId, packet), row.mResult);
        EXPECT_EQ(std::string(static_cast<const char*>(packet.mPacketData.Get()), packet.mDataSize),
                  row.mBytes);
    }
}

TEST_F(PacketDispatcher, HandlerMayCallBackOnItsOwnThread)
{
    Register("a", 1);
    Register("b", 2);
    mHandler.mDuringCall = [this]
    {
        EXPECT_EQ(mDispatcher.SetDirty("b", false), kAAX_Success);
        Register("c", 3);
        mHandler.mDuringCall = {};
    };
    EXPECT_EQ(mDispatcher.Dispatch(), kAAX_Success);
    EXPECT_EQ(mHandler.mCalls, (std::vector<std::string>{"a", "c"}));
}

TEST_F(PacketDispatcher, ChangesFromSeveralThreadsAreNeitherLostNorHandledTwiceAtOnce)
{
    constexpr int kRounds = 300;
    Register("a", 1);
    const auto work = [this]
    {
        for (int round = 0; round < kRounds; ++round)
        {
            EXPECT_EQ(mDispatcher.SetDirty("a", true), kAAX_Success);
            EXPECT_EQ(mDispatcher.Dispatch(), kAAX_Success);
        }
    };
    std::thread other(work);
    work();
    other.join();
    // The handler's list is protected by the dispatcher's lock alone.
    EXPECT_GE(mHandler.mCalls.size(), static_cast<std::size_t>(kRounds));
    EXPECT_EQ(mHandler.mCalls.size(), mLog.Count("PostPacket"));
}

TEST(Mutex, OnlyTheOwnerOpensItAndANestedScopeDoesNot)
{
    AAX_CMutex mutex;
    const auto fromAnotherThread = [&mutex]
    {
        bool got = false;
        std::thread(
            [&]
            {
                mutex.Unlock(); // not the owner: nothing happens
                got = mutex.Try_Lock();
                if (got)
                    mutex.Unlock();
            })
            .join();
        return got;
    };
    {
        const AAX_CMutexScope outer(mutex);
        EXPECT_FALSE(mutex.Lock());
        EXPECT_TRUE(mutex.Try_Lock());
        {
            const AAX_CMutexScope inner(mutex);
        }
        EXPECT_FALSE(fromAnotherThread());
    }
    EXPECT_TRUE(fromAnotherThread());
    EXPECT_TRUE(mutex.Lock()); // the other thread has given it back
    mutex.Unlock();
}

TEST(PacketData, NoBytesAtAllIsAnErrorOfTheHandler)
{
    AAX_CPacket packet(0);
    EXPECT_THROW(packet.mPacketData.Get(0), std::out_of_range);
    EXPECT_THROW((void)packet.mPacketData.Get(), std::out_of_range);
    EXPECT_NE(packet.mPacketData.Get(3), nullptr);
}
} // namespace
