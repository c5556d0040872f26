#include "Tests/unit/Tools/vst2probe/RunProbe.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include <unistd.h>

namespace
{
class ProgramFile : public testing::TestWithParam<const char*>
{
protected:
    void TearDown() override { std::filesystem::remove(mFile); }
    std::string Contents() const
    {
        std::ifstream file(mFile, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }
    std::string Command(const char* inAction, const std::string& inPlugin) const
    {
        return std::string(GetParam()) + " " + inAction + " " + inPlugin + " " + mFile;
    }

    const std::string mFile =
        (std::filesystem::temp_directory_path() / ("program_file_" + std::to_string(getpid()))).string();
};

TEST_P(ProgramFile, WhatWasSavedLoadsAgainAndIsOnlyForItsOwnPlugin)
{
    EXPECT_EQ(Vst2probe(Command("save", EXAMPLE_SYNTH_FILE)).mCode, 0);
    const std::string saved = Contents();
    EXPECT_TRUE(saved.starts_with("CcnK"));
    const SShellRun loaded = Vst2probe(Command("load", EXAMPLE_SYNTH_FILE));
    EXPECT_EQ(loaded.mCode, 0);
    EXPECT_NE(loaded.mOutput.find("Cutoff"), std::string::npos) << loaded.mOutput;

    const SShellRun foreign = Vst2probe(Command("load", EXAMPLE_DELAY_FILE), 2);
    EXPECT_EQ(foreign.mCode, 1);
    EXPECT_NE(foreign.mOutput.find("another plug-in's"), std::string::npos) << foreign.mOutput;
    std::ofstream(mFile, std::ios::binary | std::ios::trunc) << saved.substr(0, saved.size() - 1);
    EXPECT_EQ(Vst2probe(Command("load", EXAMPLE_SYNTH_FILE)).mCode, 1);
}

TEST_P(ProgramFile, ACrashIsAnAnswerAndWrongUsageCode2)
{
    const SShellRun crash = Vst2probe(Command("save", Faulty("CrashInOpen")), 2);
    EXPECT_EQ(crash.mCode, 1);
    EXPECT_NE(crash.mOutput.find("it crashed (Segmentation fault, SIGSEGV) while it was being loaded"),
              std::string::npos)
        << crash.mOutput;
    EXPECT_EQ(Vst2probe(std::string(GetParam()) + " save").mCode, 2);
    EXPECT_EQ(Vst2probe(std::string(GetParam()) + " keep a b").mCode, 2);
}

INSTANTIATE_TEST_SUITE_P(Kinds, ProgramFile, testing::Values("preset", "bank"));
} // namespace
