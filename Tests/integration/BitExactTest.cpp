#include "Interfaces/AAX/AAX_Types.h"
#include "Tests/integration/ModuleBundle.h"
#include "Tools/aaxhost/player/CInstance.h"
#include "Tools/aaxhost/player/CModule.h"
#include "Tools/vst2driver/CDrivenPlugin.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <cstdlib>
#include <random>

namespace
{
constexpr float kRate = 48000.0F;
constexpr double kTempo = 133.7;
constexpr std::size_t kFrames = 24000;
constexpr std::size_t kInputChannels = 4;

using Channels = std::vector<std::vector<float>>;

/** The same for both renderings: input, block sizes, MIDI and parameter changes. */
struct SPerformance
{
    struct SBlock
    {
        std::int32_t mFrames = 0;
        std::vector<SPluginEvent> mEvents;
        std::vector<std::pair<long, float>> mChanges; // parameter and value, ahead of the block
    };
    Channels mInput;
    std::vector<SBlock> mBlocks;
};

SPerformance MakePerformance(long inParameterCount, bool inMidi)
{
    std::mt19937 random(2024);
    SPerformance performance;
    performance.mInput.assign(kInputChannels, std::vector<float>(kFrames + 1024));
    for (std::size_t channel = 0; channel < kInputChannels; ++channel)
        for (std::size_t frame = 0; frame < kFrames; ++frame)
            performance.mInput[channel][frame] =
                static_cast<float>(0.3 * std::sin(0.01 * static_cast<double>(frame * (channel + 1)))) +
                0.1F * (static_cast<float>(random() % 2000) / 1000.0F - 1.0F);
    constexpr std::array<std::int32_t, 7> sizes{64, 1, 512, 1024, 33, 256, 128};
    std::size_t done = 0;
    for (std::size_t i = 0; done < kFrames; ++i)
    {
        SPerformance::SBlock block;
        block.mFrames = sizes[i % sizes.size()];
        const auto note = static_cast<std::uint8_t>(48 + i * 5 % 24);
        const auto frames = static_cast<std::uint32_t>(block.mFrames);
        if (inMidi && i % 2 == 0)
            block.mEvents = {
                {0, {0x90, note, 100}},
                {static_cast<std::int32_t>(random() % frames), {0x90, std::uint8_t(note + 7), 70}}};
        else if (inMidi)
            block.mEvents = {{static_cast<std::int32_t>(random() % frames), {0x80, note}},
                             {block.mFrames - 1, {0xB0, 1, std::uint8_t(i % 128)}}};
        if (inParameterCount > 0 && i % 5 == 3)
            block.mChanges = {{static_cast<long>(random()) % inParameterCount,
                               static_cast<float>(random() % 1000) / 1000.0F}};
        done += static_cast<std::size_t>(block.mFrames);
        performance.mBlocks.push_back(std::move(block));
    }
    return performance;
}

/** What the host's transport says at a position, as a plug-in is to be told it. */
void SetTime(VstTimeInfo& outTime, std::size_t inPosition)
{
    outTime.samplePos = static_cast<double>(inPosition);
    outTime.sampleRate = static_cast<double>(kRate);
    outTime.tempo = static_cast<double>(static_cast<float>(kTempo));
    const double bars = kTempo * outTime.samplePos / static_cast<double>(kRate * 240.0F);
    outTime.ppqPos = (bars - std::floor(bars)) * 4.0;
    outTime.flags = kVstTransportPlaying;
}

Channels RenderBare(const std::filesystem::path& inPlugin, std::int32_t inEntryVersion,
                    const SPerformance& inPerformance)
{
    std::srand(1); // some plug-ins draw from the C library's numbers
    CDrivenPlugin plugin(inEntryVersion);
    EXPECT_EQ(plugin.Open(inPlugin, kRate), "");
    Channels output(plugin.OutputCount());
    std::size_t position = 0;
    for (const SPerformance::SBlock& block : inPerformance.mBlocks)
    {
        for (const auto& [index, value] : block.mChanges)
            if (plugin.GetParameter(static_cast<std::int32_t>(index)) != value)
                plugin.SetParameter(static_cast<std::int32_t>(index), value);
        SetTime(plugin.Time(), position);
        plugin.SendEvents(block.mEvents);
        for (std::size_t channel = 0; channel < std::min(plugin.InputCount(), kInputChannels); ++channel)
            std::copy_n(inPerformance.mInput[channel].begin() + static_cast<std::ptrdiff_t>(position),
                        block.mFrames, plugin.Input(channel).begin());
        EXPECT_TRUE(plugin.Process(block.mFrames));
        for (std::size_t channel = 0; channel < output.size(); ++channel)
            output[channel].insert(output[channel].end(), plugin.Output(channel).begin(),
                                   plugin.Output(channel).begin() + block.mFrames);
        position += static_cast<std::size_t>(block.mFrames);
    }
    return output;
}

long ParameterCount(const std::filesystem::path& inPlugin, std::int32_t inEntryVersion)
{
    CDrivenPlugin plugin(inEntryVersion);
    const std::string refusal = plugin.Open(inPlugin, kRate);
    EXPECT_EQ(refusal, "");
    return refusal.empty() ? plugin.Effect().numParams : 0;
}

Channels RenderModule(CModule& ioModule, const SPerformance& inPerformance)
{
    std::srand(1); // as above
    auto made = CInstance::Create(ioModule, static_cast<double>(kRate));
    if (!made)
    {
        ADD_FAILURE() << made.Problem().mSentence;
        return {};
    }
    CInstance& instance = **made;
    const std::unique_ptr<SRenderCall> call = instance.MakeRenderCall();
    STransportState& transport = instance.Host().Transport().State();
    transport.mTempo = kTempo;
    transport.mPlaying = true;
    Channels output(static_cast<std::size_t>(instance.OutputChannels()));
    std::size_t position = 0;
    for (const SPerformance::SBlock& block : inPerformance.mBlocks)
    {
        for (const auto& [index, value] : block.mChanges)
        {
            char id[8];
            std::snprintf(id, sizeof(id), "%05ld", index);
            EXPECT_EQ(instance.UpdateParameter(id, static_cast<double>(value)), kAAX_Success);
        }
        EXPECT_EQ(instance.FinishUpdates(), kAAX_Success);
        transport.mSamplePosition = static_cast<std::int64_t>(position);
        if (CHostMidiNode* const node = call->FindNode(AAX_eMIDINodeType_LocalInput))
        {
            node->Clear();
            for (const SPluginEvent& event : block.mEvents)
                node->Add(static_cast<std::uint32_t>(event.mOffset), std::span(event.mBytes).first(3));
        }
        call->mFrames = block.mFrames;
        for (std::size_t channel = 0; channel < call->mInputs.size(); ++channel)
            std::copy_n(inPerformance.mInput[channel].begin() + static_cast<std::ptrdiff_t>(position),
                        block.mFrames, call->Input(channel).begin());
        instance.Render(*call);
        for (std::size_t channel = 0; channel < output.size(); ++channel)
            output[channel].insert(output[channel].end(), call->Output(channel).begin(),
                                   call->Output(channel).begin() + block.mFrames);
        position += static_cast<std::size_t>(block.mFrames);
    }
    return output;
}

struct SSubject
{
    const char* mName;
    std::filesystem::path mPlugin;
    bool mIsInstrument;
    bool mNeedsOptions;
};

void PrintTo(const SSubject& inSubject, std::ostream* outStream) { *outStream << inSubject.mName; }

class BitExact : public testing::TestWithParam<SSubject>
{
};

TEST_P(BitExact, TheModuleRendersWhatThePluginRenders)
{
    const SSubject& subject = GetParam();
    if (subject.mPlugin.empty())
        GTEST_SKIP() << "not installed";
    const CModuleBundle bundle(subject.mNeedsOptions ? kOptionsModule : kPlainModule, subject.mPlugin);
    CHostLog log;
    auto module = CModule::Open(bundle.Path().string(), log);
    ASSERT_TRUE(module) << module.Problem().mSentence;
    const std::int32_t entryVersion = subject.mNeedsOptions ? kOptionsEntryVersion : 0;
    const SPerformance performance =
        MakePerformance(ParameterCount(subject.mPlugin, entryVersion), subject.mIsInstrument);
    const Channels bridged = RenderModule(**module, performance);
    const Channels bare = RenderBare(subject.mPlugin, entryVersion, performance);

    float loudest = 0.0F;
    ASSERT_GE(bare.size(), bridged.size());
    ASSERT_FALSE(bridged.empty());
    for (std::size_t channel = 0; channel < bridged.size(); ++channel)
    {
        EXPECT_TRUE(std::equal(bridged[channel].begin(), bridged[channel].end(), bare[channel].begin(),
                               bare[channel].end()))
            << "channel " << channel;
        for (const float sample : bridged[channel])
            loudest = std::max(loudest, std::fabs(sample));
    }
    EXPECT_GT(loudest, 0.001F) << "two silences prove nothing";
    (*module)->Host(); // still alive: the instance went first
    EXPECT_EQ((*module)->LiveObjects(), 0);
}

INSTANTIATE_TEST_SUITE_P(
    Plugins, BitExact,
    testing::Values(SSubject{"ExampleSynth", kSynthPlugin, true, false},
                    SSubject{"ExampleDelay", kDelayPlugin, false, false},
                    SSubject{"Kars", InstalledPlugin("Kars"), true, true},
                    SSubject{"Nekobi", InstalledPlugin("Nekobi"), true, true},
                    SSubject{"MVerb", InstalledPlugin("MVerb"), false, true},
                    SSubject{"ThreeBandEQ", InstalledPlugin("3BandEQ"), false, true},
                    SSubject{"ThreeBandSplitter", InstalledPlugin("3BandSplitter"), false, true},
                    SSubject{"CycleShifter", InstalledPlugin("CycleShifter"), false, true},
                    SSubject{"MaFreeverb", InstalledPlugin("MaFreeverb"), false, true},
                    SSubject{"PingPongPan", InstalledPlugin("PingPongPan"), false, true},
                    SSubject{"SoulForce", InstalledPlugin("SoulForce"), false, true}),
    [](const testing::TestParamInfo<SSubject>& inInfo) { return std::string(inInfo.param.mName); });
} // namespace
