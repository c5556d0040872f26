#include "Tests/doubles/ScriptedModule.h"
#include "Tests/integration/ModuleBundle.h"
#include "Tools/aaxhost/check/CCheckContext.h"

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

namespace
{
/** A module around a scripted plug-in that is not at fault, yet makes it hard for a module to do right. The
 * checks of `aaxhost check` say whether it does. */
class UnhelpfulPlugin : public testing::Test
{
protected:
    UnhelpfulPlugin()
    {
        Script().mShape.numInputs = Script().mShape.numOutputs = 2;
        Script().mInputPins = Script().mOutputPins = {{"Main", kVstPinIsStereo}};
        Script().mParameters = {0.25F, 0.5F, 0.75F};
    }
    SPluginScript& Script() { return mScript.Script(); }
    void ExpectPassed(const std::vector<const char*>& inChecks)
    {
        for (const char* name : inChecks)
        {
            SCOPED_TRACE(name);
            CCheckContext context(mBundle.Path().string(), 5);
            const SFinding finding = Run(*FindCheck(name), context);
            EXPECT_EQ(finding.mVerdict, EVerdict::Passed) << finding.mReason;
        }
    }
    static SFinding Run(const SCheck& inCheck, CCheckContext& ioContext)
    {
        try
        {
            return inCheck.mRun(ioContext);
        }
        catch (const SCheckEnd& end)
        {
            return end.mFinding;
        }
    }

    const CModuleBundle mBundle{kPlainModule, ScriptedModule::FileOf("scripted_plugin.so")};
    ScriptedModule mScript{mBundle.SourceVst()};
};

TEST_F(UnhelpfulPlugin, ThatReportsWhatItIsSetToSettlesAndKeepsItsState)
{
    struct SRow
    {
        const char* mWhat;
        bool mReports;
        std::int32_t mSteps;
        std::map<std::int32_t, std::vector<std::int32_t>> mCoupled;
    };
    for (const SRow& row : {SRow{"reports", true, 0, {}}, SRow{"reports what it rounds", true, 10, {}},
                            SRow{"couples forwards", false, 0, {{0, {1, 2}}}},
                            SRow{"couples both ways", false, 0, {{0, {1}}, {1, {0}}}},
                            SRow{"reports, rounds and couples", true, 10, {{0, {1, 2}}, {1, {0}}}}})
    {
        SCOPED_TRACE(row.mWhat);
        Script().mReportsSets = row.mReports;
        Script().mSteps = row.mSteps;
        Script().mCoupled = row.mCoupled;
        ExpectPassed({"automation.settles", "automation.answers", "automation.no-touch-left",
                      "automation.before-coefficients", "state.answers", "life-cycle.independent"});
    }
}

TEST_F(UnhelpfulPlugin, WithPortsOfSeveralWidthsHasAStemOfEach)
{
    Script().mShape.numOutputs = 5;
    Script().mOutputPins = {{"Main", kVstPinIsStereo}, {}, {"One", 0}, {"Pair", kVstPinIsStereo}, {}};
    CHostLog log;
    auto module = CModule::Open(mBundle.Path().string(), log);
    ASSERT_TRUE(module) << module.Problem().mSentence;
    std::vector<std::int32_t> formats;
    for (const SAuxStem& stem : (*module)->Effect().mComponents.front().mAuxStems)
        formats.push_back(stem.mFormat);
    EXPECT_EQ(formats, (std::vector<std::int32_t>{AAX_eStemFormat_Mono, AAX_eStemFormat_Stereo}));
}

TEST_F(UnhelpfulPlugin, WhoseInstancesLookOtherwiseThanTheDescribedOneFitsTheHost)
{
    const std::vector<SScriptedPin> stereo{{"Main", kVstPinIsStereo}};
    const std::vector<SScriptedPin> four{{"1", 0}, {"2", 0}, {"3", 0}, {"4", 0}};
    const SPluginShape described{2, 2, stereo, stereo, 1};
    struct SRow
    {
        const char* mWhat;
        SPluginShape mInstance;
    };
    for (const SRow& row :
         {SRow{"more outputs", {2, 4, stereo, four, 1}}, SRow{"more inputs", {4, 2, four, stereo, 1}},
          SRow{"no outputs", {2, 0, stereo, {}, 1}}, SRow{"no inputs", {0, 2, {}, stereo, 1}},
          SRow{"one channel", {1, 1, {{"Main", 0}}, {{"Main", 0}}, 1}},
          SRow{"no MIDI", {2, 2, stereo, stereo, -1}}})
    {
        SCOPED_TRACE(row.mWhat);
        for (const char* check : {"rendering.writes-outputs", "rendering.bounds", "rendering.large-blocks"})
        {
            Script().mShapes = {described, row.mInstance};
            ExpectPassed({check});
        }
    }
}
} // namespace
