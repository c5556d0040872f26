#include "Tests/doubles/ScriptedModule.h"
#include "Tests/integration/CHostRoutine.h"
#include "Tests/integration/ModuleBundle.h"
#include "Tools/aaxhost/player/CModule.h"

#include <gtest/gtest.h>

#include <atomic>
#include <limits>
#include <map>
#include <thread>

namespace
{
constexpr std::int32_t kLastOpcode = 77;
constexpr std::int32_t kLastHostOpcode = 49;
constexpr std::int32_t kHuge = std::numeric_limits<std::int32_t>::max();
constexpr std::int32_t kParameters = 3;

/** A module in a bundle of its own around a scripted plug-in, which is a polite one until a test says else.
 */
class RudePlugin : public testing::Test
{
protected:
    RudePlugin() { BePolite(); }
    ~RudePlugin() override { Stop(); }

    SPluginScript& Script() { return mScript.Script(); }
    void Stop()
    {
        mRoutine.reset();
        mInstance.reset();
        mModule.reset();
    }
    void BePolite()
    {
        Stop();
        Script().Reset();
        Script().mShape.numInputs = Script().mShape.numOutputs = 2;
        Script().mShape.numPrograms = 2;
        Script().mShape.flags = effFlagsProgramChunks | effFlagsHasEditor;
        Script().mInputPins = Script().mOutputPins = {{"Main", kVstPinIsStereo}};
        Script().mParameters = {0.25F, 0.5F, 0.75F};
        Script().mBankChunk = {1, 2, 3, 4};
        Script().mEditorSize = {0, 0, 100, 200};
        Script().mResults[effCanDo] = 1;
    }
    bool Open()
    {
        auto module = CModule::Open(mBundle.Path().string(), mLog);
        mModule = module ? std::move(*module) : nullptr;
        return mModule != nullptr;
    }
    bool Start()
    {
        if (!Open())
            return false;
        auto instance = CInstance::Create(*mModule, 48000.0);
        mInstance = instance ? std::move(*instance) : nullptr;
        if (mInstance != nullptr)
            mRoutine = std::make_unique<CHostRoutine>(*mInstance);
        return mInstance != nullptr;
    }
    /** Everything, with no other failure than the one for a plug-in that is not there. */
    void UseAll(AAX_Result inExpected = kAAX_Success)
    {
        mRoutine->Everything();
        std::set<AAX_Result> failures = mRoutine->Failures();
        failures.erase(kAAX_ErrorNullObject);
        failures.erase(inExpected);
        EXPECT_EQ(failures, std::set<AAX_Result>());
    }
    /** What was left behind serves a polite plug-in as if nothing had happened. */
    void ExpectRecovery()
    {
        BePolite();
        ASSERT_TRUE(Start());
        mRoutine->Everything();
        EXPECT_EQ(mRoutine->Failures(), std::set<AAX_Result>());
        EXPECT_EQ(mRoutine->Call().Output(1)[63], CHostRoutine::kInputLevel);
    }
    AEffect& Effect() { return Script().mInstances.back()->Effect(); }

    const CModuleBundle mBundle{kPlainModule, ScriptedModule::FileOf("scripted_plugin.so")};
    ScriptedModule mScript{mBundle.SourceVst()};
    CHostLog mLog;
    std::unique_ptr<CModule> mModule;
    std::unique_ptr<CInstance> mInstance;
    std::unique_ptr<CHostRoutine> mRoutine;
};

TEST_F(RudePlugin, ThatFillsItsRecordOnlyWhenOpenedIsUsedAsItIsThen)
{
    const AEffect filled = Script().mShape;
    Script().mOnCreate = [](AEffect& outEffect)
    {
        outEffect.numInputs = outEffect.numOutputs = outEffect.numParams = outEffect.numPrograms =
            outEffect.flags = 0;
    };
    Script().mHooks[effOpen] = [=](ScriptedEffect& ioEffect, const SDispatch&)
    {
        AEffect& effect = ioEffect.Effect();
        effect.numInputs = filled.numInputs;
        effect.numOutputs = filled.numOutputs;
        effect.numParams = kParameters;
        effect.numPrograms = filled.numPrograms;
        effect.flags = filled.flags;
    };
    ASSERT_TRUE(Start());
    EXPECT_EQ(mInstance->ListParameters().size(), kParameters + 2U);
    mRoutine->Everything();
    EXPECT_EQ(mRoutine->Failures(), std::set<AAX_Result>());
    EXPECT_EQ(Script().mOutOfRangeCalls, 0);
    ExpectRecovery();
}

TEST_F(RudePlugin, ThatCallsBackInsideEveryCallIsAnswered)
{
    std::atomic<int> wrong = 0;
    Script().mOnEntry = [&](audioMasterCallback inHost)
    {
        char text[64] = "";
        for (std::int32_t opcode = -1; opcode <= kLastHostOpcode; ++opcode)
            wrong += inHost(nullptr, opcode, 0, 0, text, 0.0F) == 0 ? 0 : 1;
    };
    for (std::int32_t opcode = 0; opcode <= kLastOpcode; ++opcode)
        Script().mHooks[opcode] = [&](ScriptedEffect& ioEffect, const SDispatch&)
        {
            char text[64] = "";
            for (std::int32_t call = -1; call <= kLastHostOpcode; ++call)
                (void)ioEffect.CallHost(call, 1, text); // as they come; one is looked at
            const VstIntPtr version = ioEffect.CallHost(audioMasterVersion);
            wrong += version == 2400 || version == 0 ? 0 : 1; // 0: it is being closed with its host
        };
    ASSERT_TRUE(Start());
    UseAll();
    EXPECT_EQ(mRoutine->Failures(), std::set<AAX_Result>());
    ExpectRecovery();
    EXPECT_EQ(wrong.load(), 0);
}

TEST_F(RudePlugin, ThatCallsBackFromItsOwnThreadIsAnsweredUntilItIsClosed)
{
    struct SCaller
    {
        std::atomic<bool> mStops = false;
        std::thread mThread;
    };
    std::map<ScriptedEffect*, SCaller> callers;
    Script().mHooks[effOpen] = [&](ScriptedEffect& ioEffect, const SDispatch&)
    {
        SCaller& caller = callers[&ioEffect];
        if (!caller.mThread.joinable())
            caller.mThread = std::thread(
                [&ioEffect, &caller]
                {
                    while (!caller.mStops.load())
                        for (const std::int32_t opcode :
                             {audioMasterGetTime, audioMasterBeginEdit, audioMasterAutomate,
                              audioMasterEndEdit, audioMasterUpdateDisplay, audioMasterWantMidi})
                            (void)ioEffect.CallHost(opcode, 1); // to be survived
                });
    };
    Script().mHooks[effClose] = [&](ScriptedEffect& ioEffect, const SDispatch&)
    {
        SCaller& caller = callers[&ioEffect];
        caller.mStops.store(true);
        if (caller.mThread.joinable())
            caller.mThread.join();
        callers.erase(&ioEffect);
    };
    for (int i = 0; i < 5; ++i)
    {
        ASSERT_TRUE(Start());
        mLog.Clear();
        for (int round = 0; round < 5 || mLog.Count("PostSetValueRequest") == 0; ++round)
            UseAll();
        EXPECT_EQ(mRoutine->Failures(), std::set<AAX_Result>());
        mRoutine.reset();
        mInstance.reset();
    }
    EXPECT_TRUE(callers.empty());
    ExpectRecovery();
}

TEST_F(RudePlugin, ThatKeepsEventPointersReadsTheSameEventsInTheNextBlock)
{
    std::vector<const VstEvent*> kept;
    std::vector<int> notes;
    Script().mHooks[effProcessEvents] = [&](ScriptedEffect&, const SDispatch& inCall)
    {
        const auto& events = *static_cast<const VstEvents*>(inCall.mPointer);
        const VstEvent* const* const list = events.events; // longer than the two that it is declared with
        kept.assign(list, list + events.numEvents);
    };
    Script().mOnProcess = [&](ScriptedEffect&, float**, float**, std::int32_t)
    {
        notes.clear();
        for (const VstEvent* const event : kept)
            notes.push_back(reinterpret_cast<const VstMidiEvent*>(event)->midiData[1]);
    };
    ASSERT_TRUE(Start());
    mRoutine->Render(64, 3);
    mRoutine->Render(64, 0);
    EXPECT_EQ(notes, (std::vector<int>{0, 1, 2}));
    mRoutine->Render(64, 400); // grows what the module packs the events in
    EXPECT_EQ(notes.size(), 100U);
    mRoutine->Render(64, 0);
    EXPECT_EQ(notes.front(), 300 % 128);
}

TEST_F(RudePlugin, ThatThrowsInADispatcherCallFailsThatCallAlone)
{
    for (std::int32_t opcode = SPluginScript::kEntry; opcode <= kLastOpcode; ++opcode)
    {
        SCOPED_TRACE(opcode);
        BePolite();
        Script().mFaults.insert(opcode);
        if (Start())
            UseAll();
        Stop();
        EXPECT_EQ(mLog.LiveObjects(), 0);
        ExpectRecovery();
    }
}

TEST_F(RudePlugin, ThatGivesANonsensicalChunkHasAnEmptyOneOrNone)
{
    struct SRow
    {
        const char* mWhat;
        VstIntPtr mSize;
        std::vector<std::uint8_t> mBytes;
        AAX_Result mResult;
    };
    for (const SRow& row :
         {SRow{"negative", -1, {1}, kAAX_Success}, SRow{"of no memory", 100, {}, kAAX_Success},
          SRow{"minus one without a sign", 0xFFFFFFFF, {1}, kAAX_ErrorChunkSize}})
    {
        SCOPED_TRACE(row.mWhat);
        BePolite();
        Script().mBankChunk = row.mBytes;
        Script().mResults[effGetChunk] = row.mSize;
        ASSERT_TRUE(Start());
        std::uint32_t size = 99;
        EXPECT_EQ(mInstance->Parameters().GetChunkSize(AAX_FourCharCode("0001"), &size), row.mResult);
        EXPECT_EQ(size, row.mResult == kAAX_Success ? 9U : 0U) << "the trailer alone, or nothing";
        UseAll(row.mResult);
        ExpectRecovery();
    }
}

TEST_F(RudePlugin, WithOtherCountsThanBeforeKeepsTheHostsParameters)
{
    ASSERT_TRUE(Start());
    for (const std::int32_t count : {1, 1000, kHuge, 0, -5, kParameters})
    {
        SCOPED_TRACE(count);
        Effect().numParams = count;
        Effect().numPrograms = count;
        UseAll();
        EXPECT_EQ(mRoutine->Failures(), std::set<AAX_Result>());
        EXPECT_EQ(mInstance->ListParameters().size(), kParameters + 2U);
        EXPECT_EQ(Script().mInstances.back()->CallHost(audioMasterUpdateDisplay), 1);
    }
    EXPECT_EQ(Script().mOutOfRangeCalls, 0) << "asked about parameters that it did not have";
    for (const std::int32_t channels : {3, kHuge})
    {
        Effect().numOutputs = channels;
        mRoutine->Render(64, 0);
        EXPECT_EQ(mRoutine->Call().Output(0)[0], 0.0F) << "it would write to channels that are not there";
    }
    Effect().numOutputs = 2;
    Effect().initialDelay = 77;
    UseAll();
    EXPECT_EQ(mInstance->Host().Controller().State().mSignalLatency, 0) << "told at the start only";
}

TEST_F(RudePlugin, WithNonsensicalCountsFromTheStartIsLoadedAllTheSame)
{
    for (const std::int32_t count : {kHuge, -kHuge})
    {
        SCOPED_TRACE(count);
        BePolite();
        Script().mOnCreate = [=](AEffect& outEffect)
        { outEffect.numParams = outEffect.numPrograms = outEffect.numInputs = outEffect.numOutputs = count; };
        ASSERT_TRUE(Start());
        UseAll();
        EXPECT_EQ(mInstance->ListParameters().size(), 2U);
        ExpectRecovery();
    }
}

TEST(RudeHost, ThatInitializesAnInstanceWithAnOpenEditorAgainHasAnEditorWithoutAPlugin)
{
    const CModuleBundle bundle(kPlainModule, kSynthPlugin);
    CHostLog log;
    auto module = CModule::Open(bundle.Path().string(), log);
    ASSERT_TRUE(module) << module.Problem().mSentence;
    auto instance = CInstance::Create(**module, 48000.0);
    ASSERT_TRUE(instance) << instance.Problem().mSentence;
    CInstanceHost& host = (*instance)->Host();
    ASSERT_TRUE((*instance)->OpenGUI());
    AAX_IACFEffectGUI& gui = *(*instance)->GUI();
    for (int i = 0; i < 2; ++i)
    {
        EXPECT_EQ(gui.SetViewContainer(&host.ViewContainer()), kAAX_Success);
        EXPECT_EQ((*instance)->Parameters().Initialize(host.Unknown()), kAAX_Success);
        AAX_Point size;
        EXPECT_EQ(gui.GetViewSize(&size), kAAX_Success);
        EXPECT_EQ(gui.TimerWakeup(), kAAX_Success);
        EXPECT_EQ(gui.SetViewContainer(nullptr), kAAX_Success);
    }
}

TEST_F(RudePlugin, ThatClearsItsRecordIsAsGoodAsGone)
{
    Script().mHooks[effEditIdle] = [](ScriptedEffect& ioEffect, const SDispatch&) { ioEffect.Effect() = {}; };
    ASSERT_TRUE(Start());
    UseAll();
    UseAll();
    ExpectRecovery();
}
} // namespace
