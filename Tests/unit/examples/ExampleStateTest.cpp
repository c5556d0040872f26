#include "Tests/unit/examples/ExamplePlugin.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

namespace
{
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

TEST(ExampleState, ABankChunkBringsEveryProgramBackAndAProgramChunkOnlyTheCurrentOne)
{
    CExamplePlugin changed(EXAMPLE_SYNTH_FILE);
    ChangeEverything(changed);
    CExamplePlugin fresh(EXAMPLE_SYNTH_FILE);
    const std::vector<std::string> factory = Everything(fresh);
    ASSERT_NE(Everything(changed), factory);

    ASSERT_TRUE(SetChunk(fresh, 1, Chunk(changed, 1)));
    std::vector<std::string> expected = factory;
    expected[1] = Everything(changed)[3]; // the current program, 2, arrives in the fresh one's current, 0
    EXPECT_EQ(Everything(fresh), expected);

    ASSERT_TRUE(SetChunk(fresh, 0, Chunk(changed, 0)));
    EXPECT_EQ(Everything(fresh), Everything(changed));
}

TEST(ExampleState, WhatIsNoWholeChunkOfItsOwnIsRefusedAndChangesNothing)
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

TEST(ExampleState, BrokenParameterCallsChangeNothing)
{
    for (const char* file : {EXAMPLE_SYNTH_FILE, EXAMPLE_DELAY_FILE})
    {
        SCOPED_TRACE(file);
        CExamplePlugin plugin(file);
        const std::vector<std::string> before = Everything(plugin);
        plugin.Set(0, std::numeric_limits<float>::quiet_NaN());
        plugin.Set(-1, 1.0F);
        plugin.Set(plugin.Effect().numParams, 1.0F);
        plugin.Dispatch(effSetProgram, 0, -1);
        plugin.Dispatch(effSetProgram, 0, plugin.Effect().numPrograms);
        EXPECT_EQ(Everything(plugin), before);
        plugin.Set(0, 7.0F);
        EXPECT_EQ(plugin.Get(0), 1.0F);
        plugin.Set(0, -std::numeric_limits<float>::infinity());
        EXPECT_EQ(plugin.Get(0), 0.0F);
    }
}

TEST(ExampleState, EveryTextFitsWhatTheInterfaceAllowsAndSaysSomething)
{
    for (const char* file : {EXAMPLE_SYNTH_FILE, EXAMPLE_DELAY_FILE})
    {
        CExamplePlugin plugin(file);
        for (std::int32_t i = 0; i < plugin.Effect().numParams; ++i)
        {
            SCOPED_TRACE(testing::Message() << file << ", parameter " << i);
            std::vector<std::string> texts{plugin.Text(effGetParamName, i), plugin.Text(effGetParamLabel, i)};
            for (const float value : {0.0F, 0.37F, 1.0F})
            {
                plugin.Set(i, value);
                texts.push_back(plugin.Text(effGetParamDisplay, i));
                EXPECT_TRUE(std::isfinite(std::stod(texts.back())));
            }
            EXPECT_NE(texts[2], texts[4]);
            for (const std::string& text : texts)
            {
                EXPECT_TRUE(!text.empty() && text.size() <= kVstMaxParamStrLen) << text;
            }
        }
        char text[] = "untouched";
        plugin.Dispatch(effGetParamName, plugin.Effect().numParams, 0, text);
        EXPECT_STREQ(text, "untouched");
    }
}

TEST(ExampleState, ThePinsDescribeStereoPortsWithLabels)
{
    CExamplePlugin synth(EXAMPLE_SYNTH_FILE);
    std::vector<std::string> labels;
    for (std::int32_t pin = 0; pin < synth.Effect().numOutputs; pin += 2)
    {
        VstPinProperties properties{};
        ASSERT_EQ(synth.Dispatch(effGetOutputProperties, pin, 0, &properties), 1);
        EXPECT_EQ(properties.flags, kVstPinIsActive | kVstPinIsStereo);
        labels.emplace_back(properties.label);
    }
    EXPECT_EQ(labels, (std::vector<std::string>{"Main", "Dry", "Sub"}));
    VstPinProperties properties{};
    EXPECT_EQ(synth.Dispatch(effGetOutputProperties, 6, 0, &properties), 0);
    EXPECT_EQ(synth.Dispatch(effGetInputProperties, 0, 0, &properties), 0);
}
} // namespace
