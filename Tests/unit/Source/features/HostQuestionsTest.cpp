#include "Interfaces/VST2/HostQuestions.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace
{
std::optional<VstIntPtr> Ask(std::int32_t inOpcode, const SHostFacts& inFacts, void* inPointer = nullptr,
                             EHostCaller inCaller = EHostCaller::kLoaded)
{
    return AnswerQuestion({inCaller, inOpcode, 0, 0, inPointer, 0.0F}, inFacts);
}

TEST(HostQuestions, EachHasItsAnswerAndNoOtherCallHasOne)
{
    char folder[] = "/plug-ins/";
    const SHostFacts idle{.mSampleRate = 44100.0F, .mBlockSize = 512, .mDirectory = folder};
    const SHostFacts rendering{.mSampleRate = 48000.0F, .mBlockSize = 1024, .mIsRendering = true};
    const std::map<std::int32_t, std::pair<VstIntPtr, VstIntPtr>> rows = {
        {audioMasterGetSampleRate, {44100, 48000}},
        {audioMasterGetBlockSize, {512, 1024}},
        {audioMasterGetCurrentProcessLevel, {1, 2}},
        {audioMasterGetAutomationState, {1, 1}},
        {audioMasterGetVendorString, {1, 0}}, // with and without room for it
        {audioMasterGetVendorVersion, {1000, 1000}},
        {audioMasterCanDo, {0, 0}}, // of a text that is no word, and of none
        {audioMasterGetLanguage, {1, 1}},
        {audioMasterGetDirectory, {reinterpret_cast<VstIntPtr>(folder), 0}}};
    for (std::int32_t opcode = -1; opcode <= 60; ++opcode)
    {
        SCOPED_TRACE(opcode);
        const auto row = rows.find(opcode);
        const bool isOne = row != rows.end();
        EXPECT_EQ(std::ranges::count(kHostQuestions, opcode), isOne ? 1 : 0);
        char text[64] = "";
        EXPECT_EQ(Ask(opcode, idle, text), isOne ? std::optional(row->second.first) : std::nullopt);
        EXPECT_EQ(Ask(opcode, rendering), isOne ? std::optional(row->second.second) : std::nullopt);
        EXPECT_STREQ(text, opcode == audioMasterGetVendorString ? "AaxAdapter" : "");
        EXPECT_EQ(Ask(opcode, idle, text, EHostCaller::kUnmatched), std::nullopt);
    }
}

TEST(HostQuestions, WhatTheHostDoesAndNeverDoesIsSaidOfEachWord)
{
    const SHostFacts facts[] = {{.mTakesMidi = true}, {.mResizesEditor = true}, {.mGivesIdleTime = true}};
    const std::pair<std::vector<VstIntPtr>, std::vector<std::string>> rows[] = {
        {{1, 1, 1}, {"sendVstEvents", "sendVstMidiEvent", "sendVstTimeInfo", "startStopProcess"}},
        {{1, -1, -1}, {"receiveVstEvents", "receiveVstMidiEvent"}},
        {{-1, 1, -1}, {"sizeWindow"}},
        {{-1, -1, 1}, {"supplyIdle"}},
        {{-1, -1, -1}, {"reportConnectionChanges", "acceptIOChanges", "sendVstMidiEventFlagIsRealtime"}},
        {{-1, -1, -1}, {"offline", "openFileSelector", "closeFileSelector", "editFile", "shellCategory"}}};
    std::size_t count = 0;
    for (const auto& [answers, words] : rows)
        for (std::string word : words)
        {
            ++count;
            for (std::size_t i = 0; i < std::size(facts); ++i)
                EXPECT_EQ(Ask(audioMasterCanDo, facts[i], word.data()), answers[i]) << word;
        }
    EXPECT_EQ(count, HostAbilities({}).size());
}

TEST(HostQuestions, ARateThatIsNoneIsTheSameOnEachProcessor)
{
    constexpr float infinity = std::numeric_limits<float>::infinity();
    constexpr float none = std::numeric_limits<float>::quiet_NaN();
    for (const auto& [rate, answer] : {std::pair(22050.5F, 22050),
                                       {0.5F, 0},
                                       {0.0F, 0},
                                       {-48000.0F, 0},
                                       {1e9F, 1000000000},
                                       {1e20F, 0},
                                       {infinity, 0},
                                       {-infinity, 0},
                                       {none, 0}})
        EXPECT_EQ(Ask(audioMasterGetSampleRate, {.mSampleRate = rate}), answer) << rate;
}
} // namespace
