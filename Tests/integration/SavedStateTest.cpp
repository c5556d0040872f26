#include "Tests/integration/ModuleBundle.h"
#include "Tests/support/FileContents.h"
#include "Tests/support/ToolRun.h"
#include "Tools/aaxhost/host/CHostLog.h"
#include "Tools/aaxhost/player/CModule.h"
#include "Tools/aaxhost/player/InstanceState.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>

namespace fs = std::filesystem;

namespace
{
struct SSubject
{
    const char* mName;
    fs::path mPlugin;
    bool mIsInstrument;
    bool mNeedsOptions;
    bool mHasChunk;
};

void PrintTo(const SSubject& inSubject, std::ostream* outStream) { *outStream << inSubject.mName; }

class State : public testing::TestWithParam<SSubject>
{
protected:
    void SetUp() override
    {
        if (GetParam().mPlugin.empty())
            GTEST_SKIP() << "not installed";
    }
    /** `aaxhost render` of a short piece, into a file of this name. */
    SToolRun Render(const std::string& inName, std::vector<std::string> inOptions)
    {
        std::vector<std::string> command{AAXHOST,     "render", mBundle.Path(), "--output", File(inName),
                                         "--seconds", "2"};
        if (GetParam().mIsInstrument)
            command.insert(command.end(), {"--midi", TEST_PHRASE});
        else
            command.insert(command.end(), {"--input", TEST_SIGNAL});
        command.insert(command.end(), inOptions.begin(), inOptions.end());
        return RunTool(command);
    }
    std::string File(const std::string& inName) const { return mBundle.Path().parent_path() / inName; }

    const CModuleBundle mBundle{GetParam().mNeedsOptions ? kOptionsModule : kPlainModule, GetParam().mPlugin};
};

TEST_P(State, ANewProcessSoundsLikeTheOneThatWasSaved)
{
    const SToolRun first = Render(
        "first.wav", {"--set", "00001=0.6", "--set", "00002=0.3", "--save-state", File("first.aaxstate")});
    ASSERT_EQ(first.mExit, 0) << first.mErrors;
    const SToolRun second =
        Render("second.wav", {"--state", File("first.aaxstate"), "--save-state", File("second.aaxstate")});
    ASSERT_EQ(second.mExit, 0) << second.mErrors;
    const SToolRun untouched = Render("untouched.wav", {});
    ASSERT_EQ(untouched.mExit, 0) << untouched.mErrors;
    EXPECT_TRUE(Contents(File("first.wav")) == Contents(File("second.wav")));
    EXPECT_FALSE(Contents(File("first.wav")) == Contents(File("untouched.wav"))) << "the state says nothing";
    EXPECT_TRUE(Contents(File("first.aaxstate")) == Contents(File("second.aaxstate")));

    const SToolRun shown = RunTool({AAXHOST, "state", mBundle.Path(), "show", File("first.aaxstate")});
    ASSERT_EQ(shown.mExit, 0) << shown.mErrors;
    EXPECT_NE(shown.mOutput.find("Complete Controls State"), std::string::npos);
    EXPECT_NE(shown.mOutput.find("00001            0.6"), std::string::npos) << shown.mOutput;
    EXPECT_NE(shown.mOutput.find("on for a fresh instance, off when"), std::string::npos) << shown.mOutput;
    EXPECT_EQ(shown.mOutput.find("trailer: program") != std::string::npos, GetParam().mHasChunk)
        << shown.mOutput;
}

INSTANTIATE_TEST_SUITE_P(
    Plugins, State,
    testing::Values(SSubject{"ExampleSynth", kSynthPlugin, true, false, true},
                    SSubject{"ExampleDelay", kDelayPlugin, false, false, false},
                    SSubject{"Nekobi", InstalledPlugin("Nekobi"), true, true, false},
                    SSubject{"MVerb", InstalledPlugin("MVerb"), false, true, false},
                    SSubject{"ThreeBandEQ", InstalledPlugin("3BandEQ"), false, true, false},
                    SSubject{"MaGigaverb", InstalledPlugin("MaGigaverb"), false, true, false},
                    SSubject{"DragonflyHall", InstalledPlugin("DragonflyHallReverb"), false, true, true},
                    SSubject{"DragonflyRoom", InstalledPlugin("DragonflyRoomReverb"), false, true, true},
                    SSubject{"DragonflyPlate", InstalledPlugin("DragonflyPlateReverb"), false, true, true}),
    [](const testing::TestParamInfo<SSubject>& inInfo) { return std::string(inInfo.param.mName); });

TEST(StateFile, BelongsToAProductByAllFourOfItsIdentifiers)
{
    const CModuleBundle bundle(kPlainModule, EXAMPLE_SYNTH);
    CHostLog log;
    const auto module = CModule::Open(bundle.Path().string(), log);
    ASSERT_TRUE(module) << module.Problem().mSentence;
    const SInstanceState own{IdentityOf(**module), {}};
    EXPECT_TRUE(CheckProduct(**module, own));
    for (const auto change :
         {+[](SProductIdentity& id) { id.mEffectID += 'x'; },
          +[](SProductIdentity& id) { ++id.mManufacturerID; }, +[](SProductIdentity& id) { ++id.mProductID; },
          +[](SProductIdentity& id) { ++id.mPlugInID; }})
    {
        SInstanceState other = own;
        change(other.mProduct);
        EXPECT_FALSE(CheckProduct(**module, other)) << NameOfProduct(other.mProduct);
    }
}

TEST(StateFile, AForeignOrBrokenFileIsRefusedWithASentence)
{
    const CModuleBundle synth(kPlainModule, kSynthPlugin);
    const CModuleBundle delay(kPlainModule, kDelayPlugin);
    const std::string file = synth.Path().parent_path() / "saved.aaxstate";
    ASSERT_EQ(RunTool({AAXHOST, "state", synth.Path(), "save", file}).mExit, 0);
    for (const char* what : {"load", "show"})
    {
        const SToolRun run = RunTool({AAXHOST, "state", delay.Path(), what, file});
        EXPECT_EQ(run.mExit, 1);
        EXPECT_NE(run.mErrors.find("The state belongs to Example Synth ("), std::string::npos) << run.mErrors;
        EXPECT_NE(run.mErrors.find("not to Example Delay ("), std::string::npos) << run.mErrors;
    }
    const std::string whole = Contents(file);
    for (const std::size_t length :
         {std::size_t{0}, std::size_t{5}, std::size_t{12}, whole.size() / 2, whole.size() - 1})
    {
        SCOPED_TRACE(length);
        std::ofstream(file, std::ios::binary | std::ios::trunc)
            .write(whole.data(), static_cast<std::streamsize>(length));
        const SToolRun run = RunTool({AAXHOST, "state", synth.Path(), "load", file});
        EXPECT_EQ(run.mExit, 1);
        EXPECT_NE(run.mErrors.find("cannot be used"), std::string::npos) << run.mErrors;
    }
    EXPECT_EQ(RunTool({AAXHOST, "state", synth.Path(), "load", "/nonexistent/file"}).mExit, 1);
    EXPECT_EQ(RunTool({AAXHOST, "state", synth.Path(), "keep", file}).mExit, 2);
}
} // namespace
