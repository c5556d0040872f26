#include "Tools/vst2driver/CDrivenPlugin.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <stdexcept>
#include <string>
#include <vector>

namespace
{
using Channels = std::vector<std::vector<float>>;

/** The example synthesizer, switched on. */
class CSynth : public CDrivenPlugin
{
public:
    CSynth()
    {
        if (const std::string refusal = Open(EXAMPLE_SYNTH_FILE, 48000.0F); !refusal.empty())
            throw std::runtime_error(refusal);
    }

    /** Renders in blocks, also larger ones than it was told of, whose sizes are taken from `inBlocks` round
     * and round. @param inEvents by time, with their frames in the whole rendering. */
    Channels Render(std::int32_t inFrames, std::span<const SPluginEvent> inEvents,
                    const std::vector<std::int32_t>& inBlocks = {kMaxFrames})
    {
        Channels output(OutputCount(), std::vector<float>(static_cast<std::size_t>(inFrames)));
        auto next = inEvents.begin();
        std::size_t turn = 0;
        for (std::int32_t start = 0; start < inFrames; ++turn)
        {
            const std::int32_t frames = std::min(inBlocks[turn % inBlocks.size()], inFrames - start);
            std::vector<SPluginEvent> due;
            for (; next != inEvents.end() && next->mOffset < start + frames; ++next)
                due.push_back({next->mOffset - start, next->mBytes});
            SendEvents(due);
            std::vector<float*> outs;
            std::ranges::for_each(output, [&](auto& ioChannel) { outs.push_back(ioChannel.data() + start); });
            Effect().processReplacing(&Effect(), nullptr, outs.data(), frames);
            start += frames;
        }
        return output;
    }
};

constexpr SPluginEvent kPhrase[]{{0, {0x90, 60, 100}},    {0, {0x90, 64, 80}},    {700, {0xB0, 64, 127}},
                                 {1500, {0x80, 60, 0}},   {1501, {0xB0, 1, 90}},  {2048, {0xE0, 0, 100}},
                                 {2049, {0x91, 40, 127}}, {2600, {0x90, 67, 10}}, {3000, {0xB0, 64, 0}},
                                 {3100, {0x90, 64, 0}},   {4000, {0x90, 64, 90}}, {5000, {0xB0, 123, 0}}};

TEST(ExampleSynth, CuttingTheBlocksDifferentlyChangesNoBit)
{
    CSynth synth;
    const Channels whole = synth.Render(8192, kPhrase);
    for (const std::vector<std::int32_t>& blocks :
         {std::vector{1}, std::vector{37}, std::vector{512, 0, 3, 1024}, std::vector{8192}})
    {
        SCOPED_TRACE(blocks.front());
        CSynth other;
        EXPECT_TRUE(other.Render(8192, kPhrase, blocks) == whole);
        // Switched off and on, it leaves nothing behind of what was played before.
        synth.Dispatch(effMainsChanged, 0, 0);
        synth.Dispatch(effMainsChanged, 0, 1);
        EXPECT_TRUE(synth.Render(8192, kPhrase, blocks) == whole);
    }
}

/** Every program's name and values, and the current program. */
std::vector<std::string> Everything(CSynth& ioPlugin)
{
    const VstIntPtr current = ioPlugin.Dispatch(effGetProgram);
    std::vector<std::string> all{std::to_string(current)};
    for (std::int32_t program = 0; program < ioPlugin.Effect().numPrograms; ++program)
    {
        all.push_back(ioPlugin.Text(effGetProgramNameIndexed, program));
        ioPlugin.Dispatch(effSetProgram, 0, program);
        for (std::int32_t i = 0; i < ioPlugin.Effect().numParams; ++i)
            all.back().append(1, ' ').append(std::to_string(ioPlugin.GetParameter(i)));
    }
    ioPlugin.Dispatch(effSetProgram, 0, current);
    return all;
}

void ChangeEverything(CSynth& ioPlugin)
{
    for (std::int32_t program = 0; program < ioPlugin.Effect().numPrograms; ++program)
    {
        ioPlugin.Dispatch(effSetProgram, 0, program);
        ioPlugin.Dispatch(effSetProgramName, 0, 0, std::string("Mine, and longer than fits").data());
        for (std::int32_t i = 0; i < ioPlugin.Effect().numParams; ++i)
            ioPlugin.SetParameter(i, 0.01F * static_cast<float>(10 * program + i));
    }
    ioPlugin.Dispatch(effSetProgram, 0, 2);
}

TEST(ExampleSynth, WhatIsNoWholeChunkOfItsOwnIsRefusedAndChangesNothing)
{
    CSynth changed;
    ChangeEverything(changed);
    CSynth synth;
    const std::vector<std::string> before = Everything(synth);
    std::vector<char> huge(std::size_t{64} << 20, 'x');
    for (const std::int32_t scope : {0, 1})
    {
        std::vector<char> chunk = changed.GetChunk(scope);
        for (std::size_t i = 0; i < chunk.size(); ++i)
        {
            SCOPED_TRACE(testing::Message() << "scope " << scope << ", byte " << i);
            EXPECT_FALSE(synth.SetChunk(scope, std::span(chunk).first(i)));
            std::vector<char> flipped = chunk;
            flipped[i] = static_cast<char>(flipped[i] ^ 0x10);
            EXPECT_FALSE(synth.SetChunk(scope, flipped));
        }
        std::vector<char> longer = chunk;
        longer.push_back('\0');
        EXPECT_FALSE(synth.SetChunk(scope, longer));
        EXPECT_FALSE(synth.SetChunk(1 - scope, chunk)) << "the other scope's";
        EXPECT_FALSE(synth.SetChunk(scope, huge));
        EXPECT_EQ(synth.Dispatch(effSetChunk, scope, 100, nullptr), 0);
        EXPECT_EQ(Everything(synth), before);
    }
}
} // namespace
