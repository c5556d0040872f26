#include "Tools/inspector/ProbePlugin.h"
#include "Tests/doubles/faulty/FaultyPlugin.h"
#include "Tests/support/CTestFolder.h"
#include "Tests/support/FileContents.h"

#include <gtest/gtest.h>

#include <fstream>
#include <utility>

namespace
{
using namespace std::chrono_literals;

SProbeResult Probe(const std::string& inFault, std::chrono::milliseconds inLimit = 30s)
{
    return ProbePlugin(VST2PROBE_FILE, Faulty(inFault), inLimit);
}

TEST(ProbePlugin, EveryBreakdownIsAnAnswerThatNamesTheStep)
{
    struct SRow
    {
        const char* mFault;
        const char* mRefusal; // what it begins with
        const char* mStep;    // what it ends with
    };
    for (const SRow& row :
         {SRow{"NoEntry", "it has no entry function", "of VST 2"},
          SRow{"CrashInEntry", "it crashed (Segmentation fault", "while its entry function ran"},
          SRow{"ExitInEntry", "it ended its process (status 3)", "while its entry function ran"},
          SRow{"ThrowInEntry", "it threw an exception", "exception"},
          SRow{"ReturnNull", "its entry function returned nothing", "nothing"},
          SRow{"WrongMagic", "its entry function returned something", "no VST 2 effect"},
          SRow{"CrashInOpen", "it crashed (Segmentation fault", "while it was opened"},
          SRow{"CrashInRender", "it crashed (Segmentation fault", "while it rendered its first block"},
          SRow{"RefuseAnyVersion", "its entry function returned nothing", "nothing"}})
    {
        SCOPED_TRACE(row.mFault);
        const SProbeResult result = Probe(row.mFault);
        EXPECT_FALSE(result.mFacts);
        EXPECT_TRUE(result.mRefusal.starts_with(row.mRefusal)) << result.mRefusal;
        EXPECT_TRUE(result.mRefusal.ends_with(row.mStep)) << result.mRefusal;
    }
}

TEST(ProbePlugin, AHangEndsWithItsTimeAndNamesTheStep)
{
    for (const auto& [fault, step] :
         {std::pair{"HangInEntry", "its entry function ran"}, std::pair{"HangInOpen", "it was opened"}})
    {
        SCOPED_TRACE(fault);
        const auto start = std::chrono::steady_clock::now();
        EXPECT_EQ(Probe(fault, 1500ms).mRefusal,
                  std::string("it did not come back within 1.5 seconds while ") + step);
        EXPECT_LT(std::chrono::steady_clock::now() - start, 20s);
    }
}

TEST(ProbePlugin, AFileThatCannotBeLoadedIsToldApart)
{
    const std::string whole = Contents(Faulty("None"));
    std::string foreign = whole;
    foreign[18] = '\xB7'; // ELF's number of 64-bit ARM
    std::string program = whole;
    program[16] = 2; // and of a program that has its fixed place
    const std::pair<std::string, const char*> rows[] = {
        {"", "an empty file"},
        {"text", "a file of another kind"},
        {std::string("\xCF\xFA\xED\xFE, and more"), "library for macOS"},
        {"MZ, and more", "library for Windows"},
        {foreign, "another processor, 64-bit ARM"},
        {program, "no library but a program"},
        {whole.substr(0, 40), "cut short: 40 bytes"},
        {whole.substr(0, 5000), "cut short"}}; // half of it may be debug information, which is not missed
    const CTestFolder files;
    const std::filesystem::path folder = files.Path() / "broken \"\xC3\xBC'.vst";
    std::filesystem::create_directories(folder);
    EXPECT_NE(ProbePlugin(VST2PROBE_FILE, folder, 30s).mRefusal.find("there is no executable in it"),
              std::string::npos);
    for (const auto& [bytes, reason] : rows)
    {
        SCOPED_TRACE(reason);
        std::ofstream(folder / "a.so", std::ios::binary) << bytes;
        const SProbeResult result = ProbePlugin(VST2PROBE_FILE, folder, 30s);
        EXPECT_NE(result.mRefusal.find(reason), std::string::npos) << result.mRefusal;
    }
    std::ofstream(folder / "a.so", std::ios::binary) << whole;
    std::filesystem::copy_file(folder / "a.so", folder / "b.so");
    const SProbeResult result = ProbePlugin(VST2PROBE_FILE, folder, 30s);
    ASSERT_TRUE(result.mFacts) << result.mRefusal;
    EXPECT_EQ(result.mFacts->mExecutables, 2);

    EXPECT_EQ(Probe("MissingLibrary").mRefusal, "it needs the library libfaulty_absent.so, which is missing");
}

TEST(ProbePlugin, TheEntryVersionIsTriedOnlyWhereItIsAskedFor)
{
    const SProbeResult plain = Probe("None");
    ASSERT_TRUE(plain.mFacts);
    EXPECT_EQ(plain.mEntryVersion, 0);
    EXPECT_FALSE(plain.mAskedVersion);

    const SProbeResult demanding = Probe("Demanding");
    ASSERT_TRUE(demanding.mFacts);
    EXPECT_EQ(demanding.mEntryVersion, 2400);
    EXPECT_EQ(demanding.mRefusalOfZero, "its entry function returned nothing");
    EXPECT_FALSE(demanding.mFacts->mMidiBeforeOpen);
    EXPECT_TRUE(demanding.mFacts->mMidiAfterOpen);
    EXPECT_TRUE(demanding.mFacts->mOutputPorts.empty());
    EXPECT_FALSE(demanding.mFacts->mPortListCut);
}

TEST(ProbePlugin, WhatThePluginPrintsIsNotTakenForItsAnswer)
{
    const SProbeResult result = Probe("WriteToOutput");
    ASSERT_TRUE(result.mFacts) << result.mRefusal;
    EXPECT_EQ(result.mFacts->mName, "Faulty");
}

TEST(ProbePlugin, WildTextsNumbersAndLabelsArriveHarmless)
{
    const SProbeResult result = Probe("WildAnswers");
    ASSERT_TRUE(result.mFacts) << result.mRefusal;
    EXPECT_TRUE(result.mFacts->mName.starts_with("A\nB\xEF\xBF\xBD")); // what isn't UTF-8 is replaced
    ASSERT_EQ(result.mFacts->mParameters.size(), 1U);
    EXPECT_EQ(result.mFacts->mParameters[0].mValue, 0.0F);
    EXPECT_EQ(result.mFacts->mPrograms.size(), 0U);
    ASSERT_EQ(result.mFacts->mInputPorts.size(), 1U);
    EXPECT_EQ(result.mFacts->mInputPorts[0].mLabel, std::string(64, 'x'));
    EXPECT_EQ(result.mFacts->UniqueIdText(), "0x00000102");
    EXPECT_EQ(result.mFacts->mLatencyAtStart, 0);
    EXPECT_EQ(result.mFacts->mLatencyAfterFirstBlock, 77);
}

TEST(ProbePlugin, ASpeakerPinEndsTheListAsItDoesInAModule)
{
    const SProbeResult result = Probe("SpeakerPin");
    ASSERT_TRUE(result.mFacts) << result.mRefusal;
    EXPECT_TRUE(result.mFacts->mPortListCut);
    EXPECT_TRUE(result.mFacts->mInputPorts.empty());
    EXPECT_TRUE(result.mFacts->mOutputPorts.empty());
}

TEST(ProbePlugin, AMissingProgramIsReportedAndNotTakenForThePluginsFault)
{
    EXPECT_THROW(ProbePlugin("/nowhere/vst2probe", EXAMPLE_SYNTH_FILE, 30s), std::system_error);
}
} // namespace
