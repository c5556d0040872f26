#include "Interfaces/AAX/AAX_UIDs.h"
#include "Libs/AAXLibrary/source/AAX_VAutomationDelegate.h"
#include "Libs/AAXLibrary/source/AAX_VController.h"
#include "Libs/AAXLibrary/source/AAX_VTransport.h"
#include "Libs/AAXLibrary/source/AAX_VViewContainer.h"
#include "Tests/unit/Libs/TestParameters.h"
#include "Tools/aaxhost/host/CHostLog.h"
#include "Tools/aaxhost/host/CHostString.h"
#include "Tools/aaxhost/host/CInstanceHost.h"

#include <gtest/gtest.h>
#include <iterator>
#include <set>
#include <sstream>
#include <string>

namespace
{
using Names = std::multiset<std::string>;

constexpr const char* kController =
    "PostPacket GetEffectID GetSampleRate GetInputStemFormat GetOutputStemFormat GetTODLocation "
    "GetSignalLatency SetSignalLatency GetCycleCount SetCycleCount GetCurrentMeterValue GetMeterPeakValue "
    "ClearMeterPeakValue GetMeterClipped ClearMeterClipped GetMeterCount GetNextMIDIPacket ";
constexpr const char* kControllerV2 =
    "SendNotification GetHybridSignalLatency GetHostName GetCurrentAutomationTimestamp ";
constexpr const char* kTransport =
    "GetCurrentTempo GetCurrentMeter IsTransportPlaying GetCurrentTickPosition GetCurrentLoopPosition "
    "GetCurrentNativeSampleLocation GetCustomTickPosition GetBarBeatPosition GetTicksPerQuarter "
    "GetCurrentTicksPerBeat ";
constexpr const char* kTransportV2 = "GetTimelineSelectionStartPosition GetTimeCodeInfo GetFeetFramesInfo ";
constexpr const char* kView =
    "GetModifiers HandleParameterMouseDown HandleParameterMouseDrag HandleParameterMouseUp ";

Names Split(const std::string& inNames)
{
    std::istringstream names(inNames);
    return Names(std::istream_iterator<std::string>(names), {});
}

/** A host that answers every call with a code of its own. */
class HostWrappers : public testing::Test
{
protected:
    static constexpr AAX_Result kHosts = -12345;

    void SetUp() override
    {
        mLog.RecordRenderCalls(true);
        for (const std::string& name : Split(std::string(kController) + kControllerV2 + kTransport +
                                             kTransportV2 + kView + "SetViewSize"))
            mLog.FailCall(name, 0, kHosts);
    }

    /** Calls every operation and expects these answers of the two versions, and these calls at the host. */
    void CallController(AAX_Result inFirst, AAX_Result inSecond, const std::string& inReached)
    {
        AAX_VController controller(mHost.Unknown());
        mLog.Clear();
        ExpectEach(inFirst, controller.PostPacket(1, &mWide, 8), controller.GetEffectID(&mText),
                   controller.GetSampleRate(&mFloat), controller.GetInputStemFormat(&mNumber),
                   controller.GetOutputStemFormat(&mNumber), controller.GetTODLocation(&mWide),
                   controller.GetSignalLatency(&mNumber), controller.SetSignalLatency(3),
                   controller.GetCycleCount(1, &mNumber), controller.SetCycleCount(&mNumber, &mNumber, 1),
                   controller.GetCurrentMeterValue(1, &mFloat), controller.GetMeterPeakValue(1, &mFloat),
                   controller.ClearMeterPeakValue(1), controller.GetMeterClipped(1, &mByte),
                   controller.ClearMeterClipped(1), controller.GetMeterCount(&mCount),
                   controller.GetNextMIDIPacket(&mCount, &mPacket));
        ExpectEach(inSecond, controller.SendNotification(1, &mWide, 8),
                   controller.GetHybridSignalLatency(&mNumber), controller.GetHostName(&mText),
                   controller.GetCurrentAutomationTimestamp(&mWide));
        EXPECT_EQ(Reached(), Split(inReached));
    }
    void CallTransport(AAX_Result inFirst, AAX_Result inSecond, const std::string& inReached)
    {
        const AAX_VTransport transport(mHost.Unknown());
        mLog.Clear();
        ExpectEach(
            inFirst, transport.GetCurrentTempo(&mDouble), transport.GetCurrentMeter(&mNumber, &mNumber),
            transport.IsTransportPlaying(&mFlag), transport.GetCurrentTickPosition(&mWide),
            transport.GetCurrentLoopPosition(&mFlag, &mWide, &mWide),
            transport.GetCurrentNativeSampleLocation(&mWide), transport.GetCustomTickPosition(&mWide, 5),
            transport.GetBarBeatPosition(&mNumber, &mNumber, &mWide, 5),
            transport.GetTicksPerQuarter(&mCount), transport.GetCurrentTicksPerBeat(&mCount));
        ExpectEach(inSecond, transport.GetTimelineSelectionStartPosition(&mWide),
                   transport.GetTimeCodeInfo(&mNumber, &mNumber),
                   transport.GetFeetFramesInfo(&mNumber, &mWide));
        EXPECT_EQ(Reached(), Split(inReached));
    }
    void CallView(AAX_Result inExpected, AAX_Result inSize, const std::string& inReached)
    {
        AAX_VViewContainer view(&mHost.ViewContainer());
        AAX_Point size{1.0F, 2.0F};
        mLog.Clear();
        ExpectEach(inExpected, view.GetModifiers(&mCount), view.HandleParameterMouseDown("a", 1),
                   view.HandleParameterMouseDrag("a", 2), view.HandleParameterMouseUp("a", 3));
        EXPECT_EQ(view.SetViewSize(size), inSize);
        EXPECT_EQ(Reached(), Split(inReached));
    }
    Names Reached() const
    {
        Names names;
        for (const std::string& line : mLog.Calls())
            names.insert(line.substr(0, line.find('(')));
        return names;
    }

    CHostLog mLog;
    CInstanceHost mHost{mLog};
    // What the calls write to.
    CHostString mText;
    float mFloat = 0.0F;
    double mDouble = 0.0;
    bool mFlag = false;
    AAX_CBoolean mByte = 0;
    std::int32_t mNumber = 0;
    std::uint32_t mCount = 0;
    std::int64_t mWide = 7;
    AAX_CMidiPacket mPacket{};
};

TEST_F(HostWrappers, EveryCallReachesItsOwnOperationAndItsAnswerComesBack)
{
    CallController(kHosts, kHosts, std::string(kController) + kControllerV2);
    CallTransport(kHosts, kHosts, std::string(kTransport) + kTransportV2);
    CallView(kHosts, kHosts, std::string(kView) + "SetViewSize");
}

TEST_F(HostWrappers, WhatTheHostWritesComesBackInItsOrder)
{
    CHostLog log;
    CInstanceHost host(log);
    STransportState& state = host.Transport().State();
    state.mMeterNumerator = 7;
    state.mMeterDenominator = 8;
    state.mLoopStartTick = 10;
    state.mLoopEndTick = 20;
    const AAX_VTransport transport(host.Unknown());
    std::int32_t numerator = 0;
    std::int32_t denominator = 0;
    EXPECT_EQ(transport.GetCurrentMeter(&numerator, &denominator), kAAX_Success);
    EXPECT_EQ(std::pair(numerator, denominator), std::pair(7, 8));
    std::int64_t begin = 0;
    std::int64_t end = 0;
    EXPECT_EQ(transport.GetCurrentLoopPosition(&mFlag, &begin, &end), kAAX_Success);
    EXPECT_EQ(begin, 10);
    EXPECT_EQ(end, 20);
}

TEST_F(HostWrappers, MissingSecondVersionConcernsItsOwnCallsOnly)
{
    mLog.SwitchOff(IID_IAAXControllerV2);
    mLog.SwitchOff(IID_IAAXTransportV2);
    CallController(kHosts, kAAX_ErrorUnsupported, kController);
    EXPECT_EQ(mWide, 0); // the timestamp that the host does not have
    EXPECT_EQ(AAX_VController(nullptr).GetCurrentAutomationTimestamp(nullptr), kAAX_ErrorUnsupported);
    CallTransport(kHosts, kAAX_ErrorNullObject, kTransport);
}

TEST_F(HostWrappers, MissingFirstVersionOrOnlyInterfaceConcernsItsOwnCallsOnly)
{
    for (const acfIID& iid : {IID_IAAXControllerV1, IID_IAAXTransportV1, IID_IAAXViewContainerV1})
        mLog.SwitchOff(iid);
    CallController(kAAX_ErrorNullObject, kHosts, kControllerV2);
    CallTransport(kAAX_ErrorNullObject, kHosts, kTransportV2);
    CallView(kAAX_ErrorUnsupported, kAAX_Success, "");
    AAX_VViewContainer view(nullptr);
    EXPECT_EQ(view.GetType(), 0);
    EXPECT_EQ(view.GetPtr(), nullptr);
}

TEST_F(HostWrappers, EveryReferenceIsGivenBackButTheViews)
{
    {
        const AAX_VController controller(mHost.Unknown());
        const AAX_VTransport transport(mHost.Unknown());
        const AAX_VAutomationDelegate automation(mHost.Unknown());
        const AAX_VViewContainer view(&mHost.ViewContainer());
        EXPECT_EQ(mHost.References(), 5);
    }
    EXPECT_EQ(mHost.References(), 0);
    EXPECT_EQ(mHost.ViewContainer().References(), 1);
}
} // namespace
