#include "Tests/doubles/ScriptedModule.h"
#include "Tests/integration/ModuleBundle.h"
#include "Tests/support/FileContents.h"
#include "Tools/aaxhost/check/CRig.h"
#include "Tools/aaxhost/host/CHostString.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <regex>
#include <sstream>

namespace
{
namespace fs = std::filesystem;

/** An example in the plain module: what does not cross the bridge, so that docs/limits.md stays true. */
class Limits : public testing::Test
{
protected:
    const CModuleBundle mBundle{kPlainModule, kDelayPlugin};
    CCheckContext mContext{mBundle.Path().string(), 5};
};

constexpr const char* kTime = "00000";

TEST_F(Limits, AParameterTellsItsWholeNameAndAPlainNumberThatFollowsWithTheState)
{
    const auto instance = mContext.MakeInstance();
    AAX_IACFEffectParameters& parameters = instance->Parameters();
    CHostString text;
    ASSERT_EQ(parameters.GetParameterNameOfLength("00001", &text, 3), kAAX_Success);
    EXPECT_EQ(text.Text(), "Feedback");
    ASSERT_EQ(parameters.GetParameterStringFromValue(kTime, 0.25, &text, 32), kAAX_Success);
    EXPECT_EQ(text.Text(), "0.25") << "and not the plug-in's milliseconds";
    struct
    {
        double mValue = -1.0;
        std::int32_t mChanges = -1;
    } told[2];
    for (auto& [value, changes] : told)
    {
        ASSERT_EQ(parameters.GetParameterNormalizedValue(kTime, &value), kAAX_Success);
        ASSERT_EQ(parameters.GetNumberOfChanges(&changes), kAAX_Success);
        ASSERT_EQ(instance->SetParameter(kTime, 0.875), kAAX_Success);
    }
    EXPECT_EQ(told[1].mValue, told[0].mValue);
    EXPECT_EQ(told[1].mChanges, told[0].mChanges) << "the host's changes are counted";
    EXPECT_NEAR(ValueOf(*instance, kTime), 0.875, 1e-6) << "asked for its state, it knows";
}

TEST_F(Limits, MasterBypassDoesNotChangeTheSound)
{
    CRig through(mContext);
    CRig bypassed(mContext);
    CHostString bypass;
    ASSERT_EQ(bypassed.Instance().Parameters().GetMasterBypassParameter(&bypass), kAAX_Success);
    ASSERT_EQ(bypassed.Instance().SetParameter(bypass.Text(), 1.0), kAAX_Success);
    for (CRig* rig : {&through, &bypassed})
    {
        rig->Record();
        rig->Play(0.5);
    }
    EXPECT_GT(through.TakePeak(), 0.1F);
    EXPECT_EQ(through.Recording(), bypassed.Recording());
}

TEST_F(Limits, RelativeChangesMoveOnceAndThenStick)
{
    const auto instance = mContext.MakeInstance();
    double before = 0.0;
    ASSERT_EQ(instance->Parameters().GetParameterNormalizedValue(kTime, &before), kAAX_Success);
    const double delta = before < 0.5 ? 0.125 : -0.125;
    for (int i = 0; i < 3; ++i)
    {
        ASSERT_EQ(instance->Parameters().SetParameterNormalizedRelative(kTime, delta), kAAX_Success);
        EXPECT_TRUE(DeliverAll(*instance));
    }
    EXPECT_NEAR(ValueOf(*instance, kTime), before + delta, 1e-6);
}

TEST_F(Limits, BypassAndGainDoNotFollow)
{
    const auto instance = mContext.MakeInstance();
    for (const char* id : {"MasterBypassID", "Gain"})
    {
        SCOPED_TRACE(id);
        double before = -1.0;
        double after = -1.0;
        ASSERT_EQ(instance->Parameters().GetParameterNormalizedValue(id, &before), kAAX_Success);
        ASSERT_EQ(instance->SetParameter(id, 1.0 - before), kAAX_Success);
        EXPECT_TRUE(DeliverAll(*instance));
        ASSERT_EQ(instance->Parameters().GetParameterNormalizedValue(id, &after), kAAX_Success);
        EXPECT_EQ(after, before);
    }
}

/** As above, with a plug-in that says what reaches it and asks for what the examples do not. */
class ScriptedLimits : public testing::Test
{
protected:
    ScriptedLimits()
    {
        Script().mShape.numInputs = Script().mShape.numOutputs = 2;
        Script().mShape.flags = effFlagsHasEditor;
        Script().mInputPins = Script().mOutputPins = {{"Main", kVstPinIsStereo}};
        Script().mParameters = {0.5F};
        Script().mResults[effCanDo] = 1;
        Script().mEditorSize = {0, 0, 100, 200};
    }
    SPluginScript& Script() { return mScript.Script(); }
    ScriptedEffect& Effect() { return *Script().mInstances.back(); }
    CHostLog& Log() { return mContext.Log(); }
    std::unique_ptr<CInstance> OpenEditor()
    {
        auto instance = mContext.MakeInstance();
        EXPECT_TRUE(instance->OpenGUI());
        EXPECT_EQ(instance->GUI()->SetViewContainer(&instance->Host().ViewContainer()), kAAX_Success);
        return instance;
    }

    const CModuleBundle mBundle{kPlainModule, ScriptedModule::FileOf("scripted_plugin.so")};
    ScriptedModule mScript{mBundle.SourceVst()};
    CCheckContext mContext{mBundle.Path().string(), 5};
};

TEST_F(ScriptedLimits, APieceOfASystemExclusiveMessageIsHandedOnAsAMessage)
{
    CRig rig(mContext);
    ASSERT_NE(rig.Midi(), nullptr);
    rig.Send(0, 0xF0, 0x43, 0x10);
    rig.Send(0, 0x4C, 0x00, 0xF7);
    rig.Render(64);
    ASSERT_EQ(Script().mEvents.size(), 1U);
    ASSERT_EQ(Script().mEvents.front().size(), 2U);
    for (const VstMidiEvent& event : Script().mEvents.front())
        EXPECT_EQ(event.type, kVstMidiType);
    EXPECT_EQ(static_cast<unsigned char>(Script().mEvents.front()[1].midiData[0]), 0x4C)
        << "of no meaning alone";
}

TEST_F(ScriptedLimits, AGestureThatEndsWhileTheWindowClosesIsNotHeard)
{
    Script().mHooks[effEditClose] = [](ScriptedEffect& ioEffect, const SDispatch&)
    { (void)ioEffect.CallHost(audioMasterEndEdit); }; // answered 0 in any case
    const auto instance = OpenEditor();
    EXPECT_EQ(Effect().CallHost(audioMasterBeginEdit), 0);
    EXPECT_EQ(Log().Count("HandleParameterMouseDown"), 1U);
    EXPECT_EQ(instance->GUI()->SetViewContainer(nullptr), kAAX_Success);
    EXPECT_EQ(Log().Count("HandleParameterMouseUp"), 0U);
}

TEST_F(ScriptedLimits, WishesForAnotherSizeAndForIdleTimeAreNotServed)
{
    const auto instance = OpenEditor();
    (void)Script().TakeLog(); // of opening
    EXPECT_EQ(Effect().CallHost(audioMasterSizeWindow, 300), 0);
    EXPECT_EQ(Effect().CallHost(audioMasterNeedIdle), 0);
    EXPECT_EQ(instance->GUI()->TimerWakeup(), kAAX_Success);
    EXPECT_EQ(instance->Parameters().TimerWakeup(), kAAX_Success);
    EXPECT_EQ(instance->RunCycle(), kAAX_Success);
    EXPECT_EQ(Script().TakeLog(), (std::vector<std::string>{"effEditIdle"}));
    EXPECT_EQ(Log().Count("SetViewSize"), 0U);
}

TEST(LimitsTable, EveryRowIsKeptByATestOrACheckThatExists)
{
    const fs::path root = AAXADAPTER_SOURCE_DIR;
    std::string tests;
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(root / "Tests"))
        if (entry.path().extension() == ".cpp")
            tests += Contents(entry.path());
    std::erase_if(tests, [](char letter) { return letter == ' ' || letter == '\n'; });
    std::istringstream table(Contents(root / "docs" / "limits.md"));
    const std::regex name("`([A-Za-z-]+)\\.([A-Za-z0-9-]+)`");
    int rows = 0;
    for (std::string row; std::getline(table, row);)
    {
        if (!row.starts_with("| ") || row.starts_with("| |"))
            continue;
        SCOPED_TRACE(row);
        ++rows;
        const std::string keepers = row.substr(row.rfind(" | ", row.size() - 3));
        int found = 0;
        for (std::sregex_iterator match(keepers.begin(), keepers.end(), name), end; match != end;
             ++match, ++found)
        {
            const std::string suite = (*match)[1];
            const std::string test = (*match)[2];
            EXPECT_TRUE(FindCheck(fmt::format("{}.{}", suite, test)) != nullptr ||
                        tests.find(fmt::format("({},{})", suite, test)) != std::string::npos)
                << match->str();
        }
        EXPECT_GT(found, 0);
    }
    EXPECT_GT(rows, 30);
}
} // namespace
