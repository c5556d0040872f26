#include "Tests/unit/adapter/AdapterTest.h"

#include <algorithm>
#include <array>
#include <limits>

namespace
{
class Render : public AdapterTest
{
protected:
    void StartWithMidi()
    {
        Script().results[effCanDo] = 1;
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
    ioScript.shape.numInputs = inInputs;
    ioScript.shape.numOutputs = inOutputs;
    ioScript.inputPins = std::move(inInputPins);
    ioScript.outputPins = std::move(inOutputPins);
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
        {"an endless tempo", std::numeric_limits<double>::infinity(), 48000, 48000.0F, true, 0.0},
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
        Script().events.clear();
        block.Render();
        std::uint32_t seen = 0;
        for (const auto& call : Script().events)
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
    EXPECT_TRUE(std::ranges::all_of(Script().events, [](const auto& inCall) { return inCall.empty(); }));
    Stop();

    Script().results.clear(); // a plug-in that takes no MIDI: the field is four bytes of private data
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
    Script().onProcess = [&](ScriptedEffect&, float** inInputs, float** inOutputs, std::int32_t inFrames)
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
    Script().onProcess = [](ScriptedEffect&, float** inInputs, float** inOutputs, std::int32_t inFrames)
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
    Script().onProcess = [](ScriptedEffect&, float**, float** inOutputs, std::int32_t inFrames)
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
    Script().onProcess = [](ScriptedEffect&, float**, float** inOutputs, std::int32_t)
    {
        inOutputs[0][0] = 3.0F;
        throw std::string("from inside");
    };
    block.Render();
    EXPECT_EQ(block.mOutputs[0][0], 0.0F);
    EXPECT_EQ(block.mOutputs[1][63], 0.0F);
    EXPECT_EQ(block.mOutputs[1][64], CRenderBlock::kUntouched);

    Script().onProcess = [](ScriptedEffect&, float**, float** inOutputs, std::int32_t)
    { inOutputs[7][0] = 1.0F; };
    Effect().Effect().numOutputs = 8;
    block.Render();
    EXPECT_EQ(block.mOutputs[0][0], 0.0F);
}
} // namespace
