#include "Tools/aaxhost/player/Renderer.h"
#include "Tests/unit/Tools/aaxhost/FakeModule.h"
#include "Tools/aaxhost/check/CallWatch.h"

#include <gtest/gtest.h>
#include <limits>
#include <tuple>
#include <utility>

namespace
{
/** An instance of the fake module and what it rendered. */
class RendererTest : public testing::Test
{
protected:
    void SetUp() override
    {
        auto module = CModule::Open(FakeModuleFile(), mLog);
        ASSERT_TRUE(module) << module.Problem().mSentence;
        mModule = std::move(*module);
        auto instance = CInstance::Create(*mModule, 1000.0);
        ASSERT_TRUE(instance) << instance.Problem().mSentence;
        mInstance = std::move(*instance);
        mJob.mRate = 1000.0;
    }

    void Render()
    {
        mOutput.assign(3, {});
        const auto sink = [this](std::span<const float* const> channels, std::int32_t frames)
        {
            for (std::size_t i = 0; i < channels.size(); ++i)
                mOutput.at(i).insert(mOutput.at(i).end(), channels[i], channels[i] + frames);
            return SDone{};
        };
        const auto done = RenderOffline(*mInstance, mJob, sink);
        ASSERT_TRUE(done) << done.Problem().mSentence;
    }

    CHostLog mLog;
    std::unique_ptr<CModule> mModule;
    std::unique_ptr<CInstance> mInstance;
    SRenderJob mJob;
    std::vector<std::vector<float>> mOutput;
};

SMidiEvent Event(double inSeconds, std::uint8_t inValue) { return {inSeconds, {0x90, 60, inValue}, 3}; }

TEST_F(RendererTest, EveryMidiEventFallsOnItsFrameWhateverTheBlock)
{
    mJob.mFrames = 250;
    // The last two fall on the last frame and past the end; 99.6 ms rounds into the block that starts at 100.
    mJob.mMidi = {Event(0.0, 1),    Event(0.0996, 2), Event(0.1, 4),
                  Event(0.1274, 8), Event(0.249, 16), Event(0.25, 32)};
    std::vector<float> expected(250, 0.0F);
    expected[0] = 1.0F / 128;
    expected[100] = 6.0F / 128;
    expected[127] = 8.0F / 128;
    expected[249] = 16.0F / 128;
    for (const std::int32_t block : {1, 7, 64, 100, 128, 1024, 4096})
    {
        SCOPED_TRACE(block);
        mJob.mBlockFrames = block;
        Render();
        EXPECT_EQ(mOutput[0], expected);
    }
}

TEST_F(RendererTest, AutomationTakesTheCurvesValueAtTheStartOfEachBlock)
{
    const SAudio input{1000, {std::vector<float>(8, 1.0F)}};
    auto curve = CAutomationCurve::Parse("0.002,1\n0.004,0\n");
    ASSERT_TRUE(curve);
    mJob.mInput = &input;
    mJob.mAutomation.push_back({"Level", std::move(*curve)});
    mJob.mFrames = 8;
    mJob.mBlockFrames = 3;
    Render();
    EXPECT_EQ(mOutput[1], (std::vector<float>{1.0F, 1.0F, 1.0F, 0.5F, 0.5F, 0.5F, 0.0F, 0.0F}));
}

TEST_F(RendererTest, TempoAndPositionFollowTheMapAtTheStartOfEachBlock)
{
    mJob.mTimeline = CTimeline({{0.0, 60.0}, {0.005, 120.0}}, {});
    mJob.mFrames = 12;
    mJob.mBlockFrames = 4;
    std::vector<std::pair<double, std::int64_t>> blocks;
    const auto sink = [&](std::span<const float* const>, std::int32_t)
    {
        auto& [tempo, ticks] = blocks.emplace_back();
        EXPECT_EQ(mInstance->Host().Transport().GetCurrentTempo(&tempo), kAAX_Success);
        EXPECT_EQ(mInstance->Host().Transport().GetCurrentTickPosition(&ticks), kAAX_Success);
        return SDone{};
    };
    ASSERT_TRUE(RenderOffline(*mInstance, mJob, sink));
    EXPECT_EQ(blocks,
              (std::vector<std::pair<double, std::int64_t>>{{60.0, 0}, {60.0, 3840}, {120.0, 10560}}));
}

TEST_F(RendererTest, ALoopAndJumpsCutTheBlocksAndTheInputGoesOn)
{
    const SAudio input{1000, {{1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12}}};
    mJob.mInput = &input;
    mJob.mTimeline = CTimeline(600.0); // 100 frames a quarter note
    mJob.mFrames = 12;
    mJob.mBlockFrames = 4;
    using Blocks = std::vector<std::pair<std::int64_t, std::int32_t>>; // position, frames
    const SLoop loop{0.02, 0.05};
    const SLoop late{0.09, 0.1};
    struct SRow
    {
        std::optional<SLoop> mLoop;
        std::vector<SJump> mJumps;
        bool mPlaying;
        Blocks mBlocks;
    };
    for (const SRow& row :
         {SRow{loop, {}, true, {{0, 4}, {4, 1}, {2, 3}, {2, 3}, {2, 1}}},
          SRow{{}, {{0.0, 0.5}, {0.0061, 0.001}}, true, {{500, 4}, {504, 2}, {1, 4}, {5, 2}}},
          SRow{loop, {{0.007, 0.05}}, true, {{0, 4}, {4, 1}, {2, 2}, {50, 4}, {54, 1}}},
          SRow{late,
               {{0.002, 0.008}},
               true,
               {{0, 2}, {8, 2}, {9, 1}, {9, 1}, {9, 1}, {9, 1}, {9, 1}, {9, 1}, {9, 1}, {9, 1}}},
          SRow{loop, {{0.007, 0.05}}, false, {{0, 4}, {0, 3}, {50, 4}, {50, 1}}}})
    {
        SCOPED_TRACE(testing::PrintToString(row.mBlocks));
        mJob.mLoop = row.mLoop;
        mJob.mJumps = row.mJumps;
        mJob.mPlaying = row.mPlaying;
        Blocks blocks;
        std::vector<float> sound;
        const auto sink = [&](std::span<const float* const> channels, std::int32_t frames)
        {
            const STransportState& transport = mInstance->Host().Transport().State();
            EXPECT_EQ(transport.mLooping, row.mLoop.has_value());
            blocks.emplace_back(transport.mSamplePosition, frames);
            sound.insert(sound.end(), channels[1], channels[1] + frames);
            return SDone{};
        };
        ASSERT_TRUE(RenderOffline(*mInstance, mJob, sink));
        EXPECT_EQ(blocks, row.mBlocks);
        EXPECT_EQ(sound, input.mChannels.front());
    }
    mJob.mLoop = SLoop{0.02, 0.021};
    EXPECT_FALSE(RenderOffline(*mInstance, mJob, {}));
}

TEST_F(RendererTest, ATailEndsAfterASecondOfSilenceWhateverTheBlockOrAtItsLimit)
{
    mJob.mPlaying = false; // else the position is heard
    mJob.mMidi = {Event(0.3, 64)};
    mJob.mFrames = 5;
    for (const auto& [most, frames, silent] :
         {std::tuple{5000, 1301, true}, {1296, 1301, true}, {1295, 1300, false}})
        for (const std::int32_t block : {1, 64, 4096})
        {
            SCOPED_TRACE(testing::Message() << most << " in blocks of " << block);
            mJob.mMostTailFrames = most;
            mJob.mBlockFrames = block;
            std::int64_t taken = 0;
            const auto end = RenderOffline(*mInstance, mJob,
                                           [&](std::span<const float* const>, std::int32_t count)
                                           {
                                               taken += count;
                                               return SDone{};
                                           });
            ASSERT_TRUE(end);
            EXPECT_EQ(end->mFrames, frames);
            EXPECT_EQ(taken, frames);
            EXPECT_EQ(end->mIsSilent, silent);
        }
}

TEST_F(RendererTest, WhatIsNoNumberIsNoSilence)
{
    mJob.mPlaying = false;
    SAudio input;
    input.mChannels.assign(1, std::vector<float>(151));
    input.mChannels.front().back() = std::numeric_limits<float>::quiet_NaN();
    mJob.mInput = &input;
    mJob.mFrames = 5;
    mJob.mMostTailFrames = 5000;
    const auto end =
        RenderOffline(*mInstance, mJob, [](std::span<const float* const>, std::int32_t) { return SDone{}; });
    ASSERT_TRUE(end);
    EXPECT_EQ(end->mFrames, 151 + 1000);
}

TEST(RenderCall, APrivateFieldHasRoomForAllOfItsBytes)
{
    SComponent component;
    for (const std::uint32_t size : {1U, 8U, 9U})
    {
        SField& field = component.mFields.emplace_back();
        field.mIndex = static_cast<AAX_CFieldIndex>(component.mFields.size() - 1);
        field.mKind = EFieldKind::PrivateData;
        field.mSize = size;
    }
    CHostLog log;
    CHostTransport transport(log);
    const SRenderCall call(component, 0, 0, log, transport);
    for (const SRenderCall::SBlock& block : call.mBlocks)
        EXPECT_GE(block.mWords.size() * sizeof(block.mWords.front()), block.mSize);
}

TEST_F(RendererTest, TheHostAllocatesNothingDuringARenderCall)
{
    const auto call = mInstance->MakeRenderCall();
    for (std::uint32_t i = 0; i < 100; ++i)
        call->FindNode(AAX_eMIDINodeType_LocalInput)->Add(i, Event(0.0, 1).mBytes);
    const auto watch = [&]
    {
        SCallWatch calls;
        WatchCalls(FakeModuleFile(), calls, [&] { mInstance->Render(*call); });
        return calls;
    };
    EXPECT_EQ(watch(), SCallWatch());
    mLog.RecordRenderCalls(true);
    const int allocations = watch().mHost.Of(EForbiddenKind::kAllocation);
    EXPECT_TRUE(allocations > 0 || !CallWatchObstacle().empty());
    EXPECT_EQ(mLog.Count("GetCurrentNativeSampleLocation"), 1U);
}
} // namespace
