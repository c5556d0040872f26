#include "Source/features/CTransportTime.h"

#include "Interfaces/VST2/HostAnswers.h"
#include "Tools/aaxhost/host/CHostLog.h"
#include "Tools/aaxhost/host/CHostTransport.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <limits>

namespace
{
constexpr std::int32_t kTempo = kVstTempoValid;
constexpr std::int32_t kPpq = kVstPpqPosValid;
constexpr std::int32_t kBars = kVstBarsValid;
constexpr std::int32_t kMeter = kVstTimeSigValid;
constexpr std::int32_t kCycle = kVstCyclePosValid | kVstTransportCycleActive;
constexpr std::int32_t kPlaying = kVstTransportPlaying;
constexpr std::int32_t kAll = kTempo | kPpq | kBars | kMeter | kCycle | kPlaying | kVstNanosValid;
constexpr std::int32_t kFrames = 480;

class TransportTime : public testing::Test
{
protected:
    TransportTime()
    {
        mTime.SetSampleRate(48000.0);
        State().mSampleRate = 48000.0;
        State().mPlaying = State().mLooping = true;
        State().mLoopEndTick = 960000;
    }
    STransportState& State() { return mTransport.State(); }
    /** @return the flags. The host goes on behind it. */
    std::int32_t Write()
    {
        mTime.Write(&mTransport, &mClock, kFrames, mInfo);
        mClock += kFrames;
        State().mSamplePosition += State().mPlaying ? kFrames : 0;
        return mInfo.flags;
    }

    CHostLog mLog;
    CHostTransport mTransport{mLog};
    CTransportTime mTime;
    VstTimeInfo mInfo = InitialTimeInfo(48000.0);
    std::int64_t mClock = 0;
};

TEST_F(TransportTime, WhatACallDoesNotAnswerOrAnswersWithNonsenseIsNotValid)
{
    struct SRow
    {
        const char* mWhat;
        std::int32_t mMissing;
        std::function<void(STransportState&, CHostLog&)> mSpoil;
    };
    const auto fail = [](const char* inCall)
    { return [=](STransportState&, CHostLog& log) { log.FailCall(inCall, 0, -1); }; };
    const auto tempo = [](double inTempo)
    { return [=](STransportState& state, CHostLog&) { state.mTempo = inTempo; }; };
    const auto meter = [](std::int32_t inNumerator, std::int32_t inDenominator)
    {
        return [=](STransportState& state, CHostLog&)
        {
            state.mMeterNumerator = inNumerator;
            state.mMeterDenominator = inDenominator;
        };
    };
    const SRow rows[] = {
        {"nothing", 0, [](STransportState&, CHostLog&) {}},
        {"no tempo call", kTempo, fail("GetCurrentTempo")},
        {"no meter call", kMeter | kBars, fail("GetCurrentMeter")},
        {"no playing call", kPlaying, fail("IsTransportPlaying")},
        {"no tick call", kPpq | kBars, fail("GetCurrentTickPosition")},
        {"no loop call", kCycle, fail("GetCurrentLoopPosition")},
        {"no position call", kBars, fail("GetCurrentNativeSampleLocation")},
        {"no bar call", kBars, fail("GetBarBeatPosition")},
        {"no ticks per quarter", 0, fail("GetTicksPerQuarter")},
        {"tempo 0", kTempo, tempo(0.0)},
        {"tempo below 0", kTempo, tempo(-120.0)},
        {"tempo no number", kTempo, tempo(std::nan(""))},
        {"tempo infinite", kTempo, tempo(std::numeric_limits<double>::infinity())},
        {"meter 0/0", kMeter | kBars, meter(0, 0)},
        {"meter 4/3", kMeter | kBars, meter(4, 3)},
        {"meter -4/4", kMeter | kBars, meter(-4, 4)},
        {"meter 4/-4", kMeter | kBars, meter(4, INT32_MIN)},
        {"a loop that ends before it starts", kCycle,
         [](STransportState& state, CHostLog&) { state.mLoopStartTick = 1920000; }},
        {"an empty loop", kCycle, [](STransportState& state, CHostLog&) { state.mLoopEndTick = 0; }},
    };
    for (const SRow& row : rows)
    {
        SCOPED_TRACE(row.mWhat);
        CHostLog log;
        CHostTransport transport(log);
        transport.State() = State();
        row.mSpoil(transport.State(), log);
        CTransportTime time;
        time.SetSampleRate(48000.0);
        VstTimeInfo info = InitialTimeInfo(48000.0);
        for (int block = 0; block < 2; ++block)
        {
            time.Write(&transport, &mClock, kFrames, info);
            EXPECT_EQ(info.flags & ~kVstTransportChanged, kAll & ~row.mMissing);
        }
    }
    mTime.Write(nullptr, nullptr, kFrames, mInfo);
    EXPECT_EQ(mInfo.flags, 0) << "without a transport";
}

TEST_F(TransportTime, ACallThatAnswersAgainIsValidAgain)
{
    (void)Write(); // the start
    for (const char* call : {"GetCurrentTempo", "GetCurrentMeter", "GetCurrentTickPosition",
                             "GetCurrentLoopPosition", "GetBarBeatPosition"})
    {
        SCOPED_TRACE(call);
        mLog.FailCall(call, 1, -1);
        EXPECT_NE(Write() & kAll, kAll);
        EXPECT_EQ(Write(), kAll | kVstTransportChanged);
        EXPECT_EQ(Write(), kAll);
    }
}

TEST_F(TransportTime, AChangeIsFlaggedInItsOneBlock)
{
    struct SRow
    {
        const char* mWhat;
        std::function<void(STransportState&)> mChange;
    };
    const SRow rows[] = {
        {"start", [](STransportState&) {}},
        {"jump", [](STransportState& state) { state.mSamplePosition += 1; }},
        {"jump back", [](STransportState& state) { state.mSamplePosition = 0; }},
        {"tempo", [](STransportState& state) { state.mTempo = 121.0; }},
        {"meter", [](STransportState& state) { state.mMeterDenominator = 8; }},
        {"loop moved", [](STransportState& state) { state.mLoopEndTick += 1; }},
        {"loop off", [](STransportState& state) { state.mLooping = false; }},
        {"stop", [](STransportState& state) { state.mPlaying = false; }},
        {"start again", [](STransportState& state) { state.mPlaying = true; }},
    };
    for (const SRow& row : rows)
    {
        SCOPED_TRACE(row.mWhat);
        row.mChange(State());
        EXPECT_NE(Write() & kVstTransportChanged, 0);
        for (int block = 0; block < 3; ++block)
            EXPECT_EQ(Write() & kVstTransportChanged, 0);
    }
}

TEST_F(TransportTime, TheBarBeginsWhereItDoes)
{
    // Bars of 7/8 are 3.5 quarter notes, at 120 beats 84,000 samples.
    State().mMeterNumerator = 7;
    State().mMeterDenominator = 8;
    for (const std::int64_t displayTicks : {std::int64_t{CTimeline::kTicksPerQuarter}, std::int64_t{960}})
        for (const std::int64_t sample :
             {0LL, 83999LL, 84000LL, 84001LL, 167999LL, 1000000LL, 999999LL, 5LL, -1LL})
        {
            SCOPED_TRACE(testing::Message() << sample << " with " << displayTicks << " a quarter note");
            State().mDisplayTicksPerQuarter = displayTicks;
            mTime.SetSampleRate(48000.0); // knows nothing of the host
            State().mSamplePosition = sample;
            (void)Write(); // its flags are the other tests'
            EXPECT_EQ(mInfo.barStartPos, 3.5 * std::floor(static_cast<double>(sample) / 84000.0));
            EXPECT_NEAR(mInfo.ppqPos, static_cast<double>(sample) / 24000.0, 1.1e-6);
        }
}

TEST_F(TransportTime, APartOfABlockGoesOnFromTheOneBefore)
{
    State().mSamplePosition = 96000 - 480; // a bar of 4/4 ends there
    (void)Write();
    mTime.Advance(480, mInfo);
    EXPECT_EQ(mInfo.samplePos, 96000.0);
    EXPECT_NEAR(mInfo.ppqPos, 4.0, 1e-5);
    mTime.Advance(480, mInfo);
    EXPECT_EQ(mInfo.barStartPos, 4.0);
    EXPECT_EQ(mInfo.flags & kVstTransportChanged, 0);
    State().mPlaying = false;
    State().mTempo = 1e300; // as far as bars go
    (void)Write();
    const VstTimeInfo before = mInfo;
    mTime.Advance(480, mInfo);
    EXPECT_EQ(mInfo.samplePos, before.samplePos);
    EXPECT_GT(mInfo.nanoSeconds, before.nanoSeconds);
}
} // namespace
