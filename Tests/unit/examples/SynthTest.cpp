#include "Tests/unit/examples/ExamplePlugin.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace
{
std::vector<STestMessage> Phrase()
{
    return {{0, 0x90, 60, 100},  {0, 0x90, 64, 80},    {700, 0xB0, 64, 127},  {1500, 0x80, 60, 0},
            {1501, 0xB0, 1, 90}, {2048, 0xE0, 0, 100}, {2049, 0x91, 40, 127}, {2600, 0x90, 67, 10},
            {3000, 0xB0, 64, 0}, {3100, 0x90, 64, 0},  {4000, 0x90, 64, 90},  {5000, 0xB0, 123, 0}};
}

TEST(ExampleSynth, CuttingTheBlocksDifferentlyChangesNoBit)
{
    CExamplePlugin synth(EXAMPLE_SYNTH_FILE);
    const Channels whole = synth.Render(8192, Phrase());
    for (const std::vector<std::int32_t>& blocks :
         {std::vector{1}, std::vector{37}, std::vector{512, 0, 3, 1024}, std::vector{8192}})
    {
        SCOPED_TRACE(blocks.front());
        CExamplePlugin other(EXAMPLE_SYNTH_FILE);
        EXPECT_TRUE(other.Render(8192, Phrase(), blocks) == whole);
        synth.Restart(); // leaves nothing behind of what was played before
        EXPECT_TRUE(synth.Render(8192, Phrase(), blocks) == whole);
    }
}

std::vector<char> Chunk(CExamplePlugin& ioPlugin, std::int32_t inScope)
{
    void* data = nullptr;
    const VstIntPtr size = ioPlugin.Dispatch(effGetChunk, inScope, 0, &data);
    const auto* const bytes = static_cast<const char*>(data);
    return {bytes, bytes + size};
}

bool SetChunk(CExamplePlugin& ioPlugin, std::int32_t inScope, std::vector<char> inChunk)
{
    return ioPlugin.Dispatch(effSetChunk, inScope, static_cast<VstIntPtr>(inChunk.size()), inChunk.data()) !=
           0;
}

/** Every program's name and values, and the current program. */
std::vector<std::string> Everything(CExamplePlugin& ioPlugin)
{
    const VstIntPtr current = ioPlugin.Dispatch(effGetProgram);
    std::vector<std::string> all{std::to_string(current)};
    for (std::int32_t program = 0; program < ioPlugin.Effect().numPrograms; ++program)
    {
        all.push_back(ioPlugin.Text(effGetProgramNameIndexed, program));
        ioPlugin.Dispatch(effSetProgram, 0, program);
        for (std::int32_t i = 0; i < ioPlugin.Effect().numParams; ++i)
        {
            all.back().append(1, ' ').append(std::to_string(ioPlugin.Get(i)));
        }
    }
    ioPlugin.Dispatch(effSetProgram, 0, current);
    return all;
}

void ChangeEverything(CExamplePlugin& ioPlugin)
{
    for (std::int32_t program = 0; program < ioPlugin.Effect().numPrograms; ++program)
    {
        ioPlugin.Dispatch(effSetProgram, 0, program);
        ioPlugin.Dispatch(effSetProgramName, 0, 0, std::string("Mine, and longer than fits").data());
        for (std::int32_t i = 0; i < ioPlugin.Effect().numParams; ++i)
        {
            ioPlugin.Set(i, 0.01F * static_cast<float>(10 * program + i));
        }
    }
    ioPlugin.Dispatch(effSetProgram, 0, 2);
}

TEST(ExampleSynth, WhatIsNoWholeChunkOfItsOwnIsRefusedAndChangesNothing)
{
    CExamplePlugin changed(EXAMPLE_SYNTH_FILE);
    ChangeEverything(changed);
    CExamplePlugin synth(EXAMPLE_SYNTH_FILE);
    const std::vector<std::string> before = Everything(synth);
    for (const std::int32_t scope : {0, 1})
    {
        const std::vector<char> chunk = Chunk(changed, scope);
        for (std::size_t i = 0; i < chunk.size(); ++i)
        {
            SCOPED_TRACE(testing::Message() << "scope " << scope << ", byte " << i);
            EXPECT_FALSE(
                SetChunk(synth, scope, {chunk.begin(), chunk.begin() + static_cast<std::ptrdiff_t>(i)}));
            std::vector<char> flipped = chunk;
            flipped[i] = static_cast<char>(flipped[i] ^ 0x10);
            EXPECT_FALSE(SetChunk(synth, scope, flipped));
        }
        std::vector<char> longer = chunk;
        longer.push_back('\0');
        EXPECT_FALSE(SetChunk(synth, scope, longer));
        EXPECT_FALSE(SetChunk(synth, 1 - scope, chunk)) << "the other scope's";
        EXPECT_FALSE(SetChunk(synth, scope, std::vector<char>(std::size_t{64} << 20, 'x')));
        EXPECT_EQ(synth.Dispatch(effSetChunk, scope, 100, nullptr), 0);
        EXPECT_EQ(Everything(synth), before);
    }
}
} // namespace
