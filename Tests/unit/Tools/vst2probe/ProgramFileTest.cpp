#include "Tests/support/CTestFolder.h"
#include "Tests/support/FileContents.h"
#include "Tests/unit/Tools/vst2probe/RunProbe.h"

#include <gtest/gtest.h>

#include <fstream>
#include <string>

namespace
{
class ProgramFile : public testing::TestWithParam<const char*>
{
protected:
    std::string Command(const char* inAction, const std::string& inPlugin) const
    {
        return std::string(GetParam()) + " " + inAction + " " + inPlugin + " " + mFile;
    }

    const CTestFolder mFolder;
    const std::string mFile = mFolder.File("program");
};

TEST_P(ProgramFile, WhatWasSavedLoadsAgainAndIsOnlyForItsOwnPlugin)
{
    EXPECT_EQ(Vst2probe(Command("save", EXAMPLE_SYNTH_FILE)).mExit, 0);
    const std::string saved = Contents(mFile);
    EXPECT_TRUE(saved.starts_with("CcnK"));
    const SToolRun loaded = Vst2probe(Command("load", EXAMPLE_SYNTH_FILE));
    EXPECT_EQ(loaded.mExit, 0);
    EXPECT_NE(loaded.mOutput.find("Cutoff"), std::string::npos) << loaded.mOutput;

    const SToolRun foreign = Vst2probe(Command("load", EXAMPLE_DELAY_FILE));
    EXPECT_EQ(foreign.mExit, 1);
    EXPECT_NE(foreign.mErrors.find("another plug-in's"), std::string::npos) << foreign.mErrors;
    std::ofstream(mFile, std::ios::binary | std::ios::trunc) << saved.substr(0, saved.size() - 1);
    EXPECT_EQ(Vst2probe(Command("load", EXAMPLE_SYNTH_FILE)).mExit, 1);
}

TEST_P(ProgramFile, ACrashIsAnAnswerAndWrongUsageCode2)
{
    const SToolRun crash = Vst2probe(Command("save", Faulty("CrashInOpen")));
    EXPECT_EQ(crash.mExit, 1);
    EXPECT_NE(crash.mErrors.find("it crashed (Segmentation fault, SIGSEGV) while it was being loaded"),
              std::string::npos)
        << crash.mErrors;
    EXPECT_EQ(Vst2probe(std::string(GetParam()) + " save").mExit, 2);
    EXPECT_EQ(Vst2probe(std::string(GetParam()) + " keep a b").mExit, 2);
}

INSTANTIATE_TEST_SUITE_P(Kinds, ProgramFile, testing::Values("preset", "bank"));
} // namespace
