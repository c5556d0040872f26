#include "Tests/support/CTestFolder.h"
#include "Tests/support/FileContents.h"
#include "Tests/support/ToolRun.h"
#include "Tools/aaxhost/player/AudioFile.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

namespace
{
/** One of the two builds: its tools, products and plug-ins. */
struct SBuild
{
    const char* mName;
    std::string mFolder;
    std::vector<std::string> mEmulator;

    SToolRun Run(const char* inTool, const std::vector<std::string>& inArguments) const
    {
        std::vector<std::string> command = mEmulator;
        command.push_back(mFolder + "/bin/" + inTool);
        command.insert(command.end(), inArguments.begin(), inArguments.end());
        return RunTool(command);
    }
    std::string Product(const std::string& inName) const
    {
        return mFolder + "/modules/" + inName + ".aaxplugin";
    }
    std::string Plugin(const std::string& inName) const { return mFolder + "/examples/" + inName + ".so"; }
};

const SBuild kOwn{OWN_PROCESSOR, OWN_BUILD, {}};
const SBuild kArm64{"arm64", ARM64_BUILD, {ARM64_BUILD "/emulate"}};

/** With a folder for files. */
class Processors : public testing::Test
{
protected:
    std::string File(const std::string& inName) const { return mFolder.File(inName); }

    const CTestFolder mFolder;
};

/** Which of the two saves what the other loads. */
struct SWay
{
    const SBuild& mFrom;
    const SBuild& mTo;
};

void PrintTo(const SWay& inWay, std::ostream* outStream) { *outStream << inWay.mFrom.mName << " saves"; }

class BothProcessors : public Processors, public testing::WithParamInterface<SWay>
{
protected:
    static const SBuild& From() { return GetParam().mFrom; }
    static const SBuild& To() { return GetParam().mTo; }
};

TEST_P(BothProcessors, AStateIsTakenAndGivenBackToTheByte)
{
    for (const char* product : {"SynthAdapter", "DelayAdapter"})
    {
        SCOPED_TRACE(product);
        const auto render =
            [&](const SBuild& inBuild, const char* inState, std::vector<std::string> inOptions)
        {
            std::vector<std::string> arguments{
                "render", inBuild.Product(product), "--output",   File("out.wav"), "--seconds",
                "0.1",    "--save-state",           File(inState)};
            arguments.insert(arguments.end(), inOptions.begin(), inOptions.end());
            const SToolRun run = inBuild.Run("aaxhost", arguments);
            EXPECT_EQ(run.mExit, 0) << inBuild.mName << ": " << run.mErrors;
        };
        render(From(), "untouched", {});
        render(From(), "first", {"--set", "00001=0.6", "--set", "00002=0.3", "--set", "00003=0.123456789"});
        render(To(), "second", {"--state", File("first")});
        ASSERT_FALSE(Contents(File("first")).empty());
        EXPECT_TRUE(Contents(File("first")) == Contents(File("second")));
        EXPECT_FALSE(Contents(File("first")) == Contents(File("untouched"))) << "the state says nothing";

        const std::vector<std::string> show{"state", "", "show", File("first")};
        std::string shown[2];
        for (const SBuild* build : {&From(), &To()})
        {
            std::vector<std::string> arguments = show;
            arguments[1] = build->Product(product);
            const SToolRun run = build->Run("aaxhost", arguments);
            EXPECT_EQ(run.mExit, 0) << run.mErrors;
            shown[build == &To()] = run.mOutput;
        }
        EXPECT_EQ(shown[0], shown[1]);
        EXPECT_NE(shown[1].find("off when it has this state"), std::string::npos) << shown[1];
    }
}

TEST_P(BothProcessors, PresetsAndBanksAreTheSameToTheByteAndLoad)
{
    struct SRow
    {
        const char* mPlugin;
        const char* mKind;
    };
    for (const SRow& row : {SRow{"ExampleSynth", "preset"}, SRow{"ExampleSynth", "bank"},
                            SRow{"ExampleDelay", "preset"}, SRow{"ExampleDelay", "bank"}})
    {
        SCOPED_TRACE(std::string(row.mPlugin) + " " + row.mKind);
        std::string listed[2];
        for (const SBuild* build : {&From(), &To()})
        {
            const SToolRun saved =
                build->Run("vst2probe", {row.mKind, "save", build->Plugin(row.mPlugin), File(build->mName)});
            ASSERT_EQ(saved.mExit, 0) << saved.mErrors;
            const SToolRun loaded =
                build->Run("vst2probe", {row.mKind, "load", build->Plugin(row.mPlugin), File(From().mName)});
            ASSERT_EQ(loaded.mExit, 0) << loaded.mErrors;
            listed[build == &To()] = loaded.mOutput;
        }
        const std::string file = Contents(File(From().mName));
        EXPECT_TRUE(file.starts_with("CcnK"));
        EXPECT_TRUE(file == Contents(File(To().mName)));
        EXPECT_FALSE(listed[0].empty());
        EXPECT_EQ(listed[0], listed[1]);
    }
}

INSTANTIATE_TEST_SUITE_P(Ways, BothProcessors, testing::Values(SWay{kOwn, kArm64}, SWay{kArm64, kOwn}),
                         [](const testing::TestParamInfo<SWay>& inInfo)
                         { return std::string(inInfo.param.mFrom.mName) + "Saves"; });

// The example plug-ins use the C library's sine, powers and the like in double precision. Their last bits may
// differ between processors; in samples of single precision nothing is left of that.
TEST_F(Processors, RenderTheSameSoundBitForBit)
{
    struct SRow
    {
        const char* mProduct;
        std::vector<std::string> mMaterial;
    };
    for (const SRow& row :
         {SRow{"SynthAdapter", {"--midi", TEST_PHRASE}}, SRow{"DelayAdapter", {"--input", TEST_SIGNAL}},
          // Its plug-in tells in its sound what it hears of the host, the time included.
          SRow{"FeaturedAdapter", {"--midi", TEST_PHRASE}}})
    {
        SCOPED_TRACE(row.mProduct);
        for (const SBuild* build : {&kOwn, &kArm64})
        {
            std::vector<std::string> arguments{"render",    build->Product(row.mProduct),
                                               "--output",  File(build->mName),
                                               "--seconds", "2",
                                               "--block",   "333",
                                               "--set",     "00000=0.3"};
            arguments.insert(arguments.end(), row.mMaterial.begin(), row.mMaterial.end());
            const SToolRun run = build->Run("aaxhost", arguments);
            ASSERT_EQ(run.mExit, 0) << build->mName << ": " << run.mErrors;
        }
        const auto here = ReadAudioFile(File(kOwn.mName));
        const auto there = ReadAudioFile(File(kArm64.mName));
        ASSERT_TRUE(here && there);
        ASSERT_EQ(here->mChannels.size(), there->mChannels.size());
        float loudest = 0.0F;
        for (std::size_t channel = 0; channel < here->mChannels.size(); ++channel)
        {
            const auto [mine, other] =
                std::ranges::mismatch(here->mChannels[channel], there->mChannels[channel]);
            EXPECT_EQ(mine, here->mChannels[channel].end())
                << "channel " << channel << ", frame " << mine - here->mChannels[channel].begin();
            for (const float sample : here->mChannels[channel])
                loudest = std::max(loudest, std::fabs(sample));
        }
        EXPECT_GT(loudest, 0.001F) << "two silences prove nothing";
    }
}
} // namespace
