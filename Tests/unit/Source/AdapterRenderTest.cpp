#include "Source/DescribedShape.h"
#include "Tests/unit/Source/AdapterTest.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

namespace
{
class Render : public AdapterTest
{
protected:
    void StartWithMidi()
    {
        Script().mResults[effCanDo] = 1;
        Start();
    }
    VstTimeInfo RenderAt(CHostTransport& ioTransport)
    {
        CHostMidiNode node(mLog, &ioTransport);
        CRenderBlock block(Instance(), 2, 2);
        block.mInfo.mTransportNode = &node;
        block.Render();
        return *reinterpret_cast<const VstTimeInfo*>(Effect().CallHost(audioMasterGetTime));
    }
};

void DescribePorts(SPluginScript& ioScript, std::int32_t inInputs, std::int32_t inOutputs,
                   std::vector<SScriptedPin> inInputPins, std::vector<SScriptedPin> inOutputPins)
{
    ioScript.mShape.numInputs = inInputs;
    ioScript.mShape.numOutputs = inOutputs;
    ioScript.mInputPins = std::move(inInputPins);
    ioScript.mOutputPins = std::move(inOutputPins);
}

constexpr std::int32_t kMono = 1;       // pin flags
constexpr std::int32_t kStereo = 1 | 2; // pin flags

TEST_F(Render, TimeInformationFollowsTheTransport)
{
    Start();
    struct SRow
    {
        const char* mWhat;
        double mTempo;
        std::int64_t mPosition;
        float mRate;
        bool mPlaying;
        double mQuarter;
    };
    const SRow rows[] = {
        {"the end of a bar is its start", 120.0, 96000, 48000.0F, true, 0.0},
        {"half a bar", 120.0, 48000, 48000.0F, true, 2.0},
        {"three quarters, stopped", 120.0, 72000, 48000.0F, false, 3.0},
        {"before the start", 120.0, -48000, 48000.0F, true, -2.0},
        {"no rate", 120.0, 48000, 0.0F, true, 0.0},
        // 2^63 samples: 2^63 / 44100 seconds of one quarter each
        {"as far as it goes", 60.0, std::numeric_limits<std::int64_t>::max(), 44100.0F, true, 3.71875},
    };
    for (const SRow& row : rows)
    {
        SCOPED_TRACE(row.mWhat);
        Stop();
        mHost.SetSampleRate(row.mRate);
        Start();
        CHostTransport transport(mLog);
        transport.State().mTempo = row.mTempo;
        transport.State().mSamplePosition = row.mPosition;
        transport.State().mPlaying = row.mPlaying;
        const VstTimeInfo time = RenderAt(transport);
        EXPECT_EQ(time.flags, row.mPlaying ? kVstTransportPlaying : 0);
        EXPECT_EQ(time.samplePos, static_cast<double>(row.mPosition));
        EXPECT_EQ(time.sampleRate, static_cast<double>(row.mRate));
        EXPECT_DOUBLE_EQ(time.ppqPos, row.mQuarter);
    }
}

TEST_F(Render, TempoIsRoundedToSinglePrecisionAndTheLastOneStays)
{
    Start();
    CHostTransport transport(mLog);
    transport.State().mTempo = 120.1;
    EXPECT_EQ(RenderAt(transport).tempo, static_cast<double>(120.1F));
    for (const double none : {std::nan(""), std::numeric_limits<double>::infinity(), 1e300, 0.0, -120.0})
    {
        transport.State().mTempo = none;
        EXPECT_EQ(RenderAt(transport).tempo, static_cast<double>(120.1F)) << none;
    }
    transport.SetResult(kAAX_ErrorNullObject);
    EXPECT_EQ(RenderAt(transport).tempo, static_cast<double>(120.1F));
    CRenderBlock block(Instance(), 2, 2);
    block.Render(); // no transport node at all
    CHostMidiNode empty(mLog, nullptr);
    block.mInfo.mTransportNode = &empty;
    block.Render(); // a node without a transport
    EXPECT_EQ(RenderAt(transport).flags, 0);
}

TEST_F(Render, EveryPacketArrivesInOrderInCallsOfAtMost300)
{
    StartWithMidi();
    for (const std::uint32_t count : {0U, 1U, 100U, 101U, 300U, 301U, 1000U, 3U})
    {
        SCOPED_TRACE(count);
        CHostMidiNode node(mLog);
        for (std::uint32_t i = 0; i < count; ++i)
            node.Add(i % 64, std::array<std::uint8_t, 3>{0x90, static_cast<std::uint8_t>(i & 0x7F),
                                                         static_cast<std::uint8_t>(i >> 7)});
        CRenderBlock block(Instance(), 0, 0);
        block.mInfo.mInputNode = &node;
        Script().mEvents.clear();
        block.Render();
        std::uint32_t seen = 0;
        for (const auto& call : Script().mEvents)
        {
            EXPECT_LE(call.size(), 300U);
            for (const VstMidiEvent& event : call)
            {
                ASSERT_EQ(static_cast<std::uint8_t>(event.midiData[1]) +
                              128U * static_cast<std::uint8_t>(event.midiData[2]),
                          seen);
                ASSERT_EQ(static_cast<std::uint32_t>(event.deltaFrames), seen % 64);
                ++seen;
            }
        }
        EXPECT_EQ(seen, count);
        EXPECT_EQ(Script().TakeLog().back(), "processReplacing 64");
    }
}

TEST_F(Render, NodesWithoutContentsAndFieldsThatAreNoNodesAreLeftAlone)
{
    StartWithMidi();
    CHostMidiNode hidden(mLog);
    hidden.HideStream(true);
    CRenderBlock block(Instance(), 0, 0);
    block.mInfo.mInputNode = &hidden;
    block.Render();
    block.mInfo.mInputNode = nullptr;
    block.Render();
    EXPECT_TRUE(std::ranges::all_of(Script().mEvents, [](const auto& inCall) { return inCall.empty(); }));
    Stop();

    Script().mResults.clear(); // a plug-in that takes no MIDI: the field is four bytes of private data
    Start();
    std::array<std::uint32_t, 1> privateData{0xDEADBEEF};
    CRenderBlock other(Instance(), 0, 0);
    other.mInfo.mInputNode = reinterpret_cast<AAX_IMIDINode*>(privateData.data());
    other.Render();
    EXPECT_EQ(Script().TakeLog().back(), "processReplacing 64");
}

TEST_F(Render, HostBuffersAreHandedOnAsTheyAreWhereTheySuffice)
{
    DescribePorts(Script(), 2, 2, {{"", kStereo}, {"", kStereo}}, {{"", kStereo}, {"", kStereo}});
    Start();
    CRenderBlock block(Instance(), 2, 2);
    Script().mOnProcess = [&](ScriptedEffect&, float** inInputs, float** inOutputs, std::int32_t inFrames)
    {
        EXPECT_EQ(inInputs, block.mInfo.mAudioInputs);
        EXPECT_EQ(inOutputs, block.mInfo.mAudioOutputs);
        EXPECT_EQ(inFrames, 64);
    };
    block.Render();
    EXPECT_EQ(Script().TakeLog().back(), "processReplacing 64");
}

TEST_F(Render, ChannelsBeyondTheDescriptionAreSilentInEveryBlockAndUnheard)
{
    // One mono pin each way in front of three channels.
    DescribePorts(Script(), 3, 3, {{"", kMono}}, {{"", kMono}});
    Start();
    Script().mOnProcess = [](ScriptedEffect&, float** inInputs, float** inOutputs, std::int32_t inFrames)
    {
        for (std::int32_t frame = 0; frame < inFrames; ++frame)
        {
            inOutputs[0][frame] = inInputs[0][frame] + inInputs[1][frame] + inInputs[2][frame];
            inInputs[1][frame] = inInputs[2][frame] = 5.0F; // some plug-ins write into their inputs
            inOutputs[1][frame] = inOutputs[2][frame] = 7.0F;
        }
    };
    CRenderBlock block(Instance(), 1, 1);
    for (int i = 0; i < 2; ++i)
    {
        block.Render();
        EXPECT_EQ(block.mOutputs[0][63], 1.0F);
        EXPECT_EQ(block.mOutputs[0][64], CRenderBlock::kUntouched);
    }
}

TEST_F(Render, MorePortsThanAuxiliaryStemsOverrunNothing)
{
    std::vector<SScriptedPin> pins(40, SScriptedPin{"Out", kMono});
    DescribePorts(Script(), 0, 40, {}, pins);
    Start();
    Script().mOnProcess = [](ScriptedEffect&, float**, float** inOutputs, std::int32_t inFrames)
    {
        for (int channel = 0; channel < 40; ++channel)
            std::fill_n(inOutputs[channel], inFrames, static_cast<float>(channel));
    };
    CRenderBlock block(Instance(), 1, 33); // the main stem and 32 auxiliary ones
    block.Render();
    for (std::size_t channel = 0; channel < 33; ++channel)
        EXPECT_EQ(block.mOutputs[channel][0], static_cast<float>(channel));
}

TEST_F(Render, APluginThatThrowsOrGrowsGivesSilence)
{
    DescribePorts(Script(), 2, 2, {{"", kStereo}, {"", kStereo}}, {{"", kStereo}, {"", kStereo}});
    Start();
    CRenderBlock block(Instance(), 2, 2);
    Script().mOnProcess = [](ScriptedEffect&, float**, float** inOutputs, std::int32_t)
    {
        inOutputs[0][0] = 3.0F;
        throw std::string("from inside");
    };
    block.Render();
    EXPECT_EQ(block.mOutputs[0][0], 0.0F);
    EXPECT_EQ(block.mOutputs[1][63], 0.0F);
    EXPECT_EQ(block.mOutputs[1][64], CRenderBlock::kUntouched);

    Script().mOnProcess = [](ScriptedEffect&, float**, float** inOutputs, std::int32_t)
    { inOutputs[7][0] = 1.0F; };
    Effect().Effect().numOutputs = 8;
    block.Render();
    EXPECT_EQ(block.mOutputs[0][0], 0.0F);
}

TEST_F(Render, ACopyWithOtherPortsIsFittedToWhatWasDescribed)
{
    struct SRow
    {
        std::int32_t mInputs, mOutputs, mTakesMidi; // of the copy; stereo and a MIDI node are described
        std::size_t mWritten;
    };
    RememberDescription({2, 2, true});
    for (const SRow& row : {SRow{2, 4, 1, 2}, {4, 2, 0, 2}, {2, 1, 1, 1}, {1, 0, 0, 0}, {0, -3, 0, 0}})
    {
        SCOPED_TRACE(testing::Message() << row.mInputs << " in, " << row.mOutputs << " out");
        DescribePorts(Script(), row.mInputs, row.mOutputs, {4, {"", kMono}}, {4, {"", kMono}});
        Script().mResults[effCanDo] = row.mTakesMidi;
        Start();
        Script().mOnProcess = [&](ScriptedEffect&, float** inInputs, float** inOutputs, std::int32_t inFrames)
        {
            for (std::int32_t i = 0; i < row.mInputs; ++i)
                EXPECT_EQ(inInputs[i][inFrames - 1], i < 2 ? 1.0F : 0.0F);
            for (std::int32_t i = 0; i < row.mOutputs; ++i)
                std::fill_n(inOutputs[i], inFrames, 3.0F);
        };
        CHostMidiNode node(mLog);
        node.Add(0, std::array<std::uint8_t, 3>{0x90, 60, 100});
        CRenderBlock block(Instance(), 2, 2);
        block.mInfo.mInputNode = &node;
        for (int i = 0; i < 2; ++i)
            block.Render();
        EXPECT_EQ(Script().mEvents.size(), row.mTakesMidi != 0 ? 2U : 0U);
        for (std::size_t i = 0; i < 2; ++i)
        {
            EXPECT_EQ(block.mOutputs[i][CRenderBlock::kFrames - 1], i < row.mWritten ? 3.0F : 0.0F);
            EXPECT_EQ(block.mOutputs[i][CRenderBlock::kFrames], CRenderBlock::kUntouched);
        }
        Stop();
        Script().Reset();
    }
}

TEST_F(Render, WhatThePluginCannotWriteIsSilent)
{
    DescribePorts(Script(), 2, 2, {{"", kStereo}, {"", kStereo}}, {});
    Script().mShape.numOutputs = 0; // a meter: the host is told of outputs like its inputs
    Start();
    CRenderBlock meter(Instance(), 2, 2);
    meter.Render();
    EXPECT_EQ(meter.mOutputs[1][CRenderBlock::kFrames - 1], 0.0F);
    Stop();
    Script().mOnCreate = [](AEffect& ioEffect) { ioEffect.processReplacing = nullptr; };
    DescribePorts(Script(), 2, 2, {{"", kStereo}, {"", kStereo}}, {{"", kStereo}, {"", kStereo}});
    Start();
    CRenderBlock mute(Instance(), 2, 2);
    mute.Render();
    EXPECT_EQ(mute.mOutputs[1][CRenderBlock::kFrames - 1], 0.0F);
}

TEST_F(Render, BlocksBeyondTheAnnouncedSizeGoInPartsWithTheirEventsAndTimes)
{
    Script().mResults[effCanDo] = 1;
    DescribePorts(Script(), 2, 2, {{"", kStereo}, {"", kStereo}}, {{"", kStereo}, {"", kStereo}});
    mHost.SetSampleRate(48000.0F);
    Start();
    std::vector<std::pair<double, double>> times;
    Script().mOnProcess =
        [&](ScriptedEffect& ioEffect, float** inInputs, float** inOutputs, std::int32_t inFrames)
    {
        const auto& time = *reinterpret_cast<const VstTimeInfo*>(ioEffect.CallHost(audioMasterGetTime));
        times.emplace_back(time.samplePos, time.ppqPos);
        std::copy_n(inInputs[1], inFrames, inOutputs[1]);
    };
    CHostMidiNode midi(mLog);
    for (const std::uint32_t frame : {0U, 1023U, 1024U, 2500U, 9999U})
        midi.Add(frame, std::array<std::uint8_t, 3>{0x90, 60, 100});
    CHostTransport transport(mLog);
    transport.State().mTempo = 120.0;
    transport.State().mPlaying = true;
    CHostMidiNode node(mLog, &transport);
    constexpr std::int32_t kLong = 2500;
    CRenderBlock block(Instance(), 2, 2, kLong);
    for (std::int32_t i = 0; i < kLong; ++i)
        block.mInputs[1][static_cast<std::size_t>(i)] = static_cast<float>(i);
    block.mInfo.mInputNode = &midi;
    block.mInfo.mTransportNode = &node;
    block.Render();

    EXPECT_TRUE(std::equal(block.mInputs[1].begin(), block.mInputs[1].end(), block.mOutputs[1].begin()));
    EXPECT_EQ(block.mOutputs[1][kLong], CRenderBlock::kUntouched);
    EXPECT_EQ(TakePluginCalls(),
              (Lines{"effProcessEvents", "processReplacing 1024", "effProcessEvents", "processReplacing 1024",
                     "effProcessEvents", "processReplacing 452"}));
    ASSERT_EQ(Script().mEvents.size(), 3U);
    EXPECT_EQ(Script().mEvents[0].size(), 2U);
    EXPECT_EQ(Script().mEvents[0][1].deltaFrames, 1023);
    EXPECT_EQ(Script().mEvents[1][0].deltaFrames, 0);
    EXPECT_EQ(Script().mEvents[2][0].deltaFrames, 452);
    EXPECT_EQ(Script().mEvents[2][1].deltaFrames, 9999 - 2048);
    EXPECT_EQ(times, (std::vector<std::pair<double, double>>{
                         {0.0, 0.0}, {1024.0, 1024.0 / 24000.0}, {2048.0, 2048.0 / 24000.0}}));

    block.mFrames = -1;
    block.Render();
    EXPECT_EQ(TakePluginCalls(), Lines{});
}
} // namespace
