#include "Interfaces/AAX/AAX_UIDs.h"
#include "Libs/AAXLibrary/source/AAX_CString.h"
#include "Tests/unit/Source/AdapterTest.h"
#include "Tools/aaxhost/host/HostNames.h"

#include <atomic>
#include <cmath>
#include <limits>
#include <thread>
#include <utility>

namespace
{
class Parameters : public AdapterTest
{
};

std::vector<std::string> IdsOf(AaxAdapter_Parameters& inInstance)
{
    std::int32_t count = 0;
    EXPECT_EQ(inInstance.GetNumberOfParameters(&count), kAAX_Success);
    std::vector<std::string> ids;
    for (std::int32_t i = 0; i < count; ++i)
    {
        AAX_CString id;
        EXPECT_EQ(inInstance.GetParameterIDFromIndex(i, &id), kAAX_Success);
        ids.emplace_back(id.Get());
    }
    return ids;
}

TEST_F(Parameters, ParametersMirrorThePluginsAndItsOwnComeLast)
{
    const std::string longName(255, 'n');
    Script().mParameters = {0.25F, 7.0F, std::numeric_limits<float>::quiet_NaN()};
    Script().mTexts[{effGetParamName, 0}] = longName;
    Start();
    EXPECT_EQ(IdsOf(Instance()), (Lines{"00000", "00001", "00002", "MasterBypassID", "Gain"}));
    AAX_CString name;
    EXPECT_EQ(Instance().GetParameterName("00000", &name), kAAX_Success);
    EXPECT_EQ(name.Get(), longName);
    for (const auto& [id, value] : {std::pair{"00000", 0.25}, {"00001", 1.0}, {"00002", 0.0}, {"Gain", 1.0}})
    {
        SCOPED_TRACE(id);
        double current = -1.0;
        EXPECT_EQ(Instance().GetParameterNormalizedValue(id, &current), kAAX_Success);
        EXPECT_EQ(current, value);
    }
    AAX_CString text;
    EXPECT_EQ(Instance().GetParameterValueString("MasterBypassID", &text, 16), kAAX_Success);
    EXPECT_STREQ(text.Get(), "bypass");
}

TEST_F(Parameters, AFieldWithoutRoomForTheInstanceIsOnlyCleared)
{
    Start();
    std::string field(16, 'x');
    EXPECT_EQ(Instance().ResetFieldData(kInstrumentField_PrivateData, field.data(), 4), kAAX_Success);
    EXPECT_EQ(field, std::string(4, '\0') + std::string(12, 'x'));
}

TEST_F(Parameters, AThousandParametersKeepTheirIndices)
{
    Script().mParameters.assign(1000, 0.0F);
    Start();
    ASSERT_EQ(IdsOf(Instance()).size(), 1002U);
    for (const std::int32_t index : {0, 499, 999})
        EXPECT_EQ(Instance().UpdateParameterNormalizedValue(Instance().IxToId(index), 0.5, 0), kAAX_Success);
    EXPECT_EQ(TakePluginCalls(),
              (Lines{"setParameter 0 0.5", "setParameter 499 0.5", "setParameter 999 0.5"}));
}

TEST_F(Parameters, AChangeOfTheHostReachesThePluginOnceAndOnlyWhereItIsOne)
{
    Script().mParameters = {0.0F, 0.5F};
    Start();
    struct SRow
    {
        const char* mId;
        double mValue;
        Lines mCalls;
    };
    const SRow rows[] = {
        {"00000", 0.25, {"setParameter 0 0.25"}},
        {"00000", 0.25, {}}, // the plug-in has it
        {"00001", 1.5, {"setParameter 1 1.5"}},
        {"00001", std::nan(""), {}},
        {"00002", 0.5, {}}, // no such parameter
        {"99999999999999999999", 0.5, {}},
        {"MasterBypassID", 1.0, {}},
        {"Gain", 0.5, {}},
        {"0000x", 0.5, {}},
        {"", 0.75, {"setParameter 0 0.75"}}, // the empty identifier is index 0
    };
    for (const SRow& row : rows)
    {
        SCOPED_TRACE(testing::Message() << row.mId << " " << row.mValue);
        EXPECT_EQ(Instance().UpdateParameterNormalizedValue(row.mId, row.mValue, 0), kAAX_Success);
        EXPECT_EQ(TakePluginCalls(), row.mCalls);
    }
    EXPECT_EQ(Instance().UpdateParameterNormalizedValue(nullptr, 0.5, 0), kAAX_Success);
    EXPECT_EQ(Script().mOutOfRangeCalls, 0);
}

TEST_F(Parameters, AChangeOfThePluginReachesTheHostAndDoesNotComeBack)
{
    Script().mParameters = {0.0F, 0.5F};
    Start();
    Automate(1, 0.75F);
    EXPECT_EQ(TakeHostCalls(), (Lines{"PostTouchRequest(\"00001\")", "PostSetValueRequest(\"00001\", 0.75)",
                                      "PostReleaseRequest(\"00001\")"}));
    EXPECT_EQ(mHost.DeliverUpdates(Instance()), kAAX_Success);
    EXPECT_EQ(TakePluginCalls(), Lines{});
    EXPECT_EQ(Effect().CallHost(audioMasterAutomate, 9), 0); // an index that no parameter has
    EXPECT_EQ(Effect().CallHost(audioMasterAutomate, -1), 0);
    EXPECT_EQ(TakeHostCalls(), Lines{});
}

TEST_F(Parameters, SetByTheHostTheValueGoesToThePluginAndTheHostIsAsked)
{
    Script().mParameters = {0.0F};
    Start();
    EXPECT_EQ(Instance().SetParameterNormalizedValue("00000", 0.5), kAAX_Success);
    EXPECT_EQ(TakePluginCalls(), (Lines{"setParameter 0 0.5"}));
    EXPECT_EQ(mHost.DeliverUpdates(Instance()), kAAX_Success);
    EXPECT_EQ(Effect().Parameters(), (std::vector{0.5F}));
}

TEST_F(Parameters, AllValuesAreToldWhenThePluginSaysSoButNotWhileItIsLoaded)
{
    Script().mParameters = {0.25F, 0.5F};
    Script().mShape.numPrograms = 2;
    for (const std::int32_t opcode : {effOpen, effGetParamName}) // ahead of the parameters, and between two
        Script().mHooks[opcode] = [](ScriptedEffect& ioEffect, const SDispatch&)
        { ioEffect.CallHost(audioMasterUpdateDisplay); };
    Start();
    EXPECT_EQ(mHost.Automation().PendingRequests(), 0U);
    EXPECT_EQ(Effect().CallHost(audioMasterUpdateDisplay), 1);
    EXPECT_EQ(mLog.Count("PostSetValueRequest"), 2U);
}

TEST_F(Parameters, APluginThatForgetsItsRateAndBlockSizeWhenItIsOpenedHasThem)
{
    float rate = 0.0F;
    VstIntPtr frames = 0;
    Script().mHooks[effSetSampleRate] = [&](ScriptedEffect&, const SDispatch& inCall) { rate = inCall.mOpt; };
    Script().mHooks[effSetBlockSize] = [&](ScriptedEffect&, const SDispatch& inCall)
    { frames = inCall.mValue; };
    Script().mHooks[effOpen] = [&, isOpen = false](ScriptedEffect&, const SDispatch&) mutable
    {
        if (!std::exchange(isOpen, true))
            rate = 0.0F, frames = 0;
    };
    Start();
    EXPECT_EQ(rate, 44100.0F);
    EXPECT_EQ(frames, 1024);
}

TEST_F(Parameters, TheFirstCoefficientsPushEveryValueAndPostBothPackets)
{
    Script().mParameters = {0.25F, 0.5F};
    ASSERT_EQ(StartWithoutCoefficients(), kAAX_Success);
    Effect().Parameters() = {0.0F, 0.5F}; // changed behind everybody's back
    EXPECT_EQ(Instance().GenerateCoefficients(), kAAX_Success);
    EXPECT_EQ(TakePluginCalls(), (Lines{"setParameter 0 0.25"}));
    EXPECT_NE(mHost.Controller().Packet(0), nullptr);
    const std::vector<std::byte>* const gain = mHost.Controller().Packet(1);
    ASSERT_NE(gain, nullptr);
    EXPECT_EQ(*gain, (std::vector{std::byte{0}, std::byte{0}, std::byte{0x80}, std::byte{0x3F}})); // 1.0
    Effect().Parameters() = {0.0F, 0.5F};
    EXPECT_EQ(Instance().GenerateCoefficients(), kAAX_Success);
    EXPECT_EQ(TakePluginCalls(), Lines{}); // nothing is dirty any more
}

TEST_F(Parameters, TheFirstCoefficientsLeaveAloneWhatThePluginGotOrReportedMeanwhile)
{
    Script().mParameters = {0.25F, 0.25F, 0.25F, 0.25F};
    ASSERT_EQ(StartWithoutCoefficients(), kAAX_Success);
    EXPECT_EQ(Instance().UpdateParameterNormalizedValue("00000", 0.875, 0), kAAX_Success);
    Automate(1, 0.75F);
    EXPECT_EQ(Instance().SetParameterNormalizedValue("00002", 0.625), kAAX_Success);
    Effect().Parameters()[3] = 0.0F; // changed behind everybody's back
    EXPECT_EQ(Instance().GenerateCoefficients(), kAAX_Success);
    EXPECT_EQ(Effect().Parameters(), (std::vector{0.875F, 0.75F, 0.625F, 0.25F}));
}

TEST_F(Parameters, AKnobThatIsDraggedIsNotSetBackByAnyKindOfHost)
{
    for (const EAnswers answers : kAllAnswers)
    {
        SCOPED_TRACE(static_cast<int>(answers));
        Script().mParameters = {0.0F};
        mHost.Automation().SetAnswers(answers);
        Start();
        for (const float value : {0.125F, 0.25F, 0.25F, 0.5F})
            Automate(0, value);
        EXPECT_EQ(mHost.DeliverUpdates(Instance()), kAAX_Success);
        EXPECT_EQ(TakePluginCalls(), Lines{});
        EXPECT_EQ(Instance().UpdateParameterNormalizedValue("00000", 0.125, 0), kAAX_Success);
        EXPECT_EQ(TakePluginCalls(), (Lines{"setParameter 0 0.125"})); // the host's own
        Stop();
    }
}

TEST_F(Parameters, ReportsOfEightThreadsAreAnsweredByAnyKindOfHostAndNothingComesBack)
{
    for (const EAnswers answers : kAllAnswers)
    {
        SCOPED_TRACE(static_cast<int>(answers));
        Script().mParameters = {0.125F, 0.25F, 0.375F, 0.5F};
        mHost.Automation().SetAnswers(answers);
        Start();
        std::atomic<int> reporting = 8;
        std::vector<std::jthread> threads;
        for (std::int32_t thread = 0; thread < 8; ++thread)
            threads.emplace_back(
                [&, thread]
                {
                    for (std::int32_t i = 0; i < 500; ++i)
                        Effect().CallHost(audioMasterAutomate, (thread + i) % 4);
                    --reporting;
                });
        while (reporting.load() > 0)
        {
            EXPECT_EQ(mHost.DeliverUpdates(Instance()), kAAX_Success);
            EXPECT_EQ(Instance().UpdateParameterNormalizedValue("00003", 0.5, 0), kAAX_Success);
            mLog.Clear();
        }
        threads.clear();
        for (int cycle = 0; cycle < 2; ++cycle) // the second for what was put off
            EXPECT_EQ(mHost.DeliverUpdates(Instance()), kAAX_Success);
        EXPECT_EQ(mHost.Automation().PendingRequests(), 0U);
        EXPECT_EQ(TakePluginCalls(), Lines{}); // it has all of the values
        Stop();
    }
}

TEST_F(Parameters, WhatTheHostRefusedIsNotWaitedFor)
{
    Script().mParameters = {0.0F};
    Start();
    mLog.FailCall("PostSetValueRequest", 0, kAAX_ErrorUnsupported);
    Automate(0, 0.75F);
    Automate(0, 0.25F);
    EXPECT_EQ(Instance().UpdateParameterNormalizedValue("00000", 0.75, 0), kAAX_Success);
    EXPECT_EQ(TakePluginCalls(), (Lines{"setParameter 0 0.75"}));
}

TEST_F(Parameters, WhatTheHostLeavesUnansweredIsMendedOnTheBeatsOfItsTimer)
{
    Script().mParameters = {0.0F};
    Start();
    for (int i = 0; i <= CPluginParameter::kCapacity; ++i)
        Automate(0, static_cast<float>(i) / 64.0F);
    EXPECT_EQ(mLog.Count("PostSetValueRequest"),
              std::size_t{CPluginParameter::kCapacity}); // the last is put off
    EXPECT_EQ(Instance().UpdateParameterNormalizedValue("00000", 0.25, 0),
              kAAX_Success); // its own, as it turns out
    EXPECT_EQ(TakePluginCalls(), Lines{});
    for (int beat = 0; beat < CPluginParameter::kQuietBeats; ++beat)
        EXPECT_EQ(Instance().TimerWakeup(), kAAX_Success);
    EXPECT_EQ(TakePluginCalls(), (Lines{"setParameter 0 0.25"}));
    EXPECT_EQ(mLog.Lines().at(mLog.Lines().size() - 2), "PostSetValueRequest(\"00000\", 0.25)");
}

TEST_F(Parameters, ABeatWhileARequestIsMadeDoesNotForgetToLookAfterIt)
{
    Script().mParameters = {0.0F};
    Start();
    mLog.InsideCall("PostTouchRequest", [this] { EXPECT_EQ(Instance().TimerWakeup(), kAAX_Success); });
    Automate(0, 0.25F);
    for (int beat = 0; beat < CPluginParameter::kQuietBeats; ++beat)
        EXPECT_EQ(Instance().TimerWakeup(), kAAX_Success);
    Effect().Parameters()[0] = 0.5F; // has moved without a report
    EXPECT_EQ(Instance().UpdateParameterNormalizedValue("00000", 0.25, 0), kAAX_Success);
    EXPECT_EQ(TakePluginCalls(), (Lines{"setParameter 0 0.25"})); // the host's own: nothing waits any more
}

TEST_F(Parameters, AnswersNobodyWaitsForReachThePluginOrNobody)
{
    Script().mParameters = {0.0F};
    Start();
    Automate(0, 0.5F);
    EXPECT_EQ(Instance().Uninitialize(), kAAX_Success);
    EXPECT_EQ(Instance().UpdateParameterNormalizedValue("00000", 0.5, 0), kAAX_Success);
    EXPECT_EQ(Instance().UpdateParameterNormalizedValue("00001", 0.5, 0), kAAX_Success);
    EXPECT_EQ(TakePluginCalls(), Lines{});
    EXPECT_EQ(Instance().UpdateParameterNormalizedValue("00000", 0.25, 0), kAAX_Success);
    EXPECT_EQ(TakePluginCalls(), (Lines{"setParameter 0 0.25"}));
}

TEST_F(Parameters, LatencyIsReportedWhereThereIsOne)
{
    for (const std::int32_t latency : {0, 64, -5})
    {
        SCOPED_TRACE(latency);
        Script().mShape.initialDelay = latency;
        mHost.Controller().State().mSignalLatency = 0;
        Start();
        EXPECT_EQ(mHost.Controller().State().mSignalLatency, std::max(latency, 0));
        Stop();
    }
}

TEST_F(Parameters, InitialisedAgainItStartsAfresh)
{
    Script().mParameters = {0.25F};
    Script().mShape.initialDelay = 64;
    Start();
    EXPECT_EQ(Instance().UpdateParameterNormalizedValue("00000", 0.5, 0), kAAX_Success);
    Script().mFaults.insert(effOpen);
    EXPECT_EQ(Instance().Initialize(mHost.Unknown()), kAAX_ErrorNullObject);
    Script().mFaults.clear();
    Script().mShape.initialDelay = 0;
    Script().mParameters = {0.25F, 0.75F};
    EXPECT_EQ(Instance().Initialize(mHost.Unknown()), kAAX_Success);
    EXPECT_EQ(IdsOf(Instance()), (Lines{"00000", "00001", "MasterBypassID", "Gain"}));
    EXPECT_EQ(mHost.Controller().State().mSignalLatency, 0);
    mLog.Clear();
    EXPECT_EQ(Instance().GenerateCoefficients(), kAAX_Success);
    EXPECT_EQ(mLog.Count("PostPacket"), 2U);
    EXPECT_EQ(Script().mInstances.size(), 1U);
}

TEST_F(Parameters, WithoutAPluginThereAreBypassAndGainAndTheOutputsStay)
{
    Script().mEntryReturnsNull = true;
    Start();
    EXPECT_EQ(IdsOf(Instance()), (Lines{"MasterBypassID", "Gain"}));
    EXPECT_EQ(Instance().SetParameterNormalizedValue("00000", 0.5), kAAX_Success);
    EXPECT_EQ(Instance().GenerateCoefficients(), kAAX_Success);
    CRenderBlock block(Instance(), 2, 2);
    block.Render();
    EXPECT_EQ(block.mOutputs[0][0], CRenderBlock::kUntouched);
}

TEST_F(Parameters, EachHostInterfaceMayBeMissing)
{
    Script().mParameters = {0.25F};
    for (const acfUID& missing : {IID_IAAXControllerV1, IID_IAAXControllerV2, IID_IAAXAutomationDelegateV1,
                                  IID_IAAXTransportV1, IID_IAAXTransportV2})
    {
        SCOPED_TRACE(NameOfUid(missing));
        mLog.SwitchOff(missing);
        Start();
        EXPECT_EQ(Instance().SetParameterNormalizedValue("00000", 0.5), kAAX_Success);
        Automate(0, 0.75F);
        EXPECT_EQ(mHost.DeliverUpdates(Instance()), kAAX_Success);
        EXPECT_EQ(Effect().Parameters(), (std::vector{0.75F}));
        Stop();
    }
}

TEST_F(Parameters, AnExceptionOfThePluginEndsAtTheHostFacingCall)
{
    Script().mParameters = {0.25F};
    Start();
    Effect().Effect().setParameter = [](AEffect*, std::int32_t, float) { throw 5; };
    EXPECT_EQ(Instance().UpdateParameterNormalizedValue("00000", 0.5, 0), kAAX_ErrorNullObject);
    EXPECT_EQ(Instance().SetParameterNormalizedValue("00000", 0.75), kAAX_ErrorNullObject);
    Effect().Effect().getParameter = [](AEffect*, std::int32_t) -> float { throw 5; };
    std::uint32_t size = 0;
    AAX_SPlugInChunk chunk{};
    AAX_CBoolean isEqual = 0;
    const AAX_CTypeID controls = AAX_FourCharCode("elck");
    EXPECT_EQ(Instance().GetChunkSize(controls, &size), kAAX_ErrorNullObject);
    EXPECT_EQ(Instance().GetChunk(controls, &chunk), kAAX_ErrorNullObject);
    EXPECT_EQ(Instance().SetChunk(controls, &chunk), kAAX_ErrorNullObject);
    EXPECT_EQ(Instance().CompareActiveChunk(&chunk, &isEqual), kAAX_ErrorNullObject);
    Stop();
    Script().mFaults.insert(effOpen);
    EXPECT_EQ(StartWithoutCoefficients(), kAAX_ErrorNullObject);
    EXPECT_TRUE(Script().mInstances.empty()); // nothing of it is left for an editor to open
    EXPECT_TRUE(Instance().Host().Plugins().empty());
}

TEST_F(Parameters, PacketsThatThePluginKeepsFromBeingMadeAreMadeTheNextTime)
{
    Script().mParameters = {0.25F};
    ASSERT_EQ(StartWithoutCoefficients(), kAAX_Success);
    Effect().Parameters() = {0.0F};
    const auto setParameter = Effect().Effect().setParameter;
    Effect().Effect().setParameter = [](AEffect*, std::int32_t, float) { throw 5; };
    EXPECT_EQ(Instance().GenerateCoefficients(), kAAX_ErrorNullObject);
    Effect().Effect().setParameter = setParameter;
    EXPECT_EQ(Instance().GenerateCoefficients(), kAAX_Success);
    EXPECT_NE(mHost.Controller().Packet(0), nullptr);
    EXPECT_NE(mHost.Controller().Packet(1), nullptr);
}
} // namespace
